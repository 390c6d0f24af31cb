#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ProtocolExamples.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ProtocolExamples examplesOf(const std::string& page) {
    std::istringstream text(page);
    return readExamples(text);
}

TEST(ProtocolExamples, areNamedByTheBoldStartOfALine) {
    const ProtocolExamples examples = examplesOf("# Page\n**Two bytes**, to **nobody**:\n\n```hex\n0A fF\n```\ntext\n");
    ASSERT_EQ(examples.size(), 1U);
    EXPECT_THAT(examples.at("Two bytes").head, ElementsAre(0x0A, 0xFF));
    EXPECT_EQ(examples.at("Two bytes").leftOut, 0U);
    EXPECT_THAT(examples.at("Two bytes").tail, IsEmpty());
}

TEST(ProtocolExamples, mayLeaveOutTheirMiddle) {
    const ProtocolExample example = examplesOf("**Long**\n```hex\n01 02\n... 500 bytes ...\n03\n```\n").at("Long");
    EXPECT_THAT(example.head, ElementsAre(1, 2));
    EXPECT_EQ(example.leftOut, 500U);
    EXPECT_THAT(example.tail, ElementsAre(3));
}

TEST(ProtocolExamples, rejectAPageThatCannotBeChecked) {
    for (const char* const page : {
             "```hex\n01\n```\n",                                          // no name
             "**One**\n```hex\n01\n```\n\n```hex\n02\n```\n",              // a name serves once
             "**One**\n```hex\n01\n```\n**One**\n```hex\n02\n```\n",       // twice the same name
             "**One**\n```\n01\n```\n",                                    // no language
             "**One**\n```text\n01\n```\n",                                // another language
             "**One**\n```hex\n01\n",                                      // no end
             "**One**\n```hex\n1\n```\n",                                  // one digit
             "**One**\n```hex\n0x1\n```\n",                                // three
             "**One**\n```hex\nAG\n```\n",                                 // no digits
             "**One**\n```hex\n01 ... 02\n```\n",                          // how much is left out?
             "**One**\n```hex\n01 ... 5 bits ... 02\n```\n",               // of what?
             "**One**\n```hex\n... 1 bytes ... 2 ... 3 bytes ...\n```\n",  // a second gap
         }) {
        EXPECT_THROW(static_cast<void>(examplesOf(page)), std::runtime_error) << page;
    }
}

}  // namespace
}  // namespace kelvo::test
