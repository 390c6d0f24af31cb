#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Kr310Transfer.h"

namespace kelvo {
namespace {

using Packet = std::vector<std::uint8_t>;

TEST(Kr310Transfer, fitsPlanesOf512BytesAndANameOfTen) {
    const Kr310Transfer cab(3);
    EXPECT_EQ(cab.lastPhase(), 4);
    using Row = std::pair<std::uint8_t, std::size_t>;
    for (const auto& [phase, size] : {Row{1, 512}, {3, 512}, {4, 10}}) {
        EXPECT_TRUE(cab.fits(phase, size)) << int{phase} << ' ' << size;
    }
    for (const auto& [phase, size] :
         {Row{0, 512}, {1, 511}, {1, 513}, {3, 10}, {4, 9}, {4, 11}, {4, 512}, {5, 10}, {255, 512}}) {
        EXPECT_FALSE(cab.fits(phase, size)) << int{phase} << ' ' << size;
    }
    const Kr310Transfer amp(4);
    EXPECT_TRUE(amp.fits(4, 512));
    EXPECT_TRUE(amp.fits(5, 10));
}

TEST(Kr310Transfer, storesTheWordsAndTheNameOfPacketsInOrder) {
    struct Row {
        const char* name;
        std::vector<std::pair<std::uint8_t, std::uint8_t>> planes;  ///< slot and phase; all bytes are 16 * slot + phase
        std::uint8_t nameSlot = 0;
        std::optional<std::uint32_t> word = {};  ///< what the name's packet stores; nothing for none
    };
    for (const auto& [name, planes, nameSlot, word] :
         {Row{"in order", {{0, 1}, {0, 2}, {0, 3}}, 0, 0x010203},
          {"packets repeated", {{0, 1}, {0, 1}, {0, 2}, {0, 2}, {0, 3}, {0, 3}, {0, 3}}, 0, 0x010203},
          {"another slot's first plane", {{0, 1}, {0, 2}, {7, 1}, {7, 2}, {7, 3}}, 7, 0x717273},
          {"the name alone", {}},
          {"one plane", {{0, 1}}},
          {"two planes", {{0, 1}, {0, 2}}},
          {"no first plane", {{0, 2}, {0, 3}}},
          {"a gap", {{0, 1}, {0, 3}}},
          {"wrong order", {{0, 1}, {0, 3}, {0, 2}, {0, 3}}},
          {"backwards by two", {{0, 1}, {0, 2}, {0, 3}, {0, 1}, {0, 3}}},
          {"a stray plane at the end", {{0, 1}, {0, 2}, {0, 3}, {0, 2}}},
          {"a plane for another slot", {{0, 1}, {1, 2}, {0, 2}, {0, 3}}},
          {"a name for another slot", {{0, 1}, {0, 2}, {0, 3}}, 1}}) {
        SCOPED_TRACE(name);
        Kr310Transfer cab(3);
        for (const auto& [slot, phase] : planes) {
            const Packet plane(512, static_cast<std::uint8_t>(16 * slot + phase));
            EXPECT_FALSE(cab.take(slot, phase, plane));
        }
        const auto content = cab.take(nameSlot, 4, Packet{'A', 'B', 0, 'C', 0, 0, 0, 0, 0, 0});
        EXPECT_EQ(content ? std::optional(content->words[511]) : std::nullopt, word);
        EXPECT_TRUE(!content || content->name == "AB");
        EXPECT_FALSE(cab.take(nameSlot, 4, Packet(10))) << "a transfer ends once";
    }
}

}  // namespace
}  // namespace kelvo
