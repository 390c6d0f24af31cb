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
    bool hasSet = false;   ///< it ends with what the files have to do with each other
    QByteArray folder;     ///< print a script that prepares copies in this folder instead; empty for none
    QByteArray plotFile;   ///< where the picture goes; empty for none
};

/// `arguments` begin with the program's name.
[[nodiscard]] CommandLine parseCommandLine(const QByteArrayList& arguments);

/// How kelvo-check introduces itself.
[[nodiscard]] ProgramText introduction();

}  // namespace kelvo
