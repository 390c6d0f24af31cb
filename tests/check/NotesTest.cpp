// Notes about a name, whose bytes may be any. ReportsTest.cpp has the other notes.

#include <gtest/gtest.h>

#include "Notes.h"

namespace kelvo {
namespace {

TEST(NameNotes, sayWhenTheCutIsInsideACharacter) {
    EXPECT_EQ(nameNotes("\xC3\x9C"
                        "B\xC3",
                        "\xC3\x9C"
                        "B\xC3\x9C"
                        "B"),
              (QStringList{QString::fromUtf8("its name is cut inside a character; the whole one is \"\xC3\x9C"
                                             "B\xC3\x9C"
                                             "B\""),
                           "its name is not all printable ASCII; the pedal gets the bytes c3 9c 42 c3"}));
}

TEST(NameNotes, showUnprintableNamesInBytes) {
    EXPECT_EQ(nameNotes("A\x1B\n", "A\x1B\n"),
              QStringList{"its name is not all printable ASCII; the pedal gets the bytes 41 1b 0a"});
    EXPECT_EQ(nameNotes("A\x1B", "A\x1B["),
              (QStringList{"its name is cut; the whole one is \"A\\x1b[\"",
                           "its name is not all printable ASCII; the pedal gets the bytes "
                           "41 1b"}));
    EXPECT_EQ(nameNotes("A\x7F", "A\x7F"),
              QStringList{"its name is not all printable ASCII; the pedal gets the bytes 41 7f"});
    EXPECT_EQ(nameNotes("", ""), QStringList());
    EXPECT_EQ(nameNotes(" ~", " ~"), QStringList());
}

}  // namespace
}  // namespace kelvo
