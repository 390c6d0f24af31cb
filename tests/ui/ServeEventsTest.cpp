#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "ServeEvents.h"

namespace kelvo {
namespace {

class PaintedWindow : public QWidget {
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
};

TEST(ServeEvents, stop_endsTheInnermostModalRun) {
    stopModal();
    QWidget outer;
    QWidget inner;
    QStringList ended;
    QTimer::singleShot(0, [&] {
        QTimer::singleShot(0, [] { stopModal(); });
        runModalForWindow(inner);
        ended << "inner";
        stopModal();
    });
    runModalForWindow(outer);
    ended << "outer";
    EXPECT_EQ(ended, (QStringList{"inner", "outer"}));
    EXPECT_TRUE(outer.isVisible());
    EXPECT_EQ(outer.windowModality(), Qt::ApplicationModal);
}

TEST(ServeEvents, windowShownUntilPainted_hasBeenPaintedAndIsWaitedForNoLonger) {
    PaintedWindow window;
    int turns = 0;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&turns] { ++turns; });
    turn.start(0);
    showUntilPainted(window);
    EXPECT_GT(window.paints, 0);
    EXPECT_LT(turns, 100);
}

void showWithFocus(QWidget& window) {
    window.show();
    QCoreApplication::processEvents();
    window.activateWindow();
}

TEST(ServeEvents, windowServedUntilActive_isActiveAndHasBeenPaintedWhereTheOneAboveWas) {
    PaintedWindow window;
    QWidget above;
    showWithFocus(window);
    showWithFocus(above);
    QTimer::singleShot(0, &window, [&] {
        window.activateWindow();
        // As the window system does when what was above has gone.
        QTimer::singleShot(0, &window, [&] {
            window.paints = 0;
            window.update();
        });
    });
    serveUntilActive(window);
    EXPECT_TRUE(window.isActiveWindow());
    EXPECT_EQ(window.paints, 1);
    bool served = false;
    QTimer::singleShot(0, &window, [&served] { served = true; });
    serveUntilActive(window);
    EXPECT_FALSE(served) << "an active window is not waited for";
}

TEST(ServeEvents, windowThatNeverBecomesActive_isGivenUpAfterAFifthOfASecond) {
    QWidget window;
    QWidget above;
    showWithFocus(window);
    showWithFocus(above);
    QTimer::singleShot(0, &window, [&] {
        QEvent other(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(&window, &other);
    });
    QElapsedTimer waited;
    waited.start();
    serveUntilActive(window);
    EXPECT_FALSE(window.isActiveWindow());
    EXPECT_GE(waited.elapsed(), 190);  // a coarse timer may come so much early
}

}  // namespace
}  // namespace kelvo
