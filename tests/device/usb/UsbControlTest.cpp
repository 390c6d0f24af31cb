#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "UsbControl.h"
#include "UsbTesting.h"

namespace kelvo {
namespace {

TEST(UsbControl, answersOrStalls) {
    struct Row {
        const char* what;
        const char* setup;
        const char* answer;
    };
    for (const auto& [what, setupText, expected] :
         {Row{"device descriptor", "80 06 00 01 00 00 40 00", "12 01 00 02 00 00 00 40 83 04 03 57 C8 00 01 02 00 01"},
          {"its first eight bytes", "80 06 00 01 00 00 08 00", "12 01 00 02 00 00 00 40"},
          {"configuration", "80 06 00 02 00 00 FF 00",
           "09 02 29 00 01 01 00 80 32 09 04 00 00 02 03 00 00 00 09 21 11 01 00 01 22 22 00 "
           "07 05 81 03 40 00 01 07 05 01 03 40 00 01"},
          {"languages", "80 06 00 03 00 00 FF 00", "04 03 09 04"},
          {"languages, wanted in 256 bytes", "80 06 00 03 00 00 00 01", "04 03 09 04"},
          {"manufacturer", "80 06 01 03 09 04 FF 00", "10 03 56 00 69 00 72 00 74 00 75 00 61 00 6C 00"},
          {"product", "80 06 02 03 09 04 FF 00", "0C 03 4B 00 52 00 33 00 31 00 30 00"},
          {"nothing of the product", "80 06 02 03 09 04 00 00", ""},
          {"report descriptor", "81 06 00 22 00 00 22 00",
           "06 00 FF 09 01 A1 01 09 02 15 00 26 FF 00 75 08 95 40 81 02 "
           "09 03 15 00 26 FF 00 75 08 95 40 91 02 C0"},
          {"configuration 1", "00 09 01 00 00 00 00 00", ""},
          {"configuration 0", "00 09 00 00 00 00 00 00", ""},
          {"idle", "21 0A 00 00 00 00 00 00", ""},
          {"no such string", "80 06 03 03 09 04 FF 00", "stall"},
          {"second configuration", "80 06 01 02 00 00 FF 00", "stall"},
          {"device qualifier", "80 06 00 06 00 00 0A 00", "stall"},
          {"HID descriptor alone", "81 06 00 21 00 00 09 00", "stall"},
          {"configuration 2", "00 09 02 00 00 00 00 00", "stall"},
          {"status", "80 00 00 00 00 00 02 00", "stall"},
          {"output report as control transfer", "21 09 00 02 00 00 40 00", "stall"}}) {
        UsbSetup setup{};
        std::ranges::copy(unhex(setupText), setup.begin());
        const auto answer = answerControl(setup);
        EXPECT_EQ(answer ? hex(*answer) : "stall", expected) << what;
    }
}

}  // namespace
}  // namespace kelvo
