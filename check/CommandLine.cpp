#include "CommandLine.h"

#include "CheckFile.h"

namespace kelvo {

ProgramText introduction() {
    return {
        .name = QStringLiteral("kelvo-check"),
        .synopsis = QStringLiteral("[--json] [--plot OUT.png] FILE..."),
        .help = QStringLiteral(
            R"(Tells whether Kelvo takes each .wav or .amp FILE, why not, and what the pedal would get of it.
A folder stands for the .wav and .amp files in it.

  --json          print one JSON object for each FILE instead
  --plot OUT.png  also draw the points of the one FILE, a .wav, and their spectrum
  -h, --help      show this help
  -v, --version   show the version

Exit status: 0 if every FILE is accepted, 1 if one is refused, 2 for wrong usage or when
something cannot be written.
)"),
    };
}

CommandLine parseCommandLine(const QByteArrayList& arguments) {
    // The parser wants characters, but a file's name is bytes: each byte becomes a character, and is one again later.
    QStringList characters;
    for (const QByteArray& argument : arguments) {
        characters += QString::fromLatin1(argument);
    }
    const QString plot = QStringLiteral("plot");
    const QString json = QStringLiteral("json");
    QCommandLineParser parser;
    parser.addOptions({QCommandLineOption(json), {plot, {}, QStringLiteral("OUT.png")}});
    Request request = readArguments(parser, characters);
    request.mistake = QString::fromUtf8(request.mistake.toLatin1());

    CommandLine command{.request = request, .isJson = parser.isSet(json), .plotFile = parser.value(plot).toLatin1()};
    for (const QString& file : parser.positionalArguments()) {
        command.files += file.toLatin1();
    }
    if (request.kind != Request::Kind::Run || !request.mistake.isEmpty()) {
        return command;
    }
    if (command.files.isEmpty()) {
        command.request.mistake = QStringLiteral("No file is named.");
    } else if (parser.isSet(plot) && !command.plotFile.toLower().endsWith(".png")) {
        // So that a forgotten argument does not cost the sound file behind it.
        command.request.mistake = QStringLiteral("The picture's name must end in .png.");
    } else if (parser.isSet(plot) && (command.files.size() != 1 || !isForCabSlot(command.files.first()))) {
        command.request.mistake = QStringLiteral("With --plot exactly one .wav file is needed.");
    }
    return command;
}

}  // namespace kelvo
