#include "conversion/avi5/tests/win/test_codec.h"

#include <vfw.h>

#include <cstring>
#include <cwchar>

namespace velmora::test {

namespace {
int g_frames = 0;

bool Accepts(const BITMAPINFOHEADER* in) {
  return in && in->biCompression == BI_RGB && in->biBitCount == 24 && in->biPlanes == 1;
}

LRESULT Compress(ICCOMPRESS* c) {
  const DWORD bytes = c->lpbiInput->biSizeImage;
  std::memcpy(c->lpOutput, c->lpInput, bytes);
  c->lpbiOutput->biSizeImage = bytes;
  if (c->lpdwFlags) *c->lpdwFlags = (c->lFrameNum % 5 == 0) ? AVIIF_KEYFRAME : 0;
  ++g_frames;
  return ICERR_OK;
}

LRESULT CALLBACK DriverProc(DWORD_PTR id, HDRVR, UINT msg, LPARAM p1, LPARAM p2) {
  const auto* in = reinterpret_cast<const BITMAPINFOHEADER*>(p1);
  switch (msg) {
    case DRV_CLOSE:
      return 1;
    case DRV_OPEN:
      return 0x7E57;  // any non-zero driver id
    case ICM_GETINFO: {
      auto* info = reinterpret_cast<ICINFO*>(p1);
      std::memset(info, 0, sizeof *info);
      info->dwSize = sizeof *info;
      info->fccType = ICTYPE_VIDEO;
      info->fccHandler = kTestCodecFcc;
      info->dwFlags = VIDCF_TEMPORAL;
      info->dwVersion = 1;
      info->dwVersionICM = ICVERSION;
      std::wcscpy(info->szName, L"VTST");
      std::wcscpy(info->szDescription, L"検査用コーデック");
      return sizeof *info;
    }
    case ICM_COMPRESS_QUERY:
      return Accepts(in) ? ICERR_OK : ICERR_BADFORMAT;
    case ICM_COMPRESS_GET_FORMAT:
      if (!Accepts(in)) return ICERR_BADFORMAT;
      // The size is asked without a buffer; with one, success is ICERR_OK.
      if (!p2) return sizeof(BITMAPINFOHEADER);
      std::memcpy(reinterpret_cast<void*>(p2), in, sizeof(BITMAPINFOHEADER));
      return ICERR_OK;
    case ICM_COMPRESS_GET_SIZE:
      return Accepts(in) ? LRESULT(in->biSizeImage ? in->biSizeImage : 1) : 0;
    case ICM_COMPRESS_BEGIN:
    case ICM_COMPRESS_END:
      return ICERR_OK;
    case ICM_COMPRESS:
      return Compress(reinterpret_cast<ICCOMPRESS*>(p1));
    default:  // loading, enabling and the like: the default answers succeed
      return msg < DRV_USER ? DefDriverProc(id, nullptr, msg, p1, p2) : ICERR_UNSUPPORTED;
  }
}
}  // namespace

bool InstallTestCodec() {
  return ICInstall(ICTYPE_VIDEO, kTestCodecFcc, reinterpret_cast<LPARAM>(&DriverProc), nullptr,
                   ICINSTALL_FUNCTION) != FALSE;
}

void RemoveTestCodec() { ICRemove(ICTYPE_VIDEO, kTestCodecFcc, 0); }

int TestCodecFramesCompressed() { return g_frames; }

void PressInChooser(HWND owner, int button, const wchar_t* pick) {
  for (int tries = 0; tries < 200; ++tries) {
    HWND dlg = nullptr;
    while ((dlg = FindWindowExW(nullptr, dlg, L"#32770", nullptr)) != nullptr) {
      DWORD pid = 0;
      GetWindowThreadProcessId(dlg, &pid);
      if (pid != GetCurrentProcessId() || GetWindow(dlg, GW_OWNER) != owner) continue;
      // The window may be found before its list is filled; wait for the entry.
      HWND combo = FindWindowExW(dlg, nullptr, L"ComboBox", nullptr);
      if (SendMessageW(combo, CB_GETCOUNT, 0, 0) <= 0) break;
      if (pick) {
        const LRESULT at = SendMessageW(combo, CB_FINDSTRING, WPARAM(-1), LPARAM(pick));
        if (at == CB_ERR) break;
        SendMessageW(combo, CB_SETCURSEL, WPARAM(at), 0);
        SendMessageW(dlg, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(combo), CBN_SELCHANGE),
                     LPARAM(combo));
      }
      PostMessageW(dlg, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
      return;
    }
    Sleep(50);
  }
}

}  // namespace velmora::test
