// Measures the throughput of ring and unpacker in bytes per second of processor time. The wire delivers at most 1000
// reports of 64 bytes per second: 64,000 bytes.
//
//   Frames/...       good frames
//   Garbage/.../n    n bytes without a frame, with as many 0xAA as possible
//
// One iteration is a tick of the receive thread: the reports since the last tick go into the ring, then the unpacker
// runs until it needs more.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "AppClassPoint.h"
#include "CircleBuffer.h"
#include "DataUnpacking.h"
#include "Kr310Frames.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kReportPayload = 63;
/// The bytes of ten reports: a tick of 10 ms at one report per millisecond.
constexpr std::size_t kTick = 10 * kReportPayload;

class CountingApp final : public kelvo::AppClass {
public:
    void CMD_CallBack(kelvo::FrameView frame) override {
        std::uint8_t first = frame[0];
        benchmark::DoNotOptimize(first);
        ++frames;
    }
    void exitApp() override {}

    std::int64_t frames = 0;
};

void receive(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), kReportPayload);
        kelvo::putRX_buffer(bytes.data(), static_cast<std::uint32_t>(count));
        bytes = bytes.subspan(count);
    }
    kelvo::DUP_Unpack();
}

/// Starts with an empty ring and an empty unpacker.
class Receiver {
public:
    Receiver() {
        kelvo::ClearRx_buffer();
        kelvo::DUP_init();
        kelvo::AppClassPoint = &app;
    }
    ~Receiver() { kelvo::AppClassPoint = nullptr; }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    CountingApp app;
};

Bytes repeated(std::span<const std::uint8_t> pattern, std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = pattern[i % pattern.size()];
    }
    return bytes;
}

void frames(benchmark::State& state, const kelvo::Frame& frame) {
    const Bytes one = writeFrame(frame);
    const std::size_t perTick = kTick / one.size();
    const Bytes bytes = repeated(one, perTick * one.size());
    Receiver receiver;
    for (auto _ : state) {
        receive(bytes);
    }
    const auto sent = state.iterations() * static_cast<std::int64_t>(perTick);
    if (receiver.app.frames != sent) {
        state.SkipWithError("frames were lost");
    }
    state.SetItemsProcessed(sent);
    state.SetBytesProcessed(sent * static_cast<std::int64_t>(one.size()));
}

void garbage(benchmark::State& state, std::span<const std::uint8_t> pattern) {
    const Bytes bytes = repeated(pattern, kTick);
    Receiver receiver;
    for (auto _ : state) {
        receive(bytes);
    }
    if (receiver.app.frames != 0) {
        state.SkipWithError("garbage was taken for a frame");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kTick));
}

const kelvo::Frame kAcknowledgement{0xE1, {1}};
const kelvo::Frame kNames{0x85, Bytes(100, 'N')};

constexpr std::array<std::uint8_t, 1> kOnlyHeaders{0xAA};
/// A header with an impossible LENGTH.
constexpr std::array<std::uint8_t, 4> kImpossibleLength{0xAA, 0x55, 0xFF, 0xFF};
/// The worst case: every header announces the longest frame, so each costs a CRC and a move.
constexpr std::array<std::uint8_t, 4> kLongestLength{0xAA, 0x55, 0xFA, 0x03};

BENCHMARK_CAPTURE(frames, acknowledgement, kAcknowledgement)->Name("Frames/acknowledgement");
BENCHMARK_CAPTURE(frames, names, kNames)->Name("Frames/names");
BENCHMARK_CAPTURE(garbage, aa, kOnlyHeaders)->Name("Garbage/AA");
BENCHMARK_CAPTURE(garbage, impossible, kImpossibleLength)->Name("Garbage/impossible-length");
BENCHMARK_CAPTURE(garbage, longest, kLongestLength)->Name("Garbage/longest-length");

}  // namespace

BENCHMARK_MAIN();
