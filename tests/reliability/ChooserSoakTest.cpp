// Two hundred imports through the real chooser. Prints the memory now and then.

#include <gtest/gtest.h>
#include <malloc.h>

#include <QApplication>
#include <QFileDialog>
#include <QPushButton>
#include <atomic>
#include <cstdio>
#include <string_view>

#include "AppServices.h"
#include "Driver.h"
#include "ReliabilityApp.h"

namespace kelvo::test {
namespace {

constexpr std::size_t kImports = 200;
/// The toolkit's caches have been filled by then.
constexpr std::size_t kSettled = 20;
/// What still grows is the toolkit's: a cache of pixmaps up to its limit, and some bytes for each new active window.
constexpr std::size_t kSlackKiB = 1024;

/// In KiB, without what is free and only not given back yet.
std::size_t heldMemory() {
    malloc_trim(0);
    return holdings().memory;
}

TEST(ChooserSoakTest, twoHundredImportsThroughTheRealChooser_useLessThanAMegabyte) {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const SampleDir files;
    const QString wave = files.write("a.wav", waveOf(7));
    std::atomic<std::size_t> changes = 0;
    VirtualKr310 pedal(Kr310Memory::factory(), [&changes](std::string_view) { ++changes; });
    pedal.setStartup({.progressStep = 199, .progressPace = {}});
    VirtualHidManager manager{pedal};
    ScriptedServices scripted;
    scripted.onSleep = [&manager](unsigned seconds) {
        if (seconds == 2) {
            static_cast<void>(manager.waitFor([](const auto& activity) { return activity.arrivals > 0; }));
        }
    };
    AppServices services = scripted.functions();
    services.beginOpenPanel = desktopServices().beginOpenPanel;
    KelvoAppDelegate controller{manager, services};
    manager.plug();
    controller.applicationDidFinishLaunching();

    std::size_t settled = 0;
    for (std::size_t import = 1; import <= kImports; ++import) {
        click(controller.addIR());
        ASSERT_TRUE(serveUntil([] { return visibleFileDialog() != nullptr; }));
        // Its icons are in the caches when it has been painted.
        visibleFileDialog()->grab();
        enterPath(*visibleFileDialog(), wave);
        ASSERT_EQ(visibleFileDialog(), nullptr);
        ASSERT_TRUE(serveUntil([&] { return changes == import; }));
        // As a running event loop would between two clicks.
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (import % kSettled == 0) {
            std::printf("%zu imports: %zu KiB\n", import, heldMemory());
        }
        if (import == kSettled) {
            settled = heldMemory();
        }
    }
    EXPECT_LT(heldMemory(), settled + kSlackKiB);
}

}  // namespace
}  // namespace kelvo::test
