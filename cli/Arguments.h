#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <limits>
#include <optional>

namespace kelvo {

/// How a program introduces itself on a terminal.
struct ProgramText {
    QString name;
    QString synopsis;  ///< what follows the name in the line "usage: "
    QString help;      ///< what --help prints under that line, with its line end
};

/// Writes the text as UTF-8.
void print(std::FILE* stream, const QString& text);

/// Says on standard error, after the program's name, what is wrong, in characters that a terminal may get.
void complain(const ProgramText& text, const QString& trouble);

/// What a program's arguments ask for.
struct Request {
    enum class Kind { Run, ShowHelp, ShowVersion };

    Kind kind = Kind::Run;
    QString mistake;  ///< why the arguments make no sense; else empty
};

/// The arguments of main, the program's name first.
[[nodiscard]] QStringList argumentList(int argc, char** argv);

inline constexpr auto kAnyNumberOfWords = std::numeric_limits<qsizetype>::max();

/// Reads `arguments`, which begin with the program's name, with the parser, to which -h, --help, -v and --version are
/// added. A word is what is no option; more than `mostWords` are a mistake.
[[nodiscard]] Request readArguments(QCommandLineParser& parser, const QStringList& arguments,
                                    qsizetype mostWords = kAnyNumberOfWords);

/// Shows what is asked for, or says on standard error what the mistake is and how the program is used. Returns the
/// status to end with, 2 for a mistake and when the answer cannot be written, or nothing when the program is to run.
[[nodiscard]] std::optional<int> answer(const Request& request, const ProgramText& text);

}  // namespace kelvo
