// Input reports from a hostile device, through ring and unpacker. A model checks both after every tick, and as long as
// the ring never overflowed, a search of the complete stream checks the frames.

#include "AppClassPoint.h"
#include "CircleBuffer.h"
#include "DataUnpacking.h"
#include "DirectLink.h"
#include "FuzzInput.h"
#include "RVHidClass.h"
#include "WireBytes.h"
#include "model/UnpackerModel.h"

using kelvo::fuzz::check;
using kelvo::fuzz::FuzzInput;
using kelvo::test::Bytes;

namespace {

/// Keeps every frame with the bytes after it.
class Stage : public kelvo::AppClass {
public:
    Stage() { kelvo::AppClassPoint = this; }
    ~Stage() override { kelvo::AppClassPoint = nullptr; }
    void CMD_CallBack(kelvo::FrameView frame) override {
        std::copy(frame.begin(), frame.end(), frames.emplace_back().begin());
    }
    void exitApp() override {}

    std::vector<kelvo::fuzz::UnpackerModel::Buffer> frames;
};

class Run {
public:
    explicit Run(FuzzInput input) : input_(input) {
        kelvo::ClearRx_buffer();
        kelvo::DUP_init();
        manager_.device = std::make_shared<kelvo::fuzz::DirectDevice>([](const auto&) { return true; });
        kelvo::OpenHidDevice(manager_, kelvo::quitWindow);
    }

private:
    void play() {
        for (const Bytes& bytes : kelvo::fuzz::longestFrame()) {
            report(bytes);
        }
        tick(1);
        while (!input_.empty()) {
            step();
        }
        for (std::size_t before = model_.unread() + 1; before != model_.unread();) {
            before = model_.unread();
            tick(1);
        }
        tick(3);
        if (!overflowed_) {
            compareWithSearch();
        }
    }
    void step() {
        switch (input_.below(8)) {
            case 0:
                return report(input_.bytes(input_.below(128)));
            case 1: {
                Bytes bytes = input_.bytes(1 + input_.below(64));
                bytes.resize(64, 0xAA);
                return report(bytes);
            }
            case 2:
                return send(kelvo::fuzz::soundFrame(input_.bytes(input_.below(120))));
            case 3:
                return send(kelvo::fuzz::soundFrame(input_.bytes(4 * input_.below(255) % 1019)));
            case 4: {
                Bytes frame = kelvo::fuzz::soundFrame(input_.bytes(input_.below(40)));
                frame[input_.byte() % frame.size()] ^= static_cast<std::uint8_t>(1 + input_.below(255));
                return send(frame);
            }
            case 5: {
                const Bytes again = last_;
                // Enough to overflow the ring. Rare, because it costs as much as hundreds of other steps.
                for (std::size_t times = input_.below(16) == 0 ? 160 + input_.below(40) : input_.below(8); times > 0;
                     --times) {
                    report(again);
                }
                return;
            }
            default:
                return tick(1 + input_.below(16));
        }
    }
    void send(const Bytes& bytes) {
        std::ranges::for_each(kelvo::fuzz::inReports(bytes), [this](const auto& r) { report(r); });
    }
    void report(const Bytes& bytes) {
        last_ = bytes;
        const std::size_t before = model_.unread();
        manager_.deliver(bytes);
        model_.report(bytes);
        const std::size_t taken = model_.unread() - before;
        if (bytes.size() == 64) {
            overflowed_ = overflowed_ || taken != std::min<std::size_t>(bytes[0], 63);
            stream_.insert(stream_.end(), bytes.begin() + 1, bytes.begin() + 1 + static_cast<std::ptrdiff_t>(taken));
        }
    }
    void tick(std::size_t count) {
        for (; count > 0; --count) {
            const std::size_t before = stage_.frames.size();
            kelvo::DUP_Unpack();
            const auto expected = model_.tick();
            check(stage_.frames.size() - before == expected.size(), "a tick hands on as many frames as the model's");
            check(std::equal(expected.begin(), expected.end(), stage_.frames.end() - std::ssize(expected)),
                  "the frames are the model's, with all bytes after them");
        }
    }
    void compareWithSearch() {
        const std::vector<Bytes> expected = kelvo::test::framesIn(stream_);
        check(stage_.frames.size() == expected.size(), "the stream holds as many frames as were handed on");
        for (std::size_t i = 0; i < expected.size(); ++i) {
            check(std::equal(expected[i].begin(), expected[i].end(), stage_.frames[i].begin()),
                  "the frames are those of the stream");
        }
    }

    FuzzInput input_;
    kelvo::fuzz::DirectManager manager_{[this] { play(); }};
    Stage stage_;
    kelvo::fuzz::UnpackerModel model_;
    Bytes last_;
    Bytes stream_;
    bool overflowed_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Run run(FuzzInput(data, size));
    return 0;
}
