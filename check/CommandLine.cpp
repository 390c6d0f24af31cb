#include "CommandLine.h"

#include "CheckFile.h"

namespace kelvo {

ProgramText introduction() {
    return {
        .name = QStringLiteral("kelvo-check"),
        .synopsis = QStringLiteral("[--json [--set] | --plot OUT.png | --prepare DIR] FILE..."),
        .help = QStringLiteral(
            R"(Reports whether Kelvo accepts each .wav or .amp FILE, why not, and what the pedal would get.
A folder means the .wav and .amp files in it.

  --json          print one JSON object for each FILE instead
  --set           with --json, print one more object for the complete set
  --plot OUT.png  also draw the points of the only FILE, a .wav, and their response
  --prepare DIR   print a shell script instead, which copies the .wav FILEs to DIR:
                  converted by sox, equally loud, with different names
  -h, --help      show this help
  -v, --version   show the version

Exit status: 0 if every FILE is accepted, 1 if one is refused or not prepared, 2 for wrong usage or when
something cannot be written.
)"),
    };
}

CommandLine parseCommandLine(const QByteArrayList& arguments) {
    // The parser needs characters, but a file's name is bytes: Latin-1 maps each byte to one character and back.
    QStringList characters;
    for (const QByteArray& argument : arguments) {
        characters += QString::fromLatin1(argument);
    }
    const QString json = QStringLiteral("json");
    const QString set = QStringLiteral("set");
    const QString plot = QStringLiteral("plot");
    const QString prepare = QStringLiteral("prepare");
    QCommandLineParser parser;
    parser.addOptions({QCommandLineOption(json),
                       QCommandLineOption(set),
                       {plot, {}, QStringLiteral("OUT.png")},
                       {prepare, {}, QStringLiteral("DIR")}});
    Request request = readArguments(parser, characters);
    request.mistake = QString::fromUtf8(request.mistake.toLatin1());

    CommandLine command{.request = request,
                        .isJson = parser.isSet(json),
                        .hasSet = parser.isSet(set),
                        .folder = parser.value(prepare).toLatin1(),
                        .plotFile = parser.value(plot).toLatin1()};
    for (const QString& file : parser.positionalArguments()) {
        command.files += file.toLatin1();
    }
    if (request.kind != Request::Kind::Run || !request.mistake.isEmpty()) {
        return command;
    }
    if (command.files.isEmpty()) {
        command.request.mistake = QStringLiteral("No file is named.");
    } else if (parser.isSet(plot) && !command.plotFile.toLower().endsWith(".png")) {
        // If OUT.png is forgotten, the sound file after --plot must not be overwritten.
        command.request.mistake = QStringLiteral("The picture's name must end in .png.");
    } else if (parser.isSet(plot) && (command.files.size() != 1 || !isForCabSlot(command.files.first()))) {
        command.request.mistake = QStringLiteral("With --plot exactly one .wav file is needed.");
    } else if (command.hasSet && !command.isJson) {
        command.request.mistake = QStringLiteral("--set needs --json.");
    } else if (parser.isSet(prepare) && (command.isJson || parser.isSet(plot))) {
        command.request.mistake = QStringLiteral("--prepare cannot be combined with --json or --plot.");
    } else if (parser.isSet(prepare) && command.folder.isEmpty()) {
        command.request.mistake = QStringLiteral("No folder is named for --prepare.");
    } else if (!command.folder.isValidUtf8()) {
        command.request.mistake = QStringLiteral("The folder's name must be valid UTF-8.");
    }
    return command;
}

}  // namespace kelvo
