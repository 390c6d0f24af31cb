#include "HidrawManager.h"
#include "NSApplicationMain.h"
#include "StandardStreams.h"
#include "WindowArguments.h"

int main(int argc, char** argv) {
    kelvo::keepStandardStreams();
    kelvo::WindowArguments arguments(argc, argv, 0);
    const kelvo::ProgramText text{
        .name = QStringLiteral("kelvo"),
        .synopsis = QStringLiteral("[OPTION]..."),
        .help = QStringLiteral("Loads cabinet impulse responses and amp models into a KR310 pedal.\n\n") +
                kelvo::optionsHelp(),
    };
    if (const auto status = answer(arguments.request(), text)) {
        return *status;
    }
    kelvo::HidrawManager manager;
    return kelvo::NSApplicationMain(arguments.argc(), arguments.argv(), manager);
}
