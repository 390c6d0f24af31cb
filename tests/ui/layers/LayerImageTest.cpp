#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <vector>

#include "layers/LayerImage.h"

namespace kelvo {
namespace {

TEST(LayerImage, copies_areTheSameImage_andImagesMadeApartAreNot) {
    const auto draw = [](QPainter&) {};
    const LayerImage image({1, 2}, draw);
    const std::vector<LayerImage> copies(2, image);
    EXPECT_EQ(copies[0], image);
    EXPECT_EQ(copies[0], copies[1]);
    EXPECT_NE(LayerImage({1, 2}, draw), image);
    EXPECT_EQ(image.size(), QSizeF(1, 2));
}

TEST(LayerImage, withoutWidthHeightOrRoutine_isEmptyAndDrawsNothing) {
    int drawn = 0;
    QImage target(1, 1, QImage::Format_RGB32);
    QPainter painter(&target);
    const auto draw = [&drawn](QPainter&) { ++drawn; };
    for (const LayerImage& image : {LayerImage(), LayerImage({0, 5}, draw), LayerImage({5, -1}, draw)}) {
        EXPECT_TRUE(image.isEmpty());
        image.draw(painter);
    }
    EXPECT_EQ(drawn, 0);
    EXPECT_EQ(LayerImage().size(), QSizeF(0, 0));
    LayerImage({0.5, 0.5}, draw).draw(painter);
    EXPECT_EQ(drawn, 1);
}

}  // namespace
}  // namespace kelvo
