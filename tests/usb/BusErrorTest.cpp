// A bus that fails for a moment while the pedal stays plugged in.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "CableApp.h"
#include "RVHidClass.h"

namespace kelvo::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

/// A fault that strikes once. The connect frame is one report, a packet nine: this is the fourth of the second packet.
struct BusError {
    const char* name;
    const char* command;
};

class BusErrorTest : public testing::TestWithParam<BusError> {};

TEST_P(BusErrorTest, duringATransfer_endsNothing_nextImportIsComplete) {
    PluggedPedal pedal;
    CableApp app(pedal);
    app.start();
    pedal.tell(GetParam().command, GetParam().command);
    app.importIR(0, kWave);
    ASSERT_TRUE(serveUntil([&] { return app.controller.transferState().IRTick == 2; }));
    // Waits for the write that is held up, if it is.
    app.importIR(1, kWave);
    EXPECT_TRUE(pedal.says("CAB 28 <- \"BRIGHT\" 512 points, crc32 a0a36dee"));
    EXPECT_TRUE(isOpenDevice);
    EXPECT_THAT(app.services.alerts, IsEmpty());
    EXPECT_THAT(pedal.memory(), Contains("CAB 27 \"OPEN 1X12\" crc32 f1cf3378"));
}

INSTANTIATE_TEST_SUITE_P(, BusErrorTest,
                         testing::Values(BusError{"protocolError", "fault protocol-error=14"},
                                         BusError{"stall", "fault refuse=14"},
                                         BusError{"noAnswer", "fault no-answer=14"}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace kelvo::test
