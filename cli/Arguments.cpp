#include "Arguments.h"

#include "PrintableText.h"

namespace kelvo {
namespace {

constexpr int kWrongUse = 2;

QString usageLine(const ProgramText& text) {
    return QStringLiteral("usage: %1 %2\n").arg(text.name, text.synopsis);
}

}  // namespace

void print(std::FILE* stream, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<std::size_t>(utf8.size()), stream);
}

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

void printError(const ProgramText& text, const QString& message) {
    print(stderr, QStringLiteral("%1: %2\n").arg(text.name, message));
}

QStringList argumentList(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    return arguments;
}

Request readArguments(QCommandLineParser& parser, const QStringList& arguments, qsizetype mostWords) {
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    parser.addOptions({help, version});
    // "-style" is one option of the toolkit, not five.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    if (!parser.parse(arguments)) {
        return {.mistake = parser.errorText()};
    }
    if (parser.isSet(help)) {
        return {Request::Kind::ShowHelp, {}};
    }
    if (parser.isSet(version)) {
        return {Request::Kind::ShowVersion, {}};
    }
    const QStringList words = parser.positionalArguments();
    if (words.size() > mostWords) {
        return {.mistake = QStringLiteral("Unexpected word '%1'.").arg(words[mostWords])};
    }
    return {};
}

std::optional<int> answer(const Request& request, const ProgramText& text) {
    if (!request.mistake.isEmpty()) {
        printError(text, printableText(request.mistake.toUtf8()));
        print(stderr, usageLine(text) + QStringLiteral("Try '%1 --help'.\n").arg(text.name));
        return kWrongUse;
    }
    switch (request.kind) {
        case Request::Kind::Run:
            return {};
        case Request::Kind::ShowHelp:
            print(stdout, usageLine(text) + text.help);
            break;
        case Request::Kind::ShowVersion:
            print(stdout, QStringLiteral("%1 " KELVO_VERSION "\n").arg(text.name));
            break;
    }
    std::fflush(stdout);
    if (std::ferror(stdout) != 0) {
        printError(text, QStringLiteral("standard output cannot be written"));
        return kWrongUse;
    }
    return 0;
}

}  // namespace kelvo
