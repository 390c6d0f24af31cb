#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "AMPFile.h"
#include "RVIRFile.h"
#include "SampleFiles.h"
#include "WholeFile.h"

namespace {

/// An allocation of just this size fails; 0: none does.
std::size_t failingSize = 0;

}  // namespace

void* operator new(std::size_t size) {
    void* memory = failingSize != 0 && size == failingSize ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

// Not inlined, or g++ takes the free(3) in it for the wrong partner of new.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

// These call the ones above by themselves, but not under a sanitizer, which brings its own.
void* operator new[](std::size_t size) {
    return ::operator new(size);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace kelvo {
namespace {

class AllocationFailure : public testing::Test {
protected:
    void TearDown() override { failingSize = 0; }

    const SampleDir dir;
};

TEST_F(AllocationFailure, wholeFileIsRefused) {
    const QString path = dir.write("large", FileBytes(70001));
    failingSize = 70001;
    ReadFailure failure;
    EXPECT_FALSE(readWholeFile(path, &failure));
    failingSize = 0;
    EXPECT_EQ(failure.step, ReadFailure::Step::Memory);
    EXPECT_EQ(failure.size, 70001U);
    EXPECT_TRUE(readWholeFile(path));
}

TEST_F(AllocationFailure, waveFileIsRefusedAndTheObjectCanBeUsedAgain) {
    WaveFile wave;
    wave.data = FileBytes(70000);
    const QString path = dir.write("cab.wav", wave.bytes());
    RVIRFile file;
    failingSize = 70044;
    EXPECT_FALSE(file.OpenFilePath(path));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    failingSize = 0;
    EXPECT_TRUE(file.OpenFilePath(path));
    EXPECT_EQ(file.PointSize, 35000U);
}

TEST_F(AllocationFailure, ampFileIsRefusedAndAmpPiontBuffStays) {
    AmpPiontBuff.fill(7);
    const QString path = dir.write("Lead.amp", ampFile({}));
    AMPFile file;
    failingSize = 2055;
    EXPECT_FALSE(file.OpenFile(path));
    EXPECT_EQ(AmpPiontBuff[0], 7U);
    failingSize = 0;
    EXPECT_TRUE(file.OpenFile(path));
    EXPECT_EQ(AmpPiontBuff[0], 0U);
}

}  // namespace
}  // namespace kelvo
