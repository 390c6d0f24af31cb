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
    const struct {
        Qt::WindowFlags buttons;
        Qt::WindowState requested, shown;
    } rows[] = {
        {Qt::WindowCloseButtonHint, Qt::WindowMinimized, Qt::WindowNoState},
        {Qt::WindowCloseButtonHint, Qt::WindowMaximized, Qt::WindowNoState},
        {Qt::WindowMinimizeButtonHint, Qt::WindowMinimized, Qt::WindowMinimized},
        {Qt::WindowMinimizeButtonHint, Qt::WindowMaximized, Qt::WindowNoState},
    };
    for (const auto& row : rows) {
        CloseActionWindow window;
        window.setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | row.buttons);
        window.show();
        // As the desktop does it: without asking the widget.
        window.windowHandle()->setWindowState(row.requested);
        QCoreApplication::processEvents();
        EXPECT_EQ(window.windowState(), row.shown);
        EXPECT_EQ(window.windowHandle()->windowState(), row.shown);
    }
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
