// From the pull of the cable to the alert on the screen.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <future>
#include <vector>

#include "CableApp.h"
#include "Driver.h"
#include "RVHidClass.h"

namespace kelvo::test {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kPulls = 20;
constexpr std::chrono::milliseconds kRest{300};

/// When the kernel reports to the node's reader that the device has gone.
Clock::time_point waitForEndOfNode(const UniqueFd& node) {
    pollfd end{node.get(), 0, 0};
    while ((end.revents & POLLHUP) == 0) {
        poll(&end, 1, -1);
    }
    return Clock::now();
}

/// Notices the first paint of an alert.
class PaintWatch : public QObject {
public:
    bool eventFilter(QObject* object, QEvent* event) override {
        painted = painted || (event->type() == QEvent::Paint && qobject_cast<QMessageBox*>(object) != nullptr);
        return false;
    }
    bool painted = false;
};

struct Pull {
    Milliseconds link;  ///< from the kernel's report until the alert is asked for
    Milliseconds all;   ///< from the pull until the alert is on the screen
};

/// What the utility does when the cable is pulled.
using Business = std::future<void> (*)();

std::future<void> nothing() {
    return std::async(std::launch::deferred, [] {});
}

/// Report after report, without a pause, until one is refused.
std::future<void> writing() {
    return std::async(std::launch::async, [] {
        constexpr std::array<std::uint8_t, 521> ignored{};
        while (HID_WreteData(ignored.data(), ignored.size())) {
        }
    });
}

Pull measureOnePull(PluggedPedal& pedal, Business business) {
    CableApp app(pedal, 2);
    app.start();
    const std::future<void> untilTheEnd = business();
    // A cable is pulled from a utility at rest, not from one that is still drawing its tables.
    EXPECT_FALSE(serveUntil([] { return false; }, kRest));
    const UniqueFd node(open(hidrawNode().c_str(), O_RDONLY | O_CLOEXEC));
    auto gone = std::async(std::launch::async, [&] { return waitForEndOfNode(node); });
    Clock::time_point asked;
    PaintWatch watch;
    app.onAlert = [&](QWidget& window, const Alert& alert) {
        asked = Clock::now();
        qApp->installEventFilter(&watch);
        desktopServices().beginSheetModal(window, alert, [](int) {});
    };
    const Clock::time_point pulled = Clock::now();
    pedal.unplug();
    EXPECT_TRUE(serveUntil([&] { return watch.painted; }));
    // An answer from the display comes after everything that was drawn before.
    EXPECT_FALSE(QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, 1, 1).isNull());
    const Clock::time_point shown = Clock::now();
    // The first of the two that wakes shows that the kernel has reported it.
    const Clock::time_point reported = std::min(gone.get(), asked);
    delete visibleMessageBox();
    return {.link = asked - reported, .all = shown - pulled};
}

/// Prints the median and the worst of the pulls' times, and returns the median.
double report(const char* what, std::vector<Milliseconds> times) {
    std::ranges::sort(times);
    const double median = times[times.size() / 2].count();
    std::printf("       %-44s median %6.1f ms, worst %6.1f ms\n", what, median, times.back().count());
    return median;
}

TEST(Alert, isOnTheScreenSoonAfterTheCableIsPulled) {
    for (const Business business : {nothing, writing}) {
        std::puts(business == writing ? "       while writing:" : "       at rest:");
        PluggedPedal pedal;
        std::vector<Milliseconds> link;
        std::vector<Milliseconds> all;
        for (int n = 0; n < kPulls; ++n) {
            const Pull pull = measureOnePull(pedal, business);
            link.push_back(pull.link);
            all.push_back(pull.all);
            pedal.plug();
        }
        report("pull to alert on the screen, 20 times:", all);
        // The utility's own share. The toolkit's and the screen's depend on the machine, and this one is emulated.
        EXPECT_LT(report("  from the kernel's report until it is asked for:", link), 50.0);
    }
}

}  // namespace
}  // namespace kelvo::test
