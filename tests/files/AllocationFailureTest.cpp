#include <gtest/gtest.h>

#include "AMPFile.h"
#include "Allocations.h"
#include "RVIRFile.h"
#include "SampleFiles.h"
#include "WholeFile.h"

namespace kelvo {
namespace {

using test::failAllocationsOf;

class AllocationFailure : public testing::Test {
protected:
    void TearDown() override { failAllocationsOf(0); }

    const SampleDir dir;
};

TEST_F(AllocationFailure, wholeFileIsRefused) {
    const QString path = dir.write("large", FileBytes(70001));
    failAllocationsOf(70001);
    EXPECT_FALSE(readWholeFile(path));
    failAllocationsOf(0);
    EXPECT_TRUE(readWholeFile(path));
}

TEST_F(AllocationFailure, waveFileIsRefusedAndTheObjectCanBeUsedAgain) {
    WaveFile wave;
    wave.data = FileBytes(70000);
    const QString path = dir.write("cab.wav", wave.bytes());
    RVIRFile file;
    failAllocationsOf(70044);
    EXPECT_FALSE(file.OpenFilePath(path));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    failAllocationsOf(0);
    EXPECT_TRUE(file.OpenFilePath(path));
    EXPECT_EQ(file.PointSize, 35000U);
}

TEST_F(AllocationFailure, ampFileIsRefusedAndAmpPiontBuffStays) {
    AmpPiontBuff.fill(7);
    const QString path = dir.write("Lead.amp", ampFile({}));
    AMPFile file;
    failAllocationsOf(2055);
    EXPECT_FALSE(file.OpenFile(path));
    EXPECT_EQ(AmpPiontBuff[0], 7U);
    failAllocationsOf(0);
    EXPECT_TRUE(file.OpenFile(path));
    EXPECT_EQ(AmpPiontBuff[0], 0U);
}

}  // namespace
}  // namespace kelvo
