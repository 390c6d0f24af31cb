#include "CommandLine.h"

#include <QCommandLineParser>

#include "CheckFile.h"
#include "PrintableText.h"

namespace kelvo {

const char* const kHelpText =
    R"(usage: kelvo-check [--json] [--plot OUT.png] FILE...
Tells whether Kelvo takes each .wav or .amp FILE, why not, and what the pedal would get of it.
A folder stands for the .wav and .amp files in it.

  --json          print one JSON object for each FILE instead
  --plot OUT.png  also draw the points of the one FILE, a .wav, and their spectrum
  --help          show this help
  --version       show the version

Exit status: 0 if every FILE is accepted, 1 if one is refused, 2 for wrong usage or when
something cannot be written.
)";

CommandLine parseCommandLine(const QStringList& arguments) {
    const QString plot = QStringLiteral("plot");
    QCommandLineParser parser;
    const QCommandLineOption help(QStringLiteral("help"));
    const QCommandLineOption version(QStringLiteral("version"));
    const QCommandLineOption json(QStringLiteral("json"));
    parser.addOptions({json, QCommandLineOption(plot, QString(), QStringLiteral("OUT.png")), help, version});
    const bool isUnderstood = parser.parse(arguments);

    CommandLine command{
        .files = parser.positionalArguments(), .isJson = parser.isSet(json), .plotFile = parser.value(plot)};
    if (!isUnderstood) {
        command.mistake = printableText(parser.errorText().toUtf8());
    } else if (parser.isSet(help)) {
        command.action = CommandLine::Action::ShowHelp;
    } else if (parser.isSet(version)) {
        command.action = CommandLine::Action::ShowVersion;
    } else if (command.files.isEmpty()) {
        command.mistake = QStringLiteral("No file is named.");
    } else if (parser.isSet(plot) && !command.plotFile.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        // So that a forgotten argument does not cost the sound file behind it.
        command.mistake = QStringLiteral("The picture's name must end in .png.");
    } else if (parser.isSet(plot) && (command.files.size() != 1 || !isForCabSlot(command.files.first()))) {
        command.mistake = QStringLiteral("With --plot exactly one .wav file is needed.");
    }
    return command;
}

}  // namespace kelvo
