#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include "Arguments.h"

namespace kelvo {

/// The arguments of kelvo-check.
struct CommandLine {
    Request request;       ///< also has a mistake if options or files cannot be combined
    QByteArrayList files;  ///< in the system's encoding; not empty if the request is to run
    bool isJson = false;   ///< print the reports as JSON
    bool hasSet = false;   ///< also print the report on the set
    QByteArray folder;     ///< print a script that prepares copies in this folder instead; empty for none
    QByteArray plotFile;   ///< path of the picture; empty for none
};

/// `arguments` begin with the program's name.
[[nodiscard]] CommandLine parseCommandLine(const QByteArrayList& arguments);

/// The name, usage and help of kelvo-check.
[[nodiscard]] ProgramText introduction();

}  // namespace kelvo
