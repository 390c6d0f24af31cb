#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "UsbKr310.h"
#include "UsbTesting.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

constexpr UsbKr310::Clock::time_point kStart{std::chrono::hours(1)};

/// The first input report of a start-up: progress 0, and 0xAA after it.
Bytes progressZero() {
    Bytes report = unhex("08 AA 55 02 00 A5 00 F0 1C");
    report.resize(64, 0xAA);
    return report;
}

class UsbPedal : public testing::Test {
protected:
    UsbPedal() { device.powerUp(); }

    /// What the device answers to these bytes.
    std::string answersTo(const Bytes& bytes, milliseconds later = {}) {
        device.receive(bytes, kStart + later);
        return hex(device.takeAnswers());
    }

    VirtualKr310 pedal;
    UsbKr310 device{pedal};
};

std::string joined(const std::string& a, const std::string& b) {
    return a + ' ' + b;
}

TEST_F(UsbPedal, answersAControlRequestInAsManyBytesAsItAsksFor) {
    for (const auto& [length, answer] :
         {std::pair{"00 00 00 08", "12 01 00 02 00 00 00 40"}, {"00 00 00 04", "12 01 00 02"}}) {
        const HostRequest request{
            .direction = kOne, .endpoint = kZeroWord, .length = length, .setup = "80 06 00 01 00 00 08 00"};
        EXPECT_EQ(answersTo(request.bytes()), submitAnswer(kOne, kZeroWord, length, unhex(answer)));
    }
}

TEST_F(UsbPedal, stallsAnUnknownControlRequestAndAnUnknownEndpoint) {
    const HostRequest request{
        .direction = kOne, .endpoint = kZeroWord, .length = "00 00 00 02", .setup = "80 00 00 00 00 00 02 00"};
    EXPECT_EQ(answersTo(request.bytes()), submitAnswer(kOne, kStallWord, kZeroWord));
    EXPECT_EQ(answersTo(HostRequest{.direction = kOne, .endpoint = kTwo}.bytes()),
              submitAnswer(kOne, kStallWord, kZeroWord));
}

TEST_F(UsbPedal, keepsARequestForAReportUntilThereIsOne) {
    EXPECT_EQ(answersTo(inRequest(kOne)), "");
    EXPECT_EQ(device.nextDue(), std::nullopt);
    EXPECT_EQ(answersTo(outRequest(kTwo, connectReport())),
              joined(submitAnswer(kTwo, kZeroWord, kSize), submitAnswer(kOne, kZeroWord, kSize, progressZero())));
}

TEST_F(UsbPedal, keepsAReportUntilItIsRequested) {
    EXPECT_EQ(answersTo(outRequest(kTwo, connectReport())), submitAnswer(kTwo, kZeroWord, kSize));
    EXPECT_EQ(device.nextDue(), std::nullopt);
    EXPECT_EQ(answersTo(inRequest(kOne)), submitAnswer(kOne, kZeroWord, kSize, progressZero()));
}

TEST_F(UsbPedal, holdsAReportBackUntilItIsDue) {
    pedal.setStartup({.progressStep = 199, .progressPace = milliseconds(10)});
    EXPECT_NE(answersTo(join({inRequest(kOne), inRequest(kThree), outRequest(kTwo, connectReport())})), "");
    EXPECT_EQ(device.nextDue(), kStart + milliseconds(10));
    device.deliverDue(kStart + milliseconds(9));
    EXPECT_EQ(device.takeAnswers(), Bytes());
    device.deliverDue(kStart + milliseconds(10));
    EXPECT_EQ(hex(device.takeAnswers()).substr(0, 23), "00 00 00 03 00 00 00 03");
}

TEST_F(UsbPedal, cutsAReportToTheRequestedLength) {
    const HostRequest request{.direction = kOne, .length = "00 00 00 09"};
    EXPECT_NE(answersTo(outRequest(kTwo, connectReport())), "");
    EXPECT_EQ(answersTo(request.bytes()),
              submitAnswer(kOne, kZeroWord, "00 00 00 09", unhex("08 AA 55 02 00 A5 00 F0 1C")));
}

TEST_F(UsbPedal, otherLength_isAcceptedAndIgnored) {
    const Bytes shorter = unhex("08 AA 55 02 00 E0 00 02 25");
    EXPECT_EQ(answersTo(HostRequest{.length = "00 00 00 09"}.bytes(shorter)),
              submitAnswer(kOne, kZeroWord, "00 00 00 09"));
    EXPECT_EQ(answersTo(inRequest(kTwo)), "");
}

TEST_F(UsbPedal, unlinksAPendingRequest) {
    EXPECT_EQ(answersTo(inRequest(kOne)), "");
    EXPECT_EQ(answersTo(unlinkRequest(kTwo, kOne)), unlinkAnswer(kTwo, kUnlinkedWord));
    EXPECT_EQ(answersTo(outRequest(kThree, connectReport())), submitAnswer(kThree, kZeroWord, kSize));
}

TEST_F(UsbPedal, hasNothingToUnlinkOnceARequestIsAnswered) {
    EXPECT_NE(answersTo(outRequest(kOne, connectReport())), "");
    EXPECT_EQ(answersTo(unlinkRequest(kTwo, kOne)), unlinkAnswer(kTwo, kZeroWord));
}

