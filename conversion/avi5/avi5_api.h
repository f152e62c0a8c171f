// The C interface of AVI5.DLL. Every entry returns 0 on success and a
// status from avi_status.h otherwise (GetAVICompressor: non-zero when a
// compressor was chosen). Text arguments are in the ANSI code page.
//
// `compVars` points at the platform's compressor-variables record, COMPVARS
// (comp_vars.h: kCompVarsBytes bytes): 96 bytes in this x64 build, 64 only in
// a 32-bit one. Both entries that take it read or write all 96 bytes, so a
// caller's buffer must be that large: a 64-byte buffer, the size older
// 32-bit callers reserve, is overrun. All zero, or a null pointer to
// AVICreateInit, means uncompressed.
//
// Null pointers are refused with a status, never dereferenced: file names
// and frames with kAviBadParameter or the merge's open statuses, the text
// buffer of AVIGetError with kAviBadParameter; GetAVICompressor returns 0
// (nothing chosen) without showing the chooser.
#pragma once
#include <cstdint>

#ifdef _WIN32
#define AVI5_CALL __stdcall
#else
#define AVI5_CALL
#endif

extern "C" {
// The progress callback of AVIAddWaveToAVI, passed as an integer (0: none).
typedef void(AVI5_CALL* Avi5Progress)(int32_t done, int32_t total);

int32_t AVICreateInit(const char* aviFile, const void* compVars, int32_t width, int32_t height,
                      int32_t bitsPerPixel, int32_t fps, int32_t frameCount,
                      const char* streamName);
int32_t AVICreateAddBitmap(const void* bottomUpDibBits);
int32_t AVICreateClose(void);
int32_t AVIAddWaveToAVI(const char* aviFile, const char* waveFile, intptr_t callback);
int32_t GetAVICompressor(intptr_t ownerWindow, void* compVars, char* name260);
int32_t AVIGetError(int32_t status, char* text260);
}
