#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include "Arguments.h"

namespace kelvo {

/// What the arguments of kelvo-check ask for.
struct CommandLine {
    Request request;       ///< with a mistake, too, where the files and the picture do not go together
    QByteArrayList files;  ///< to check, in the system's own bytes; one at least when the request is to run
    bool isJson = false;   ///< the report is for programs
    QByteArray plotFile;   ///< where the picture goes; empty for none
};

/// `arguments` begin with the program's name.
[[nodiscard]] CommandLine parseCommandLine(const QByteArrayList& arguments);

/// How kelvo-check introduces itself.
[[nodiscard]] ProgramText introduction();

}  // namespace kelvo
