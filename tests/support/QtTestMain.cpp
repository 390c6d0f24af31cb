// The main program of tests that need the toolkit: a complaint of the toolkit is a failure of the test that it comes
// in.

#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <array>

namespace {

/// What the offscreen platform cannot do.
constexpr std::array kOffscreen{"This plugin does not support ", "QStandardPaths: "};

void fail(QtMsgType type, const QMessageLogContext&, const QString& text) {
    const bool isOffscreen = std::ranges::any_of(
        kOffscreen, [&text](const char* beginning) { return text.startsWith(QLatin1String(beginning)); });
    if (type != QtDebugMsg && type != QtInfoMsg && !isOffscreen) {
        ADD_FAILURE() << "the toolkit complains: " << text.toStdString();
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    qInstallMessageHandler(fail);
    return RUN_ALL_TESTS();
}
