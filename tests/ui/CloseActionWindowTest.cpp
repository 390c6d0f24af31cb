#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QLabel>
#include <QWindow>

#include "CloseActionWindow.h"

namespace kelvo {
namespace {

TEST(CloseActionWindow, closeRequest_runsTheActionAndKeepsTheWindow) {
    CloseActionWindow window;
    window.show();
    EXPECT_FALSE(window.close());
    int asked = 0;
    window.setCloseAction([&asked] { ++asked; });
    EXPECT_FALSE(window.close());
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window.isVisible());
}

TEST(CloseActionWindow, minimisedOrMaximisedAgainstItsFlags_isAsBeforeAtOnce) {
    CloseActionWindow window;
    window.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint);
    window.show();
    for (const Qt::WindowState state : {Qt::WindowMinimized, Qt::WindowMaximized}) {
        // As the desktop does it: without asking the widget.
        window.windowHandle()->setWindowState(state);
        QCoreApplication::processEvents();
        EXPECT_EQ(window.windowState(), Qt::WindowNoState);
        EXPECT_EQ(window.windowHandle()->windowState(), Qt::WindowNoState);
    }
}

TEST(CloseActionWindow, minimisedAsItsFlagsOffer_staysSo) {
    CloseActionWindow window;
    window.setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowMinimizeButtonHint);
    window.show();
    window.windowHandle()->setWindowState(Qt::WindowMinimized);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.windowState(), Qt::WindowMinimized);
    window.windowHandle()->setWindowState(Qt::WindowMaximized);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.windowState(), Qt::WindowNoState);
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
