#include "Progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>

#include "Arguments.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

constexpr auto kSilence = std::chrono::seconds(1);
constexpr auto kInterval = std::chrono::milliseconds(200);
constexpr qsizetype kLongestName = 50;

}  // namespace

Progress::Progress(qsizetype files) : files_(files) {
    if (::isatty(STDERR_FILENO) == 1) {
        thread_ = std::jthread([this](const std::stop_token& stop) { show(stop); });
    }
}

Progress::~Progress() {
    thread_ = {};
    hide();
}

void Progress::begin(const QByteArray& file) {
    const std::lock_guard lock(mutex_);
    file_ = file;
    ++number_;
}

void Progress::hide() {
    const std::lock_guard lock(mutex_);
    file_.clear();
    if (isShown_) {
        isShown_ = false;
        print(stderr, QStringLiteral("\r\x1b[K"));
    }
}

void Progress::show(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    for (auto pause = std::chrono::milliseconds(kSilence); !stop.stop_requested(); pause = kInterval) {
        changed_.wait_for(lock, stop, pause, [] { return false; });
        if (!stop.stop_requested() && !file_.isEmpty()) {
            isShown_ = true;
            print(stderr, QStringLiteral("\r\x1b[K%1 of %2: %3")
                              .arg(number_)
                              .arg(files_)
                              .arg(printableText(file_.last(std::min(file_.size(), kLongestName)))));
        }
    }
}

}  // namespace kelvo
