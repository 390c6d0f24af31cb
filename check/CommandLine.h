#pragma once

#include <QString>
#include <QStringList>

namespace kelvo {

/// What the arguments of kelvo-check ask for.
struct CommandLine {
    enum class Action { Check, ShowHelp, ShowVersion };

    Action action = Action::Check;
    QStringList files;    ///< to check; one at least, unless there is a mistake
    bool isJson = false;  ///< the report is for programs
    QString plotFile;     ///< where the picture goes; empty for none
    QString mistake;      ///< why the arguments make no sense, printable; else empty
};

/// `arguments` begin with the program's name.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments);

/// What --help prints.
extern const char* const kHelpText;

}  // namespace kelvo
