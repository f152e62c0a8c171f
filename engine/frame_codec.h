// Frame payload coding: alternating runs over 4-byte units against the
// previous frame. A payload is: unchanged count, literal count, literal
// units, unchanged count, ... until the counts cover the frame. The first run
// is always an unchanged run (count 0 when unit 0 changed).
#pragma once
#include <cstddef>
#include <cstdint>

namespace velmora {

// Largest payload the encoder writes for a frame of `frameBytes` bytes: the
// every-other-unit case costs 1.5 x F, plus at most two counts more.
constexpr size_t MaxPayloadBytes(size_t frameBytes) { return frameBytes + frameBytes / 2 + 8; }

// Decodes one payload into `cur` against `prev` (both `frameBytes` long).
// Returns 0, or -5 when a run is longer than the frame, would carry the write
// position past the frame, or would read past the payload.
// Never reads outside payload[0, payloadBytes) or prev[0, frameBytes), never
// writes outside cur[0, frameBytes). No allocation. Bytes after the run that
// completes the frame are ignored.
int32_t DecodeFrame(const uint8_t* payload, size_t payloadBytes, const uint8_t* prev, uint8_t* cur,
                    size_t frameBytes);

// Encodes `cur` against `prev` (each `units` x 4 bytes) into `out`, which
// must hold MaxPayloadBytes(units * 4) bytes. Returns the number of 4-byte
// units written (counts and literal data together); 0 when units <= 0.
// Exact on every input: DecodeFrame of the result against `prev` gives `cur`.
// Never writes more than MaxPayloadBytes(units * 4) bytes.
int32_t CompressFrame(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);

}  // namespace velmora
