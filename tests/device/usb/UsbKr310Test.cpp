#include <gtest/gtest.h>

#include <chrono>

#include "UsbKr310.h"
#include "UsbTesting.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using Output = UsbKr310::Output;

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
    /// What it answers when its output changes.
    std::string answersWhen(Output output) {
        device.setOutput(output, kStart);
        return hex(device.takeAnswers());
    }

    VirtualKr310 pedal;
    UsbKr310 device{pedal};
};

TEST_F(UsbPedal, answersAControlRequestInAsManyBytesAsItAsksFor) {
    for (const auto& [length, descriptor] : {std::pair{8U, "12 01 00 02 00 00 00 40"}, {4U, "12 01 00 02"}}) {
        EXPECT_EQ(answersTo(usbIp({1, 1, 0x10002, 1, 0, 0x200, length, 0, 0, 0, 0x80060001, 0x00000800})),
                  answer(1, length, unhex(descriptor)));
    }
}

TEST_F(UsbPedal, stallsAnUnknownControlRequestAndAnUnknownEndpoint) {
    EXPECT_EQ(answersTo(usbIp({1, 1, 0x10002, 1, 0, 0x200, 2, 0, 0, 0, 0x80000000, 0x00000200})), failure(1, kStalled));
    EXPECT_EQ(answersTo(usbIp({1, 1, 0x10002, 1, 2, 0x200, 64})), failure(1, kStalled));
}

TEST_F(UsbPedal, keepsARequestForAReportUntilThereIsOne) {
    EXPECT_EQ(answersTo(inRequest(1)), "");
    EXPECT_EQ(device.nextDue(), std::nullopt);
    EXPECT_EQ(answersTo(outRequest(2, connectReport())), answer(2, 64) + ' ' + answer(1, 64, progressZero()));
}

TEST_F(UsbPedal, keepsAReportUntilItIsRequested_andCutsItToTheRequestedLength) {
    EXPECT_EQ(answersTo(outRequest(2, connectReport())), answer(2, 64));
    EXPECT_EQ(device.nextDue(), std::nullopt);
    EXPECT_EQ(answersTo(inRequest(1, 9)), answer(1, 9, unhex("08 AA 55 02 00 A5 00 F0 1C")));
}

TEST_F(UsbPedal, holdsAReportBackUntilItIsDue) {
    pedal.setStartup({.progressStep = 199, .progressPace = milliseconds(10)});
    EXPECT_NE(answersTo(join({inRequest(1), inRequest(3), outRequest(2, connectReport())})), "");
    EXPECT_EQ(device.nextDue(), kStart + milliseconds(10));
    device.deliverDue(kStart + milliseconds(9));
    EXPECT_EQ(device.takeAnswers(), Bytes());
    device.deliverDue(kStart + milliseconds(10));
    EXPECT_EQ(hex(device.takeAnswers()).substr(0, 23), "00 00 00 03 00 00 00 03");
}

TEST_F(UsbPedal, reportOfAnotherLength_isAcceptedAndIgnored) {
    EXPECT_EQ(answersTo(outRequest(1, unhex("08 AA 55 02 00 E0 00 02 25"))), answer(1, 9));
    EXPECT_EQ(answersTo(inRequest(2)), "");
}

TEST_F(UsbPedal, unlinksOnlyAPendingRequest) {
    EXPECT_EQ(answersTo(inRequest(1)), "");
    EXPECT_EQ(answersTo(unlinkRequest(2, 1)), unlinkAnswer(2, kUnlinked));
    EXPECT_EQ(answersTo(outRequest(3, connectReport())), answer(3, 64));
    EXPECT_EQ(answersTo(unlinkRequest(4, 3)), unlinkAnswer(4, 0));
}

TEST_F(UsbPedal, whileItHangs_keepsOutputReportsUntilItAcceptsThem) {
    EXPECT_EQ(answersWhen(Output::Hang), "");
    EXPECT_EQ(answersTo(outRequest(3, connectReport())), "");
    EXPECT_EQ(answersTo(unlinkRequest(4, 3)), unlinkAnswer(4, kUnlinked));
    EXPECT_EQ(answersTo(join({inRequest(1), outRequest(2, connectReport())})), "");
    EXPECT_EQ(answersWhen(Output::Accept), answer(2, 64) + ' ' + answer(1, 64, progressZero()));
}

TEST_F(UsbPedal, whileItStalls_refusesOutputReportsAndAnswersControlRequests) {
    EXPECT_EQ(answersWhen(Output::Stall), "");
    EXPECT_EQ(answersTo(outRequest(1, connectReport())), failure(1, kStalled));
    EXPECT_EQ(answersTo(usbIp({1, 1, 0x10002, 0, 0, 0x200, 0, 0, 0, 0, 0x210A0000, 0})), answer(1, 0));
    EXPECT_EQ(answersWhen(Output::Accept), "");
    EXPECT_EQ(answersTo(inRequest(2)), "");
}

TEST_F(UsbPedal, faultyReport_getsItsErrorOrNoAnswer) {
    for (const auto& [fault, expected] : {std::pair{"refuse=2", failure(2, kStalled)},
                                          {"protocol-error=2", failure(2, 0xFFFFFFB9)},
                                          {"no-answer=2", std::string()}}) {
        pedal.setFaults(faultsOf(fault));
        device.powerUp();
        EXPECT_EQ(answersTo(outRequest(1, Bytes(64))), answer(1, 64)) << fault;
        EXPECT_EQ(answersTo(outRequest(2, connectReport())), expected) << fault;
        EXPECT_EQ(answersTo(unlinkRequest(3, 2)), unlinkAnswer(3, expected.empty() ? kUnlinked : 0)) << fault;
        EXPECT_EQ(answersTo(outRequest(4, Bytes(64))), answer(4, 64)) << fault;
        EXPECT_EQ(answersTo(inRequest(5)), "") << fault;
    }
}

TEST_F(UsbPedal, unplugFault_unplugsAtItsReport) {
    pedal.setFaults({.unplugAtReport = 2});
    for (int turn = 0; turn < 2; ++turn) {
        device.powerUp();
        EXPECT_EQ(answersTo(outRequest(1, connectReport())), answer(1, 64));
        EXPECT_FALSE(device.wantsUnplug());
        EXPECT_EQ(answersTo(join({outRequest(2, connectReport()), outRequest(3, Bytes(64)), inRequest(4)})), "");
        EXPECT_TRUE(device.wantsUnplug());
        EXPECT_EQ(device.nextDue(), std::nullopt);
    }
}

TEST_F(UsbPedal, whenPoweredUp_forgetsRequestsReportsAndHalfAMessage) {
    EXPECT_NE(answersTo(join({outRequest(1, connectReport()), inRequest(2)})), "");
    EXPECT_EQ(answersTo(join({inRequest(3), Bytes(47)})), "");
    device.powerUp();
    EXPECT_EQ(answersTo(inRequest(1), std::chrono::hours(1)), "");
    EXPECT_EQ(device.nextDue(), std::nullopt);
}

}  // namespace
}  // namespace kelvo
