#include "DataUnpacking.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <thread>

#include "AppClassPoint.h"
#include "CRC.h"
#include "CircleBuffer.h"
#include "CommandCodes.h"
#include "RVHidClass.h"

namespace kelvo {
namespace {

constexpr std::size_t kMaxLength = kFrameBufferSize - kFrameOverhead;
constexpr int kDeviceChecks = 11;
constexpr std::int32_t kNoDevice = 0;
constexpr std::int32_t kDeviceGone = 170;

std::uint8_t Step = 0;
std::uint16_t vaildDataCount = 0;                          // valid bytes in FrameBuffer
std::array<std::uint8_t, kFrameBufferSize> FrameBuffer{};  // byte 0 is the 0xAA of the frame being assembled
constexpr const std::uint8_t* pFrameStruct = FrameBuffer.data();

/// Size of the frame being assembled. Its LENGTH must have been read.
std::uint16_t frameSize() {
    return static_cast<std::uint16_t>(frameLength(pFrameStruct) + kFrameOverhead);
}

/// Reads until FrameBuffer has `count` valid bytes. Returns false when the ring does not have all that are missing.
bool fillBuffer(std::uint16_t count) {
    if (vaildDataCount < count) {
        const std::uint32_t missing = count - vaildDataCount;
        if (!HID_ReadData(missing, &FrameBuffer[vaildDataCount])) {
            return false;
        }
        vaildDataCount = count;
    }
    return true;
}

/// Moves the valid bytes from offset `from` on to offset `to`.
void moveBytes(std::uint16_t from, std::uint16_t to) {
    std::copy(FrameBuffer.begin() + from, FrameBuffer.begin() + vaildDataCount, FrameBuffer.begin() + to);
    vaildDataCount = static_cast<std::uint16_t>(vaildDataCount - from + to);
}

void DUP_UnpackCASE0() {
    if (HID_ReadData(1, FrameBuffer.data()) && FrameBuffer[0] == kFrameHeader1) {
        vaildDataCount = 1;
        Step = 1;
    }
}

void DUP_UnpackCASE1() {
    if (fillBuffer(kHeader2Offset + 1)) {
        Step = FrameBuffer[kHeader2Offset] == kFrameHeader2 ? 2 : 6;
    }
}

void DUP_UnpackCASE2() {
    if (fillBuffer(kCommandOffset)) {
        Step = frameLength(pFrameStruct) <= kMaxLength ? 3 : 6;
    }
}

void DUP_UnpackCASE3() {
    if (fillBuffer(frameSize())) {
        Step = 4;
    }
}

void DUP_UnpackCASE4() {
    const std::size_t crcOffset = frameSize() - 2U;
    const int crc = FrameBuffer[crcOffset] << 8 | FrameBuffer[crcOffset + 1];
    Step = crc == crc16_Count(&FrameBuffer[kLengthOffset], frameLength(pFrameStruct) + 2U) ? 5 : 6;
}

void DUP_UnpackCASE5() {
    C_CMD_CallBack(FrameBuffer.data());
    if (vaildDataCount == frameSize()) {
        vaildDataCount = 0;
        Step = 0;
        return;
    }
    moveBytes(frameSize(), 1);  // state 6 skips offset 0
    Step = 6;
}

void DUP_UnpackCASE6() {
    const auto end = FrameBuffer.begin() + vaildDataCount;
    const auto next = std::find(FrameBuffer.begin() + 1, end, kFrameHeader1);
    if (next == end) {
        vaildDataCount = 0;
        Step = 0;
        return;
    }
    // Offset 0 already is 0xAA, so only the bytes after it move.
    moveBytes(static_cast<std::uint16_t>(std::distance(FrameBuffer.begin(), next) + 1), 1);
    Step = 1;
}

/// Entry i is the handler of state i.
constexpr std::array<void (*)(), 7> CaseFundList{DUP_UnpackCASE0, DUP_UnpackCASE1, DUP_UnpackCASE2, DUP_UnpackCASE3,
                                                 DUP_UnpackCASE4, DUP_UnpackCASE5, DUP_UnpackCASE6};

}  // namespace

void DUP_init() {
    Step = 0;
}

void DUP_Unpack() {
    static std::uint8_t STEPCP;
    do {
        STEPCP = Step;
        CaseFundList[Step]();
    } while (Step != STEPCP);
}

void C_CMD_CallBack(const std::uint8_t* frame) {
    if (AppClass* const app = AppClassPoint.load()) {
        app->CMD_CallBack(FrameView(frame, kFrameBufferSize));
    }
}

std::int32_t ReceiveThread() {
    for (int failed = 0; !isOpenDevice;) {
        if (++failed == kDeviceChecks) {
            return kNoDevice;
        }
        Delay_ms(1);
    }
    DUP_init();
    while (isOpenDevice) {
        DUP_Unpack();
        Delay_ms(10);
    }
    ClearRx_buffer();
    return kDeviceGone;
}

void Delay_ms(std::uint32_t ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

}  // namespace kelvo
