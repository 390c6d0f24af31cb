// An untrusted impulse-response file. A second implementation checks reader and converter.

#include <algorithm>
#include <string_view>

#include "FuzzInput.h"
#include "Judge.h"
#include "MemoryFile.h"
#include "RVIRFile.h"
#include "model/IRModel.h"

using kelvo::fuzz::check;

namespace {

constexpr std::uint32_t kUntouched = 0xA5A5A5A5;

void checkName(const kelvo::RVIRFile& file, const QString& name) {
    const std::string_view stored(file.CharFileNane.data());
    check(stored == (file.isInteralIR ? "" : name.toStdString()), "the slot's name is the file's");
}

/// A file's name may be any text.
void checkAnyName(std::span<const std::uint8_t> bytes) {
    const QString path = QString::fromUtf8(QByteArray::fromStdString({bytes.begin(), bytes.end()}));
    kelvo::NameBuffer name;
    name.fill('x');
    kelvo::storeName(kelvo::irName(path), name);
    const auto end = std::find(name.begin(), name.end(), '\0');
    check(end <= name.begin() + 10, "a slot's name has at most ten bytes");
    check(std::all_of(name.begin() + 11, name.end(), [](char letter) { return letter == 'x'; }),
          "nothing is written after a name");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(data, size);
    const kelvo::fuzz::MemoryFile source(bytes);
    const kelvo::fuzz::IRModelResult expected = kelvo::fuzz::modelIR(bytes);
    kelvo::RVIRFile file;
    check(file.OpenFilePath(source.path()) == expected.opened, "the reader takes just what the format allows");
    check(file.IsFileOpenSuccess == expected.opened, "the flag says whether a file is open");
    check(kelvo::judgeIRFile(source.path()).isAccepted() == expected.converted, "the judge accepts what is converted");
    std::array<std::uint32_t, kelvo::kPointCount> points;
    for (int pass = 0; pass < 2; ++pass) {
        points.fill(kUntouched);
        check(file.GetIRDataBuffer(points) == expected.converted, "the converter takes just what it supports");
        check(expected.converted ? points == expected.points : std::ranges::count(points, kUntouched) == 512,
              "the points are the model's, and a refusal leaves them");
    }
    if (expected.opened) {
        checkName(file, source.name());
    }
    checkAnyName(bytes);
    return 0;
}
