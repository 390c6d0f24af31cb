#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>

#include "NSApplicationMain.h"

namespace kelvo {
namespace {

TEST(WindowIcon, isTheProgramsOwnWhereNothingIsInstalled) {
    QIcon::setThemeSearchPaths({});
    QIcon::setFallbackSearchPaths({});
    nameApplication();
    const QImage icon = QApplication::windowIcon().pixmap(256, 256).toImage();
    ASSERT_EQ(icon.size(), QSize(256, 256));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(128, 128).name(), "#272e36");
}

}  // namespace
}  // namespace kelvo
