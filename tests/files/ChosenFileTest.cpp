#include <gtest/gtest.h>

#include "ChosenFile.h"

namespace kelvo {
namespace {

TEST(ChosenFile, aWavesPathBeginsWithTwoSlashesAndHasNoEscapes) {
    EXPECT_EQ(irPath(QUrl("file:///home/a/My%20IR.wav")), "//home/a/My IR.wav");
    EXPECT_EQ(irPath(QUrl::fromLocalFile("/home/a/Größe 100%.wav")), "//home/a/Größe 100%.wav");
}

TEST(ChosenFile, aModelsPathKeepsItsEscapes) {
    EXPECT_EQ(ampPath(QUrl("file:///home/a/clean.amp")), "//home/a/clean.amp");
    EXPECT_EQ(ampPath(QUrl::fromLocalFile("/Users/a/My Amp.amp")), "//Users/a/My%20Amp.amp");
    EXPECT_EQ(ampPath(QUrl::fromLocalFile("/ü.amp")), "//%C3%BC.amp");
}

TEST(ChosenFile, itsTypeIsItsLastExtensionInEitherCase) {
    EXPECT_TRUE(hasFileType(QUrl::fromLocalFile("/a/b.wav"), kIRFileType));
    EXPECT_TRUE(hasFileType(QUrl::fromLocalFile("/a/b.WaV"), kIRFileType));
    EXPECT_TRUE(hasFileType(QUrl::fromLocalFile("/a/b.wav.amp"), kAmpFileType));
    EXPECT_FALSE(hasFileType(QUrl::fromLocalFile("/a/b.wav.amp"), kIRFileType));
    EXPECT_FALSE(hasFileType(QUrl::fromLocalFile("/a.wav/b"), kIRFileType));
    EXPECT_FALSE(hasFileType(QUrl::fromLocalFile("/a/wav"), kIRFileType));
    EXPECT_FALSE(hasFileType(QUrl::fromLocalFile("/a/b.wave"), kIRFileType));
    EXPECT_FALSE(hasFileType(QUrl("https://localhost/b.wav"), kIRFileType));
    EXPECT_FALSE(hasFileType(QUrl(), kIRFileType));
}

}  // namespace
}  // namespace kelvo
