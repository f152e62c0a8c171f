#include "engine/playback.h"

#include "engine/movie_reader.h"
#include "engine/result_codes.h"

namespace velmora {

int32_t Playback::PlayFile(const std::string& utf8Path, PlaybackSurface& surface,
                           PlaybackListener& listener, bool decodeOnly) {
  auto source = FileByteSource::Open(utf8Path);
  if (!source) return kErrCannotOpen;
  return Play(std::move(source), surface, listener, decodeOnly);
}

int32_t Playback::Play(std::unique_ptr<ByteSource> source, PlaybackSurface& surface,
                       PlaybackListener& listener, bool decodeOnly) {
  MovieReader reader;
  if (const int32_t opened = reader.Open(std::move(source)); opened != 0) return opened;
  const MovieHeader& h = reader.Header();
  const int64_t count = reader.FrameCount();
  const double interval = 1000.0 / h.fps;

  surface.Begin(h, reader.FrameSize());
  startMs_ = clock_.NowMs();
  // The pacing loop measures from where the previous wait ended. A frame
  // that runs no wait leaves the reading of the last wait that did run (0
  // before any), so after a late start pacing restarts from the current time.
  double lastWaitEnd = startMs_;
  double lastLoopReading = 0;

  int32_t result = 0;
  for (int64_t i = 0; i < count; ++i) {
    const double begin = clock_.NowMs();
    const int32_t next = reader.Next();
    if (next != 0) {
      result = next == 1 ? 0 : next;
      break;
    }
    listener.FrameDecoded();

    bool late = false;
    if (decodeOnly) {
      uint8_t* data =
          h.method == 0 ? surface.ToDeviceIndependent(reader.Current()) : reader.MutableCurrent();
      listener.CP_Decode(data, reader.FrameSize(), i, count);
    } else {
      // Due only while the end of its slot is strictly ahead of the clock.
      late = !(static_cast<double>(i + 1) * interval > clock_.NowMs() - startMs_);
      if (!late) surface.Show(reader.Current());
    }

    const double took = clock_.NowMs() - begin;
    bool cancel = false;
    listener.CP_Drawing(i, count, took, cancel);
    if (cancel) break;

    if (!decodeOnly && !late && took > 0.000001) {
      for (;;) {
        lastLoopReading = clock_.NowMs();
        if (lastLoopReading - lastWaitEnd > interval) break;
        clock_.PumpMessages();
        clock_.SleepMs(0);
      }
    }
    lastWaitEnd = lastLoopReading;
  }
  surface.End();
  return result;
}

}  // namespace velmora
