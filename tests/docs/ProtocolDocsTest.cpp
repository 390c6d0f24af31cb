// Every example in docs/protocol.md against what the program sends and reads.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QRegularExpression>
#include <map>

#include "AppHarness.h"
#include "DataUnpacking.h"
#include "Driver.h"
#include "FrameSearch.h"
#include "RecordingApp.h"
#include "Ring.h"
#include "SampleFiles.h"
#include "ScriptedLink.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using testing::IsEmpty;

/// The examples of the page: the words of each block by the name in bold at the beginning of a line above it.
std::map<std::string, QStringList> documented() {
    static const QRegularExpression example(
        R"(^\*\*([^*]+)\*\*(?:(?!^\*\*|^```).)*?^```hex$(.*?)^```$)",
        QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression space("\\s+");
    QFile page(KELVO_PROTOCOL_PAGE);
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    std::map<std::string, QStringList> examples;
    for (const QRegularExpressionMatch& match : example.globalMatch(text)) {
        examples[match.captured(1).toStdString()] = match.captured(2).split(space, Qt::SkipEmptyParts);
    }
    EXPECT_EQ(text.count("```"), 2 * std::ssize(examples)) << "a block has no name or another language";
    return examples;
}

/// Bytes as an example has them: in hex, and with "... N bytes ..." where the example leaves some out.
QStringList shownLike(const QStringList& example, const Bytes& bytes) {
    QStringList words;
    for (const std::uint8_t byte : bytes) {
        words += QString::asprintf("%02X", byte);
    }
    if (const qsizetype head = example.indexOf("..."); head >= 0) {
        const qsizetype leftOut = words.size() - (example.size() - 4);
        words = words.first(head) + QStringList{"...", QString::number(leftOut), "bytes", "..."} +
                words.sliced(head + leftOut);
    }
    return words;
}

/// An example to the pedal, and which of the session's frames or reports it shows, counted from 0.
struct Sent {
    const char* example;
    std::size_t index;
};

constexpr Sent kFrames[] = {{"Connect query", 0},   {"IR data packet", 1},  {"IR name packet", 4},
                            {"AMP data packet", 8}, {"AMP name packet", 9}, {"Deletion", 10}};
constexpr Sent kReports[] = {{"Connect query in its report", 0}, {"IR name packet in its report", 28}};

/// All output reports of the session that the page describes: start, one import of each kind, a deletion.
std::vector<Report> sessionReports() {
    WaveFile wave{.bitsPerSample = 24};
    std::array<std::uint32_t, 512> words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        append(wave.data, i * 0x010203U, 3);
        words[i] = i * 0x01020304U;
    }
    const SampleDir files;
    RunningApp app;
    app.start();
    app.importIR(4, files.write("mycab.wav", wave.bytes()));
    EXPECT_TRUE(app.waitForChanges(1));
    app.importAMP(2, files.write("clean.amp", ampFile(words)));
    EXPECT_TRUE(app.waitForChanges(2));
    app.controller.ImportIRTableV().selectRow(3);
    click(app.controller.deleteIR());
    app.services.alerts.at(0).answer(1000);
    EXPECT_TRUE(app.waitForChanges(3));
    return app.manager.activity().outputReports;
}

TEST(ProtocolDocs, showTheFramesAndReportsThatGoToThePedal) {
    auto examples = documented();
    const std::vector<Report> reports = sessionReports();
    ASSERT_EQ(reports.size(), 75U);
    Bytes stream;
    for (const Report& report : reports) {
        stream.insert(stream.end(), report.begin() + 1, report.begin() + 1 + report[0]);
    }
    const std::vector<Bytes> frames = framesIn(stream);
    ASSERT_EQ(frames.size(), 11U);
    for (const auto& [name, index] : kFrames) {
        EXPECT_EQ(shownLike(examples[name], frames[index]), examples[name]) << name;
    }
    for (const auto& [name, index] : kReports) {
        EXPECT_EQ(shownLike(examples[name], Bytes(reports[index].begin(), reports[index].end())), examples[name])
            << name;
    }
}

