#include "sound/win/mixer.h"

#include "engine/win/text_encoding.h"
#include "sound/line_choice.h"

namespace velmora::win {

namespace {

// Wine's winmm ignores MIXER_OBJECTF_WAVEIN in mixerOpen and takes the id as a
// mixer id; asking for the wave-in device's mixer id first works everywhere.
MMRESULT OpenWaveInMixer(UniqueMixer& out) {
  UINT id = 0;
  if (mixerGetID(reinterpret_cast<HMIXEROBJ>(static_cast<UINT_PTR>(0)), &id,
                 MIXER_OBJECTF_WAVEIN) != MMSYSERR_NOERROR) {
    id = 0;
  }
  HMIXER h = nullptr;
  const MMRESULT r = mixerOpen(&h, id, 0, 0, MIXER_OBJECTF_MIXER);
  if (r == MMSYSERR_NOERROR) out.reset(h);
  return r;
}

HMIXEROBJ Obj(const UniqueMixer& m) { return reinterpret_cast<HMIXEROBJ>(m.get()); }

}  // namespace

const std::string& Mixer::Init() {
  description_.clear();
  const UINT devices = mixerGetNumDevs();
  for (UINT dev = 0; dev < devices; ++dev) {
    HMIXER raw = nullptr;
    if (mixerOpen(&raw, dev, 0, 0, MIXER_OBJECTF_MIXER) != MMSYSERR_NOERROR) continue;
    UniqueMixer m(raw);
    MIXERCAPSW caps{};
    if (mixerGetDevCapsW(reinterpret_cast<UINT_PTR>(raw), &caps, sizeof caps) != MMSYSERR_NOERROR) {
      continue;
    }
    for (DWORD d = 0; d < caps.cDestinations; ++d) {
      MIXERLINEW dst{};
      dst.cbStruct = sizeof dst;
      dst.dwDestination = d;
      if (mixerGetLineInfoW(Obj(m), &dst, MIXER_OBJECTF_HMIXER | MIXER_GETLINEINFOF_DESTINATION) !=
              MMSYSERR_NOERROR ||
          dst.dwComponentType != MIXERLINE_COMPONENTTYPE_DST_WAVEIN) {
        continue;
      }
      for (DWORD s = 0; s < dst.cConnections; ++s) {
        MIXERLINEW src{};
        src.cbStruct = sizeof src;
        src.dwDestination = d;
        src.dwSource = s;
        if (mixerGetLineInfoW(Obj(m), &src, MIXER_OBJECTF_HMIXER | MIXER_GETLINEINFOF_SOURCE) !=
            MMSYSERR_NOERROR) {
          continue;
        }
        if (!description_.empty()) description_ += "\r\n";
        description_ += Narrow(caps.szPname) + " / " + Narrow(dst.szName) + " / " +
                        Narrow(src.szName) + " (" + std::to_string(src.cControls) + ")";
      }
    }
  }
  return description_;
}

MMRESULT Mixer::FindSelector(Selector& out) {
  out = {};
  if (!mixer_) {
    if (const MMRESULT r = OpenWaveInMixer(mixer_)) return r;
  }
  MIXERLINEW line{};
  line.cbStruct = sizeof line;
  line.dwComponentType = MIXERLINE_COMPONENTTYPE_DST_WAVEIN;
  if (const MMRESULT r = mixerGetLineInfoW(
          Obj(mixer_), &line, MIXER_OBJECTF_HMIXER | MIXER_GETLINEINFOF_COMPONENTTYPE)) {
    return r;
  }
  MIXERCONTROLW control{};
  control.cbStruct = sizeof control;
  MIXERLINECONTROLSW request{};
  request.cbStruct = sizeof request;
  request.dwLineID = line.dwLineID;
  request.dwControlType = MIXERCONTROL_CONTROLTYPE_MUX;  // single-select only
  request.cControls = 1;
  request.cbmxctrl = sizeof control;
  request.pamxctrl = &control;
  if (const MMRESULT r = mixerGetLineControlsW(
          Obj(mixer_), &request, MIXER_OBJECTF_HMIXER | MIXER_GETLINECONTROLSF_ONEBYTYPE)) {
    return r;
  }
  const DWORD items = control.cMultipleItems;
  if (items == 0) return MMSYSERR_NOERROR;

  std::vector<MIXERCONTROLDETAILS_LISTTEXTW> texts(items);
  MIXERCONTROLDETAILS details{};
  details.cbStruct = sizeof details;
  details.dwControlID = control.dwControlID;
  details.cChannels = 1;
  details.cMultipleItems = items;
  details.cbDetails = sizeof(MIXERCONTROLDETAILS_LISTTEXTW);
  details.paDetails = texts.data();
  if (const MMRESULT r = mixerGetControlDetailsW(
          Obj(mixer_), &details, MIXER_OBJECTF_HMIXER | MIXER_GETCONTROLDETAILSF_LISTTEXT)) {
    return r;
  }
  std::vector<MIXERCONTROLDETAILS_BOOLEAN> values(items);
  details.cbDetails = sizeof(MIXERCONTROLDETAILS_BOOLEAN);
  details.paDetails = values.data();
  if (const MMRESULT r = mixerGetControlDetailsW(
          Obj(mixer_), &details, MIXER_OBJECTF_HMIXER | MIXER_GETCONTROLDETAILSF_VALUE)) {
    return r;
  }
  out.controlId = control.dwControlID;
  for (DWORD i = 0; i < items; ++i) {
    out.names.push_back(Narrow(texts[i].szName));
    out.values.push_back(static_cast<int32_t>(values[i].fValue));
  }
  return MMSYSERR_NOERROR;
}

bool Mixer::IsEnableMixer() {
  if (mixerGetNumDevs() < 1) return false;
  Selector s;
  return FindSelector(s) == MMSYSERR_NOERROR && !s.names.empty();
}

std::vector<std::string> Mixer::GetWaveInLines(int32_t* retErrorNo, int32_t* retSelected) {
  Selector s;
  const MMRESULT r = FindSelector(s);
  if (retErrorNo) *retErrorNo = static_cast<int32_t>(r);
  if (retSelected) *retSelected = r == MMSYSERR_NOERROR ? sound::FirstSelected(s.values) : -1;
  return r == MMSYSERR_NOERROR ? s.names : std::vector<std::string>{};
}

int32_t Mixer::SetWaveInLine(const std::string* name, int32_t index) {
  Selector s;
  if (const MMRESULT r = FindSelector(s)) return static_cast<int32_t>(r);
  const int32_t chosen = sound::ChooseLine(s.names, name, index);
  if (chosen < 0) return MMSYSERR_INVALPARAM;
  const std::vector<int32_t> want = sound::SelectionValues(s.names.size(), chosen);
  std::vector<MIXERCONTROLDETAILS_BOOLEAN> values(want.size());
  for (size_t i = 0; i < want.size(); ++i) values[i].fValue = want[i];
  MIXERCONTROLDETAILS details{};
  details.cbStruct = sizeof details;
  details.dwControlID = s.controlId;
  details.cChannels = 1;
  details.cMultipleItems = static_cast<DWORD>(values.size());
  details.cbDetails = sizeof(MIXERCONTROLDETAILS_BOOLEAN);
  details.paDetails = values.data();
  return static_cast<int32_t>(mixerSetControlDetails(
      Obj(mixer_), &details, MIXER_OBJECTF_HMIXER | MIXER_SETCONTROLDETAILSF_VALUE));
}

}  // namespace velmora::win
