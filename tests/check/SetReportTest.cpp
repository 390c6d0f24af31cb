#include <gtest/gtest.h>

#include "SetReport.h"

namespace kelvo {
namespace {

FileReport wave(const char* path, const char* name, std::optional<double> level) {
    FileReport report{.path = path, .name = name};
    report.wave = {.level = level};
    return report;
}

FileReport amp(const char* path, const char* name) {
    FileReport report{.path = path, .name = name};
    report.amp.emplace();
    return report;
}

SetReport reportOf(std::initializer_list<FileReport> reports) {
    SetReport set;
    for (const FileReport& report : reports) {
        set.add(report);
    }
    return set;
}

TEST(SetReport, countsAndHasTheLinesForSoxAsTheyAre) {
    const SetReport set = reportOf({wave("a.wav", "A", -3.0),
                                    {.path = "b.wav", .refusal = "x", .soxLine = "sox 'b.wav'"},
                                    {.path = "c.wav", .refusal = "x"},
                                    {.path = "d.wav", .refusal = "x", .soxLine = "sox 'd.wav'"}});
    EXPECT_EQ(set.text().toStdString(), "\n1 of 4 are accepted\nsox 'b.wav'\nsox 'd.wav'\n");
}

TEST(SetReport, namesTheFilesOfOneNameInOneKindOfSlot_andThoseThatAreMoreThan1dB5OffTheMedian) {
    const SetReport set = reportOf({wave("x/a\n.wav", "CAB\x1B", 0.0), amp("c.amp", "CAB\x1B"),
                                    wave("b.wav", "CAB\x1B", -1.5), amp("D.amp", "D"), wave("%2%3.wav", "C", -3.1),
                                    wave("d.wav", "D", {}), wave("e.wav", "E", -0.1), wave("f.wav", "F", -2.0),
                                    wave("g.wav", "G", 4.0), wave("h.wav", "H", 0.7), wave("i.wav", "I", -2.3)});
    // The median of -3.1, -2.3, -2.0, -1.5, -0.1, 0.0, 0.7 and 4.0 is -0.8.
    EXPECT_EQ(set.text().toStdString(),
              "\n11 of 11 are accepted\n"
              "the name \"CAB\\x1b\" is that of x/a\\x0a.wav, b.wav\n"
              "%2%3.wav is 2.3 dB quieter than the set\n"
              "g.wav is 4.8 dB louder than the set\n");
}

TEST(SetReport, isAnObjectForPrograms) {
    const SetReport set = reportOf({wave("a.wav", "A", 1.0),
                                    wave("\xFF.wav", "A", 7.126),
                                    wave("c.wav", "C", 1.0),
                                    {.path = "d.wav", .refusal = "x"}});
    EXPECT_EQ(
        set.json().toStdString(),
        "{\"set\":{\"accepted\":3,\"files\":4,\"medianLevel\":1,\"otherLevels\":[{\"aboveMedian\":6.13,"
        "\"file\":\"\\ufffd.wav\"}],\"sameNames\":[{\"files\":[\"a.wav\",\"\\ufffd.wav\"],\"sentName\":\"A\"}]}}\n");
    EXPECT_EQ(SetReport().json().toStdString(),
              "{\"set\":{\"accepted\":0,\"files\":0,\"otherLevels\":[],\"sameNames\":[]}}\n");
}

TEST(Median, isInTheMiddle) {
    EXPECT_EQ(medianOf({}), std::nullopt);
    EXPECT_EQ(medianOf({3.0}), 3.0);
    EXPECT_EQ(medianOf({3.0, 1.0}), 2.0);
    EXPECT_EQ(medianOf({3.0, 1.0, 10.0}), 3.0);
}

}  // namespace
}  // namespace kelvo
