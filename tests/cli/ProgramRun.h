#pragma once

#include <gtest/gtest.h>

#include <QProcess>
#include <string>

namespace kelvo::test {

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs one of the programs, by its name, where no display is named but by `variables`, with nothing on its input.
inline Outcome runProgram(const QString& name, const QStringList& arguments,
                          const QList<std::pair<QString, QString>>& variables = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME"}) {
        environment.remove(variable);
    }
    for (const auto& [variable, value] : variables) {
        environment.insert(variable, value);
    }
    // A sanitizer's own summary would be taken for the program's.
    environment.insert("LSAN_OPTIONS", environment.value("LSAN_OPTIONS") + ":print_suppressions=0");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(name.startsWith('/') ? name : KELVO_PROGRAMS + name, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << process.errorString().toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << name.toStdString();
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

}  // namespace kelvo::test
