#pragma once

#include <QString>
#include <QStringList>

#include "Arguments.h"

namespace kelvo {

/// What the arguments of kelvo-check ask for.
struct CommandLine {
    Request request;      ///< with a mistake, too, where the files and the picture do not go together
    QStringList files;    ///< to check; one at least when the request is to run
    bool isJson = false;  ///< the report is for programs
    QString plotFile;     ///< where the picture goes; empty for none
};

/// `arguments` begin with the program's name.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments);

/// How kelvo-check introduces itself.
[[nodiscard]] ProgramText introduction();

}  // namespace kelvo