/// An example from the pedal: at which of its bytes the frame begins, and what the page says comes of it.
struct Received {
    const char* example;
    std::ptrdiff_t begin;
    void (*expectEffect)(const KelvoAppDelegate& controller, const Bytes& sent);
};

void expectSecondIRPacket(const KelvoAppDelegate& controller, const Bytes& sent) {
    EXPECT_EQ(controller.transferState().IRTick, 2);
    ASSERT_EQ(sent.size(), 521U);
    EXPECT_EQ(sent[6], 2);
}

const Received kReceived[] = {
    {"CAB names", 0,
     [](const KelvoAppDelegate& controller, const Bytes&) {
         EXPECT_EQ(controller.IRNameArr(),
                   (QStringList{"27.BRIGHT", "28.", "29.ROOM", "30.4X12", "31.", "32.", "33.", "34.", "35.", "36."}));
     }},
    {"AMP names", 0,
     [](const KelvoAppDelegate& controller, const Bytes&) {
         EXPECT_EQ(controller.AMPNameArr().mid(0, 3), (QStringList{"56.CLEAN     ", "57.LEAD      ", "58.          "}));
     }},
    {"Progress 199", 0,
     [](const KelvoAppDelegate& controller, const Bytes&) { EXPECT_EQ(controller.PRESET_PARAValue(), 199); }},
    {"Acknowledgement of IR phase 1", 0, expectSecondIRPacket},
    {"Acknowledgement of AMP phase 5", 0,
     [](const KelvoAppDelegate& controller, const Bytes& sent) {
         EXPECT_THAT(sent, IsEmpty());
         EXPECT_EQ(controller.transferState().IRTick, 0);
     }},
    {"Frame after a stray header byte", 1, expectSecondIRPacket},
};

/// The frames in bytes from the pedal, within one tick.
std::vector<RecordingApp::Frame> unpacked(const Bytes& bytes) {
    RecordingApp app;
    DUP_init();
    EXPECT_TRUE(putRX_buffer(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
    DUP_Unpack();
    EXPECT_THAT(takeRing(), IsEmpty());
    return app.frames();
}

class FromThePedal : public testing::TestWithParam<Received> {};

TEST_P(FromThePedal, isUnpackedAndHasTheDocumentedEffect) {
    const auto& [name, begin, expectEffect] = GetParam();
    const QByteArray example = QByteArray::fromHex(documented()[name].join(' ').toLatin1());
    const std::vector<RecordingApp::Frame> frames = unpacked({example.begin(), example.end()});
    ASSERT_EQ(frames.size(), 1U);
    const Bytes whole(example.begin() + begin, example.end());
    EXPECT_EQ(Bytes(frames[0].begin(), frames[0].begin() + std::ssize(whole)), whole);

    ScriptedLink link;
    ASSERT_TRUE(link.attach());
    ScriptedServices services;
    KelvoAppDelegate controller(link.manager, services.functions());
    controller.CMD_CallBack(frames[0]);
    expectEffect(controller, link.device->sentBytes());
}

INSTANTIATE_TEST_SUITE_P(Examples, FromThePedal, testing::ValuesIn(kReceived));

TEST(ProtocolDocs, containExactlyTheCheckedExamples) {
    std::vector<std::string> checked;
    for (const Sent& sent : kFrames) {
        checked.emplace_back(sent.example);
    }
    for (const Sent& sent : kReports) {
        checked.emplace_back(sent.example);
    }
    for (const Received& received : kReceived) {
        checked.emplace_back(received.example);
    }
    std::vector<std::string> found;
    for (const auto& [name, example] : documented()) {
        found.push_back(name);
    }
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(checked));
}

}  // namespace
}  // namespace kelvo::test
