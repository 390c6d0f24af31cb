#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"

namespace kelvo {

/// The command line of a program with windows: the options that every program of the toolkit has, and words.
class WindowArguments {
public:
    /// Reads the arguments of main; needs no display. More words than `mostWords` are an error.
    WindowArguments(int argc, char** argv, qsizetype mostWords);

    [[nodiscard]] const Request& request() const { return request_; }
    [[nodiscard]] QStringList words() const { return parser_.positionalArguments(); }

    /// Only the toolkit's options, in the form that the application object expects. They live as long as this object,
    /// and the application object may shorten them.
    int& argc() { return argc_; }
    char** argv() { return argv_.data(); }

private:
    QCommandLineParser parser_;
    Request request_;
    std::vector<std::string> toolkit_;
    std::vector<char*> argv_;
    int argc_ = 0;
};

/// One line for each option, for a help text.
[[nodiscard]] QString optionsHelp();

}  // namespace kelvo
