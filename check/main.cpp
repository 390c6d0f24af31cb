// kelvo-check: reports whether the utility accepts files, for users whose import seems to do nothing.

#include <QGuiApplication>
#include <QString>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "CommandLine.h"
#include "Plot.h"
#include "Prepare.h"
#include "PrintableText.h"
#include "Progress.h"
#include "ReportJson.h"
#include "ReportText.h"
#include "SetReport.h"

namespace kelvo {
namespace {

enum ExitStatus { kAllAccepted = 0, kSomeRefused = 1, kTrouble = 2 };

/// Returns whether the picture could be written.
bool drawPlot(const FileReport& report, const QByteArray& path) {
    // Fonts need an application object, but no display and no desktop theme.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    int count = 1;
    char name[] = "kelvo-check";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(count, arguments);
    const QString file = printableText(report.path.sliced(report.path.lastIndexOf('/') + 1));
    const QString title = QStringLiteral("%1: the points that the pedal gets").arg(file);
    const QString failure = savePicture(plotWave(title, *report.wave), path);
    if (!failure.isEmpty()) {
        printError(introduction(), QStringLiteral("%1 cannot be written: %2").arg(printableText(path), failure));
    }
    return failure.isEmpty();
}

int check(const CommandLine& command) {
    int status = kAllAccepted;
    const QByteArrayList files = command.plotFile.isEmpty() ? withFilesOfFolders(command.files) : command.files;
    SetReport set;
    Progress progress(files.size());
    for (const QByteArray& file : files) {
        progress.begin(file);
        const FileReport report = checkFile(file);
        progress.hide();
        set.add(report);
        print(stdout, command.isJson ? QString::fromLatin1(reportJson(report)) : reportText(report));
        if (!report.refusal.isEmpty()) {
            status = kSomeRefused;
        } else if (!command.plotFile.isEmpty() && !drawPlot(report, command.plotFile)) {
            status = kTrouble;
        }
    }
    if (command.isJson ? command.hasSet : files.size() > 1 || files != command.files) {
        print(stdout, command.isJson ? QString::fromLatin1(set.json()) : set.text());
    }
    return status;
}

int printScript(const CommandLine& command) {
    const QByteArrayList files = withFilesOfFolders(command.files);
    std::vector<Prepared> set;
    Progress progress(files.size());
    for (const QByteArray& file : files) {
        progress.begin(file);
        set.push_back(prepare(file));
    }
    progress.hide();
    print(stdout, prepareScript(command.folder, set));
    return std::ranges::all_of(set, &QString::isEmpty, &Prepared::leftOut) ? kAllAccepted : kSomeRefused;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
    // The toolkit's warnings about fonts and locales are of no use to the user.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const kelvo::CommandLine command = kelvo::parseCommandLine(QByteArrayList(argv, argv + argc));
    if (const auto status = answer(command.request, kelvo::introduction())) {
        return *status;
    }
    const int status = command.folder.isEmpty() ? kelvo::check(command) : kelvo::printScript(command);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        printError(kelvo::introduction(), QStringLiteral("the report cannot be written"));
        return kelvo::kTrouble;
    }
    return status;
}
