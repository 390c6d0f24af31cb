#include "UsbTesting.h"

#include <algorithm>
#include <iterator>

namespace kelvo {
namespace {

constexpr std::string_view kDevice = "00 01 00 02";

Bytes words(std::initializer_list<std::string_view> texts) {
    std::string all;
    for (const std::string_view text : texts) {
        all += text;
        all += ' ';
    }
    all.pop_back();
    return unhex(all);
}

}  // namespace

Bytes join(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& part : pieces) {
        std::ranges::copy(part, std::back_inserter(all));
    }
    return all;
}

Bytes HostRequest::bytes(const Bytes& payload) const {
    return join({words({"00 00 00 01", number, kDevice, direction, endpoint, "00 00 02 00", length, kZeroWord, packets,
                        "00 00 00 01", setup}),
                 payload});
}

Bytes outRequest(std::string_view number, const Bytes& report) {
    return HostRequest{.number = number}.bytes(report);
}

Bytes inRequest(std::string_view number) {
    return HostRequest{.number = number, .direction = "00 00 00 01"}.bytes();
}

Bytes unlinkRequest(std::string_view number, std::string_view target) {
    return words({"00 00 00 02", number, kDevice, kZeroWord, kZeroWord, target, kZeroWord, kZeroWord, kZeroWord,
                  kZeroWord, kZeroWord, kZeroWord});
}

std::string submitAnswer(std::string_view number, std::string_view status, std::string_view length,
                         const Bytes& payload) {
    return hex(join({words({"00 00 00 03", number, kZeroWord, kZeroWord, kZeroWord, status, length, kZeroWord,
                            kZeroWord, kZeroWord, kZeroWord, kZeroWord}),
                     payload}));
}

std::string unlinkAnswer(std::string_view number, std::string_view status) {
    return hex(words({"00 00 00 04", number, kZeroWord, kZeroWord, kZeroWord, status, kZeroWord, kZeroWord, kZeroWord,
                      kZeroWord, kZeroWord, kZeroWord}));
}

Bytes connectReport() {
    return makeReport(connectFrame());
}

}  // namespace kelvo
