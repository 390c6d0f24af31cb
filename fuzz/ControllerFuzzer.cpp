// Frames from a hostile device and actions of the user, for the running controller. The controller is started once,
// with both worker threads; every input begins with the same labels and phases.

#include <condition_variable>
#include <mutex>

#include "DirectLink.h"
#include "FuzzedController.h"
#include "LoadDataWindowController.h"
#include "RVHidClass.h"
#include "SBProgressBar.h"

using kelvo::fuzz::check;
using kelvo::fuzz::FuzzInput;

namespace {

/// A device that accepts all reports and sends none.
class MuteManager : public kelvo::HidManager {
public:
    bool open(const kelvo::HidMatching&, kelvo::HidCallbacks callbacks) override {
        callbacks_ = std::move(callbacks);
        return true;
    }
    void run() override {
        callbacks_.deviceMatching(std::make_shared<kelvo::fuzz::DirectDevice>([](const auto&) { return true; }));
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return stopped_; });
    }
    void stop() override {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool stopped_ = false;
    kelvo::HidCallbacks callbacks_;
};

struct Session {
    MuteManager manager;
    kelvo::test::ScriptedServices services;
    kelvo::KelvoAppDelegate controller{manager, services.functions()};
};

/// The running session of this process. It never ends.
Session& session() {
    static Session* const running = [] {
        auto* const made = new Session;
        made->services.onSleep = [made](unsigned seconds) {
            if (seconds == 2) {
                check(kelvo::test::serveUntil([] { return kelvo::isOpenDevice.load(); }), "the device is found");
                QTimer::singleShot(0, [made] { made->controller.loadWindow().progressBar()->setFloatValue(1.0); });
            }
        };
        made->controller.applicationDidFinishLaunching();
        // Painted only on request of the fuzzer, not whenever events are served.
        made->controller.window().hide();
        return made;
    }();
    return *running;
}

class Run {
public:
    explicit Run(FuzzInput input) : input_(input) {
        user_.beginAnew();
        checkState();
        while (!input_.empty()) {
            step();
        }
        QCoreApplication::processEvents();
        checkState();
    }

private:
    void step() {
        // Mostly frames: a hostile device can send nothing else, and imports take far more time.
        switch (input_.below(16)) {
            case 0:
                return user_.importIR(input_.below(11), input_.below(3));
            case 1:
                return user_.importAMP(input_.below(11), input_.below(3));
            case 2:
                return user_.deleteCab(input_.below(11), input_.below(2) == 0);
            case 3:
                return paintRow(input_.below(2) == 0 ? session_.controller.ImportIRTableV()
                                                     : session_.controller.ImportCabTableV());
            case 4: {
                constexpr std::uint8_t kKnown[] = {0x85, 0xE3, 0xA5, 0xE1, 0xE2, 0xE4, 0xE0, 0x00};
                buffer_[5] = input_.byte();
                return sendFrame(kKnown[input_.below(8)]);
            }
            default: {
                const std::uint8_t command = input_.byte();
                const auto data = input_.bytes(input_.below(128));
                std::ranges::copy(data, buffer_.begin() + 5);
                return sendFrame(command);
            }
        }
    }
    void paintRow(const QTableView& table) {
        table.viewport()->grab(table.visualRect(table.model()->index(static_cast<int>(input_.below(10)), 0)));
    }
    void sendFrame(std::uint8_t command) {
        buffer_[4] = command;
        session_.controller.CMD_CallBack(buffer_);
        model_.frame(buffer_);
        checkState();
    }
    void checkState() const {
        user_.checkState();
        const double shown = session_.controller.loadWindow().progressBar()->floatValue();
        check(shown == model_.shownProgress, "the bar shows the last progress that is one");
    }

    FuzzInput input_;
    Session& session_ = session();
    kelvo::fuzz::ControllerModel model_;
    kelvo::fuzz::User user_{session_.controller, session_.services, model_};
    std::array<std::uint8_t, 1024> buffer_{};
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kelvo::fuzz::startToolkit();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Run run(FuzzInput(data, size));
    return 0;
}
