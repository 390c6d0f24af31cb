#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>

#include "CloseActionWindow.h"

namespace kelvo {
namespace {

TEST(CloseActionWindow, askedToClose_doesWhatItIsToldAndStays) {
    CloseActionWindow window;
    int asked = 0;
    window.setCloseAction([&asked] { ++asked; });
    window.show();
    EXPECT_FALSE(window.close());
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window.isVisible());
}

TEST(CloseActionWindow, withoutAnAction_stays) {
    CloseActionWindow window;
    window.show();
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
}

TEST(CloseActionWindow, isAWindowOrADialogToAssistiveTools) {
    CloseActionWindow window;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&window)->role(), QAccessible::Window);
    window.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&window)->role(), QAccessible::Dialog);
    QLabel label;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->role(), QAccessible::StaticText);
}

}  // namespace
}  // namespace kelvo
