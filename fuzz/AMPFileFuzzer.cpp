// An untrusted amp model file after a good one. A second reader checks the result.

#include <algorithm>
#include <string_view>

#include "AMPFile.h"
#include "FuzzInput.h"
#include "Judge.h"
#include "MemoryFile.h"
#include "model/AmpModel.h"

using kelvo::fuzz::check;

namespace {

constexpr std::uint32_t kUntouched = 0xA5A5A5A5;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(data, size);
    const kelvo::fuzz::MemoryFile source(bytes);
    kelvo::AMPFile file;
    file.ampSwBuffer.AmpIntBuffer.fill(7);
    auto words = file.ampSwBuffer.AmpIntBuffer;
    kelvo::AmpPiontBuff.fill(kUntouched);
    const bool accepted = kelvo::fuzz::modelAmp(bytes, words);
    check(file.OpenFile(source.path()) == accepted, "the reader takes just what the format allows");
    check(file.IsFileOpenSuccess == accepted, "the flag says whether a file is open");
    check(kelvo::judgeAmpFile(source.path()).isAccepted() == accepted, "the judge accepts what the reader does");
    check(file.ampSwBuffer.AmpIntBuffer == words, "the words are the model's");
    if (accepted) {
        check(kelvo::AmpPiontBuff == words, "an accepted file's words are the ones to send");
        check(std::string_view(file.CharFileName.data()) == source.name().toStdString(),
              "the slot's name is the file's");
    } else {
        check(std::ranges::count(kelvo::AmpPiontBuff, kUntouched) == 512, "a refused file changes nothing to send");
        check(std::ranges::count(file.CharFileName, ' ') == 20, "a refused file has no name");
    }
    return 0;
}
