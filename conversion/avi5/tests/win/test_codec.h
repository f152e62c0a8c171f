// A trivial 24-bit video compressor installed into this process, so the
// compressed path runs under Wine (whose only real encoder takes 8 bits).
// It stores frames unchanged, with an output format that any reader
// decodes as plain bitmaps, and calls every fifth frame a key frame.
#pragma once
#include <windows.h>
#include <mmsystem.h>

namespace velmora::test {

inline constexpr DWORD kTestCodecFcc = mmioFOURCC('V', 'T', 'S', 'T');

// ICInstall with the driver function; true when the compressor is usable.
bool InstallTestCodec();
void RemoveTestCodec();
int TestCodecFramesCompressed();

// Waits for the compressor chooser that this process shows owned by `owner`
// and presses `button` in it, once the list entry starting with `pick` is
// selected (null: the entry shown first), as a user would. Call it on
// another thread than the one showing the chooser.
void PressInChooser(HWND owner, int button, const wchar_t* pick);

}  // namespace velmora::test
