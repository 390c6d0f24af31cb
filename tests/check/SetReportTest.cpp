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
    EXPECT_EQ(SetReport().text(), "\n0 of 0 are accepted\n");
}

TEST(SetReport, namesTheFilesOfTheSameNameInTheSameKindOfSlot) {
    const SetReport set = reportOf({wave("x/a\n.wav", "CAB\x1B", {}), amp("c.amp", "CAB\x1B"), wave("d.wav", "D", {}),
                                    wave("b.wav", "CAB\x1B", {}), amp("D.amp", "D")});
    EXPECT_EQ(set.text().toStdString(),
              "\n5 of 5 are accepted\nthe name \"CAB\\x1b\" is that of x/a\\x0a.wav, b.wav\n");
}

TEST(SetReport, namesTheFilesThatAreMoreThan1dB5OffTheMedian) {
    const SetReport set =
        reportOf({wave("a.wav", "A", 0.0), wave("b.wav", "B", -1.5), wave("%2%3.wav", "C", -3.1),
                  wave("d.wav", "D", {}), wave("e.wav", "E", -0.1), wave("f.wav", "F", -2.0), wave("g.wav", "G", 4.0)});
    // The median is that of -3.1, -2.0, -1.5, -0.1, 0.0, 4.0: -0.8.
    EXPECT_EQ(set.text().toStdString(),
              "\n7 of 7 are accepted\n%2%3.wav is 2.3 dB quieter than the set\ng.wav is 4.8 dB louder than the set\n");
}

TEST(SetReport, ofASetThatIsEvenSaysNothingMore) {
    EXPECT_EQ(reportOf({wave("a.wav", "A", 1.5), wave("b.wav", "B", 0.0), wave("c.wav", "C", 3.0)}).text(),
              "\n3 of 3 are accepted\n");
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
