// The utility on a virtual KR310 in the same process. The words on the command line are faults of the pedal.

#include "Faults.h"
#include "NSApplicationMain.h"
#include "StandardStreams.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"
#include "WindowArguments.h"

namespace {

/// A line for each fault: its name, the meaning, range and default of its number.
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
        .help = QStringLiteral("Runs Kelvo on a virtual KR310 and prints the changes of the pedal's memory.\n\n") +
                kelvo::optionsHelp() +
                QStringLiteral("\nFaults of the pedal; can be combined; default value in parentheses:\n") +
                faultsHelp(),
    };
}

/// Switches on the faults that the words name. The request is to run or has a mistake.
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
    kelvo::VirtualKr310 pedal(kelvo::Kr310Memory::factory(), kelvo::printLine);
    pedal.setFaults(faults);
    kelvo::VirtualHidManager manager(pedal);
    manager.plug();
    return kelvo::NSApplicationMain(arguments.argc(), arguments.argv(), manager);
}
