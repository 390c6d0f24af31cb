#include <gtest/gtest.h>

#include <QApplication>

#include "NSLog.h"

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    // The system's log is not for tests; where there is none, every line opens a socket, which tests that count
    // descriptors would see.
    const kelvo::LogListener silence([](std::string_view) {});
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
