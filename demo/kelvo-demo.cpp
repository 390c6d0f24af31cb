// The utility on a virtual KR310 in the same process. Words switch on faults of the pedal.

#include <cstdio>
#include <string_view>

#include "Faults.h"
#include "NSApplicationMain.h"
#include "StandardStreams.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"
#include "WindowArguments.h"

namespace {

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

/// A line for each fault: its name, and what its number means.
QString faultsHelp() {
    QString lines;
    for (const kelvo::FaultEntry& fault : kelvo::faultTable()) {
        QString line = QString::fromUtf8(fault.name.data(), std::ssize(fault.name));
        if (!fault.argument.empty()) {
            line = QStringLiteral("%1 %2: %3 (%4)")
                       .arg(line, -20)
                       .arg(QString::fromUtf8(fault.argument.data(), std::ssize(fault.argument)),
                            QString::fromStdString(numbersOf(fault)))
                       .arg(fault.usual);
        }
        lines += QStringLiteral("  ") + line + QLatin1Char('\n');
    }
    return lines;
}

kelvo::ProgramText introduction() {
    return {
        .name = QStringLiteral("kelvo-demo"),
        .synopsis = QStringLiteral("[OPTION]... [FAULT[=NUMBER]]..."),
        .help = QStringLiteral("Runs Kelvo on a virtual KR310, and prints what changes in the pedal's memory.\n\n") +
                kelvo::optionsHelp() +
                QStringLiteral("\nFaults of the pedal, which go together; in parentheses the number without one:\n") +
                faultsHelp(),
    };
}

/// Switches on what the words name. The request is then to run, or has a mistake.
kelvo::Request readFaults(const QStringList& words, kelvo::Faults& faults) {
    for (const QString& word : words) {
        if (const auto mistake = switchOn(word.toStdString(), faults)) {
            return {.mistake = QString::fromStdString(*mistake)};
        }
    }
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    kelvo::keepStandardStreams();
    kelvo::WindowArguments arguments(argc, argv, kelvo::kAnyNumberOfWords);
    if (const auto status = answer(arguments.request(), introduction())) {
        return *status;
    }
    kelvo::Faults faults;
    if (const auto status = answer(readFaults(arguments.words(), faults), introduction())) {
        return *status;
    }
    kelvo::VirtualKr310 pedal(kelvo::Kr310Memory::factory(), printLine);
    pedal.setFaults(faults);
    kelvo::VirtualHidManager manager(pedal);
    manager.plug();
    return kelvo::NSApplicationMain(arguments.argc(), arguments.argv(), manager);
}
