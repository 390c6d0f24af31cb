#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"

namespace kelvo {

/// The command line of a program that shows windows: the options that every program of the toolkit has, and words.
class WindowArguments {
public:
    /// Reads the arguments of main; no display is needed. More words than `mostWords` are a mistake.
    WindowArguments(int argc, char** argv, qsizetype mostWords);

    [[nodiscard]] const Request& request() const { return request_; }
    [[nodiscard]] QStringList words() const { return parser_.positionalArguments(); }

    /// The toolkit's options and nothing else, in the form that it takes, for the application object; they live as long
    /// as this object, and the application object may shorten them.
    int& argc() { return argc_; }
    char** argv() { return argv_.data(); }

private:
    QCommandLineParser parser_;
    Request request_;
    std::vector<std::string> toolkit_;
    std::vector<char*> argv_;
    int argc_ = 0;
};

/// A line for each option, for a help text.
[[nodiscard]] QString optionsHelp();

}  // namespace kelvo