TEST_F(UsbPedal, whileItHangs_keepsOutputReportsWaiting) {
    device.setOutput(UsbKr310::Output::Hang, kStart);
    EXPECT_EQ(answersTo(outRequest(kOne, connectReport())), "");
    EXPECT_EQ(answersTo(unlinkRequest(kTwo, kOne)), unlinkAnswer(kTwo, kUnlinkedWord));
    device.setOutput(UsbKr310::Output::Accept, kStart);
    EXPECT_EQ(device.takeAnswers(), Bytes());
}

TEST_F(UsbPedal, afterAHang_acceptsPendingReports) {
    device.setOutput(UsbKr310::Output::Hang, kStart);
    EXPECT_EQ(answersTo(join({inRequest(kOne), outRequest(kTwo, connectReport())})), "");
    device.setOutput(UsbKr310::Output::Accept, kStart);
    EXPECT_EQ(hex(device.takeAnswers()),
              joined(submitAnswer(kTwo, kZeroWord, kSize), submitAnswer(kOne, kZeroWord, kSize, progressZero())));
}

TEST_F(UsbPedal, whileItStalls_refusesOutputReportsAndAnswersControlRequests) {
    device.setOutput(UsbKr310::Output::Stall, kStart);
    EXPECT_EQ(answersTo(outRequest(kOne, connectReport())), submitAnswer(kOne, kStallWord, kZeroWord));
    const HostRequest idle{.endpoint = kZeroWord, .length = kZeroWord, .setup = "21 0A 00 00 00 00 00 00"};
    EXPECT_EQ(answersTo(idle.bytes()), submitAnswer(kOne, kZeroWord, kZeroWord));
    device.setOutput(UsbKr310::Output::Accept, kStart);
    EXPECT_EQ(answersTo(inRequest(kTwo)), "");
}

TEST_F(UsbPedal, faultyReport_getsItsError) {
    for (const auto& [faults, status] : {std::pair{Faults{.refuseReport = 2}, kStallWord},
                                         {Faults{.protocolErrorAtReport = 2}, std::string_view("FF FF FF B9")}}) {
        pedal.setFaults(faults);
        device.powerUp();
        EXPECT_EQ(answersTo(outRequest(kOne, Bytes(64))), submitAnswer(kOne, kZeroWord, kSize));
        EXPECT_EQ(answersTo(outRequest(kTwo, connectReport())), submitAnswer(kTwo, status, kZeroWord));
        EXPECT_EQ(answersTo(outRequest(kThree, Bytes(64))), submitAnswer(kThree, kZeroWord, kSize));
        EXPECT_EQ(answersTo(inRequest(kOne)), "");
    }
}

TEST_F(UsbPedal, unansweredReport_isGivenUpByTheHost) {
    pedal.setFaults({.noAnswerAtReport = 2});
    EXPECT_EQ(answersTo(outRequest(kOne, Bytes(64))), submitAnswer(kOne, kZeroWord, kSize));
    EXPECT_EQ(answersTo(outRequest(kTwo, connectReport())), "");
    EXPECT_EQ(answersTo(unlinkRequest(kThree, kTwo)), unlinkAnswer(kThree, kUnlinkedWord));
    EXPECT_EQ(answersTo(outRequest(kOne, Bytes(64))), submitAnswer(kOne, kZeroWord, kSize));
    EXPECT_EQ(answersTo(inRequest(kOne)), "");
}

TEST_F(UsbPedal, unplugFault_unplugsAtItsReport) {
    pedal.setFaults({.unplugAtReport = 2});
    EXPECT_EQ(answersTo(outRequest(kOne, Bytes(64))), submitAnswer(kOne, kZeroWord, kSize));
    EXPECT_FALSE(device.wantsUnplug());
    EXPECT_EQ(answersTo(join({outRequest(kTwo, connectReport()), outRequest(kThree, Bytes(64))})), "");
    EXPECT_TRUE(device.wantsUnplug());
    EXPECT_EQ(answersTo(inRequest(kOne)), "");
    EXPECT_EQ(device.nextDue(), std::nullopt);
    device.powerUp();
    EXPECT_FALSE(device.wantsUnplug());
    EXPECT_EQ(answersTo(outRequest(kOne, Bytes(64))), submitAnswer(kOne, kZeroWord, kSize));
    EXPECT_EQ(answersTo(outRequest(kTwo, Bytes(64))), "");
    EXPECT_TRUE(device.wantsUnplug());
}

TEST_F(UsbPedal, whenPoweredUp_forgetsRequestsAndReports) {
    EXPECT_NE(answersTo(join({outRequest(kOne, connectReport()), inRequest(kTwo)})), "");
    EXPECT_EQ(answersTo(inRequest(kThree)), "");
    device.powerUp();
    EXPECT_EQ(answersTo(inRequest(kOne), std::chrono::hours(1)), "");
    EXPECT_EQ(device.nextDue(), std::nullopt);
}

TEST_F(UsbPedal, whenTheHostBreaksTheProtocol_saysSo) {
    EXPECT_THROW(device.receive(Bytes(48), kStart), std::runtime_error);
}

}  // namespace
}  // namespace kelvo
