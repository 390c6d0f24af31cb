#include "WindowArguments.h"

#include <algorithm>
#include <iterator>

namespace kelvo {
namespace {

struct ToolkitOption {
    const char* name;
    const char* value;  ///< of its value; empty for none
    const char* help;   ///< empty for an option that is accepted but not listed
};

/// The toolkit reads its options when the application object is created, which needs a display. They are listed here so
/// that others are refused before that. The last ones come from window and session managers.
constexpr ToolkitOption kToolkitOptions[] = {
    {"platform", "NAME", "the window system: xcb, wayland or offscreen"},
    {"platformtheme", "NAME", "whose dialogs and settings: gtk3 or xdgdesktopportal"},
    {"style", "NAME", "the look: Fusion, Windows or another that is installed"},
    {"stylesheet", "FILE", ""},
    {"display", "NAME", ""},
    {"geometry", "GEOMETRY", ""},
    {"qwindowgeometry", "GEOMETRY", ""},
    {"qwindowicon", "FILE", ""},
    {"qwindowtitle", "TITLE", ""},
    {"platformpluginpath", "PATH", ""},
    {"plugin", "NAME", ""},
    {"reverse", "", ""},
    {"name", "NAME", ""},
    {"session", "ID", ""},
};

}  // namespace

WindowArguments::WindowArguments(int argc, char** argv, qsizetype mostWords) {
    for (const ToolkitOption& option : kToolkitOptions) {
        parser_.addOption(QCommandLineOption(QString::fromLatin1(option.name), {}, QString::fromLatin1(option.value)));
    }
    request_ = readArguments(parser_, argumentList(argc, argv), mostWords);

    toolkit_.emplace_back(argv[0]);
    for (const ToolkitOption& option : kToolkitOptions) {
        const QString name = QString::fromLatin1(option.name);
        const std::string typed = std::string("-") + option.name;
        if (*option.value != '\0') {
            for (const QString& value : parser_.values(name)) {
                toolkit_.insert(toolkit_.end(), {typed, value.toLocal8Bit().toStdString()});
            }
        } else if (parser_.isSet(name)) {
            toolkit_.push_back(typed);
        }
    }
    argc_ = static_cast<int>(toolkit_.size());
    std::ranges::transform(toolkit_, std::back_inserter(argv_), [](std::string& text) { return text.data(); });
    argv_.push_back(nullptr);
}

QString optionsHelp() {
    QString lines = QStringLiteral("  -h, --help           show this help\n  -v, --version        show the version\n");
    for (const ToolkitOption& option : kToolkitOptions) {
        if (*option.help != '\0') {
            const QString left = QStringLiteral("-%1 %2").arg(QLatin1String(option.name), QLatin1String(option.value));
            lines += QStringLiteral("  %1 %2\n").arg(left, -20).arg(QLatin1String(option.help));
        }
    }
    return lines;
}

}  // namespace kelvo
