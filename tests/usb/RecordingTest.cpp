// What the recorder writes down of a session with the pedal, and what the comparison says about it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <csignal>

#include "CableApp.h"

namespace kelvo::test {
namespace {

using testing::StartsWith;

const QString kScripts = QStringLiteral(KELVO_SCRIPTS "/");
const QString kOpenBack = QStringLiteral(KELVO_SAMPLES "/Open Back.wav");
const QString kDusty = QStringLiteral(KELVO_SAMPLES "/Dusty.wav");
const QString kLead = QStringLiteral(KELVO_SAMPLES "/Lead.amp");

/// A running scripts/record-pedal, with a folder that stays where KELVO_RECORDINGS names one.
class Recorder {
public:
    explicit Recorder(const QString& name)
        : folder_(qEnvironmentVariable("KELVO_RECORDINGS", temporary_.path()) + '/' + name) {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(kScripts + "record-pedal", {folder_});
        EXPECT_TRUE(process_.waitForReadyRead());
        EXPECT_EQ(process_.readLine(),
                  "Recording to " + folder_ + "/transfers.txt. Use the pedal with Kelvo, then press Ctrl+C.\n");
    }
    QString finish() {
        kill(static_cast<pid_t>(process_.processId()), SIGINT);
        EXPECT_TRUE(process_.waitForFinished());
        EXPECT_EQ(process_.exitCode(), 0);
        return folder_ + "/transfers.txt";
    }

private:
    QTemporaryDir temporary_;
    QString folder_;
    QProcess process_;
};

/// The lines that scripts/replay-pedal prints about a recording, after the one about the answers.
std::vector<std::string> differences(const QStringList& arguments) {
    QProcess process;
    process.start(kScripts + "replay-pedal", arguments);
    EXPECT_TRUE(process.waitForFinished());
    const QStringList lines = QString(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    std::vector<std::string> result;
    for (const QString& line : lines.sliced(std::min<qsizetype>(1, lines.size()))) {
        result.push_back(line.toStdString());
    }
    return result;
}

TEST(Recording, ofASoundPedalDiffersInNothing) {
    PluggedPedal pedal;
    Recorder recorder("sound");
    CableApp app(pedal);
    app.start();
    app.importIR(0, kOpenBack);
    ASSERT_TRUE(pedal.says("CAB 27 <- \"OPEN BACK\" 512 points, crc32 4de60feb"));
    app.importIR(0, kDusty);
    ASSERT_TRUE(pedal.says("CAB 27 <- \"DUSTY\" 512 points, crc32 93ed834a"));
    app.importAMP(2, kLead);
    ASSERT_TRUE(pedal.says("AMP 58 <- \"Lead\" 512 words, crc32 f3d57e0b"));
    app.deleteCAB(3);
    ASSERT_TRUE(pedal.says("CAB 30 cleared"));
    pedal.unplug();
    // The question before the deletion, and the alert.
    EXPECT_TRUE(serveUntil([&] { return app.services.alerts.size() == 2; }));
    EXPECT_THAT(differences({recorder.finish(), kOpenBack, kDusty, kLead}), testing::ElementsAre("No difference."));
}

struct Fault {
    const char* name;
    const char* command;
    const char* line;
};

class RecordingOfAFault : public testing::TestWithParam<Fault> {};

TEST_P(RecordingOfAFault, differsInOneLine) {
    PluggedPedal pedal;
    pedal.tell(GetParam().command, GetParam().command);
    Recorder recorder(GetParam().name);
    CableApp app(pedal);
    app.start();
    app.importIR(0, kOpenBack);
    ASSERT_TRUE(pedal.says("CAB 27 <- \"OPEN BACK\" 512 points, crc32 4de60feb"));
    // The last acknowledgement.
    ASSERT_TRUE(serveUntil([&] { return app.controller.transferState().IRTick == 0; }));
    // The recording may end before the last of the doubled answers, which is a difference as well.
    EXPECT_THAT(differences({recorder.finish(), kOpenBack}), testing::Contains(StartsWith(GetParam().line)));
}

INSTANTIATE_TEST_SUITE_P(
    , RecordingOfAFault,
    testing::Values(Fault{"otherLength", "fault long-frames", "LENGTH: 0xA5 has 3 instead of 2, "},
                    Fault{"lateAnswers", "fault delay=1500", "late answer: up to 1.5"},
                    Fault{"wrongCrc", "fault corrupt-crc=150", "wrong CRC: from the pedal (first at "},
                    Fault{"otherOrder", "fault amp-names-first", "order of the start: AMP names before CAB names "},
                    Fault{"extraFrame", "fault duplicate-ack", "unrequested frame: 0xE1 phase 1"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace kelvo::test
