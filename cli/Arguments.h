#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <limits>
#include <optional>
#include <string_view>

namespace kelvo {

/// What a program prints about itself.
struct ProgramText {
    QString name;
    QString synopsis;  ///< the text after the name in the line "usage: "
    QString help;      ///< the text of --help below that line, with its line end
};

/// Writes the text as UTF-8.
void print(std::FILE* stream, const QString& text);

/// Writes the line, which is UTF-8, and a line end to standard output and flushes it.
void printLine(std::string_view line);

/// Prints the program's name and the error message to standard error. `message` must be safe for a terminal, see
/// printableText.
void printError(const ProgramText& text, const QString& message);

/// What a program's arguments request.
struct Request {
    enum class Kind { Run, ShowHelp, ShowVersion };

    Kind kind = Kind::Run;
    QString mistake;  ///< why the arguments are wrong; empty if they are right
};

/// The arguments of main, the program's name first.
[[nodiscard]] QStringList argumentList(int argc, char** argv);

inline constexpr auto kAnyNumberOfWords = std::numeric_limits<qsizetype>::max();

/// Adds -h, --help, -v and --version to the parser and parses `arguments`, which begin with the program's name. Words
/// are the arguments that are not options; more than `mostWords` are a mistake.
[[nodiscard]] Request readArguments(QCommandLineParser& parser, const QStringList& arguments,
                                    qsizetype mostWords = kAnyNumberOfWords);

/// Prints the help or version to standard output, or the mistake and the usage to standard error. Returns the exit
/// status, 2 for a mistake or a write error, or nothing if the program is to run.
[[nodiscard]] std::optional<int> answer(const Request& request, const ProgramText& text);

}  // namespace kelvo
