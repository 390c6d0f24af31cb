// Complete transfers to a pedal whose answers, timing, refusals and unplug come from the fuzzer, in one thread. A model
// of unpacker and controller checks every output report, so a packet that mixes two imports, fills a row that was not
// chosen or is sent unexpectedly is a finding.

#include <deque>
#include <set>

#include "CircleBuffer.h"
#include "DataUnpacking.h"
#include "DirectLink.h"
#include "FuzzedController.h"
#include "RVHidClass.h"
#include "VirtualKr310.h"
#include "WireBytes.h"
#include "model/UnpackerModel.h"

using kelvo::fuzz::check;
using kelvo::fuzz::FuzzInput;
using kelvo::test::Bytes;

namespace {

/// The controller of this process. It is never destroyed, because making its windows takes longer than running an
/// input.
struct Session {
    std::function<void()> play;
    kelvo::fuzz::DirectManager manager{[this] { play(); }};
    kelvo::test::ScriptedServices services;
    kelvo::KelvoAppDelegate controller{manager, services.functions()};
};

Session& session() {
    static Session* const made = new Session;
    return *made;
}

class Run {
public:
    explicit Run(FuzzInput input) : input_(input) {
        kelvo::ClearRx_buffer();
        kelvo::DUP_init();
        kelvo::AppClassPoint = &session_.controller;
        user_.beginAnew();
        model_.takeSent();
        manager_.device =
            std::make_shared<kelvo::fuzz::DirectDevice>([this](const auto& report) { return take(report); });
        session_.play = [this] { play(); };
        kelvo::OpenHidDevice(manager_, kelvo::quitWindow);
        check(!kelvo::isOpenDevice, "no device is open when the link has ended");
        QCoreApplication::processEvents();
        check(services_.alerts.size() == (open_ ? 0U : 1U), "an unplug brings one alert, and nothing else does");
        if (!open_) {
            services_.alerts[0].answer(1000);
            check(services_.exits == std::vector<int>{0}, "the alert ends the process with status 0");
        }
        checkSlots();
    }

private:
    struct Attempt {
        Bytes payload;
        bool accepted;
    };

    void play() {
        receive(kelvo::fuzz::longestFrame());
        tick();
        while (!input_.empty()) {
            step();
            checkSent();
        }
        for (int i = 0; i < 40 && (!answers_.empty() || unpacker_.unread() > 0); ++i) {
            deliver(1);
            tick();
            checkSent();
        }
        user_.checkState();
    }
    void step() {
        switch (input_.below(14)) {
            case 0: {
                const std::size_t row = chosen(input_.below(11));
                return user_.importIR(row, input_.below(3));
            }
            case 1: {
                const std::size_t row = chosen(input_.below(11));
                return user_.importAMP(row, input_.below(3));
            }
            case 2: {
                const std::size_t row = chosen(input_.below(11));
                return user_.deleteCab(row, input_.below(2) == 0);
            }
            case 3:
                return deliver(0);
            case 4:
                return deliver(2);
            case 5:
                return deliver(1, input_.byte(), input_.byte());
            case 6:
                refuseFrom_ = attempts_.size() + input_.below(16);
                refuseCount_ = 1 + input_.below(4);
                return;
            case 7:
                if (open_ && input_.below(4) == 0) {
                    open_ = false;
                    manager_.unplug();
                }
                return;
            case 8: {
                const auto code = static_cast<std::uint8_t>(0xE1 + input_.below(2));
                return receive(kelvo::fuzz::inReports(
                    kelvo::fuzz::soundFrame(Bytes{code, static_cast<std::uint8_t>(input_.below(8))})));
            }
            case 9:
                return receive(kelvo::fuzz::inReports(kelvo::fuzz::soundFrame(input_.bytes(input_.below(110)))));
            case 10:
                return receive({input_.bytes(input_.below(70))});
            case 11:
                QCoreApplication::processEvents();
                return;
            default:
                deliver(1);
                return tick();
        }
    }
    std::size_t chosen(std::size_t row) {
        rows_.insert(row);
        return row;
    }
    /// Repeats the pedal's next report this many times, with one byte changed.
    void deliver(int times, std::size_t at = 0, std::uint8_t change = 0) {
        if (answers_.empty()) {
            return;
        }
        Bytes report = std::move(answers_.front());
        answers_.pop_front();
        report[at % report.size()] ^= change;
        receive(std::vector<Bytes>(static_cast<std::size_t>(times), report));
    }
    void receive(const std::vector<Bytes>& reports) {
        for (const Bytes& report : reports) {
            manager_.deliver(report);
            if (open_) {
                unpacker_.report(report);
            }
        }
    }
    void tick() {
        kelvo::DUP_Unpack();
        for (const auto& buffer : unpacker_.tick()) {
            model_.frame(buffer);
        }
    }
    bool take(std::span<const std::uint8_t, kelvo::kReportSize> report) {
        const std::size_t number = attempts_.size();
        const bool accepted = number < refuseFrom_ || number >= refuseFrom_ + refuseCount_;
        check(report[0] >= 1 && report[0] <= 63, "a report counts 1 to 63 bytes");
        attempts_.push_back({Bytes(report.begin() + 1, report.begin() + 1 + report[0]), accepted});
        if (accepted) {
            for (auto& answer : pedal_.receive(report).reports) {
                answers_.push_back(std::move(answer.bytes));
            }
        }
        return accepted;
    }
    /// Checks that every frame is sent completely, or up to a refused report.
    void checkSent() {
        for (const Bytes& frame : model_.takeSent()) {
            if (!open_) {
                continue;
            }
            for (std::size_t at = 0; at < frame.size(); at += 63) {
                const auto begin = frame.begin() + static_cast<std::ptrdiff_t>(at);
                const Bytes piece(begin,
                                  begin + static_cast<std::ptrdiff_t>(std::min<std::size_t>(63, frame.size() - at)));
                check(checked_ < attempts_.size() && attempts_[checked_].payload == piece, "a report is the model's");
                if (!attempts_[checked_++].accepted) {
                    break;
                }
            }
        }
        check(checked_ == attempts_.size(), "nothing is sent that the model does not send");
    }
    void checkSlots() const {
        static const kelvo::Kr310Memory before = kelvo::Kr310Memory::factory();
        const kelvo::Kr310Memory now = pedal_.memory();
        for (std::size_t i = 0; i < 10; ++i) {
            const bool same = now.cab[i].words == before.cab[i].words && now.amp[i].words == before.amp[i].words &&
                              now.cab[i].name == before.cab[i].name && now.amp[i].name == before.amp[i].name;
            check(same || rows_.contains(i), "only slots that were chosen are written");
        }
    }

    FuzzInput input_;
    kelvo::VirtualKr310 pedal_;
    Session& session_ = session();
    kelvo::fuzz::DirectManager& manager_ = session_.manager;
    kelvo::test::ScriptedServices& services_ = session_.services;
    kelvo::fuzz::ControllerModel model_;
    kelvo::fuzz::UnpackerModel unpacker_;
    kelvo::fuzz::User user_{session_.controller, services_, model_};
    std::deque<Bytes> answers_;
    std::vector<Attempt> attempts_;
    std::size_t checked_ = 0;
    std::size_t refuseFrom_ = 0;
    std::size_t refuseCount_ = 0;
    bool open_ = true;
    std::set<std::size_t> rows_;
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
