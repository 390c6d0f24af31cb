// What drives the windows in the tour and in the tests of the whole program.

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "AppHarness.h"
#include "Driver.h"

namespace kelvo::test {
namespace {

TEST(StepDriver, doesEachStepWhenItIsReadyAndNoneWhileAnotherServesEvents) {
    std::string done;
    bool isOpen = false;
    StepDriver driver({{"question", [] { return true; },
                        [&done] {
                            done += '(';
                            QTest::qWait(50);
                            done += ')';
                        }},
                       {"answer", [&isOpen] { return isOpen; }, [&done] { done += 'a'; }}},
                      [](const std::string& step) { FAIL() << step; });
    driver.start();
    EXPECT_TRUE(serveUntil([&done] { return done == "()"; }));
    EXPECT_FALSE(driver.finished());
    isOpen = true;
    EXPECT_TRUE(serveUntil([&driver] { return driver.finished(); }));
    EXPECT_EQ(done, "()a");
}

TEST(StepDriver, namesTheStepThatDoesNotGetReadyOnceAndDoesNoMore) {
    std::vector<std::string> stuck;
    bool isReady = false;
    int done = 0;
    StepDriver driver(
        {{"alert", [&isReady] { return isReady; }, [&done] { ++done; }}},
        [&stuck](const std::string& step) { stuck.push_back(step); }, std::chrono::milliseconds(20));
    driver.start();
    EXPECT_TRUE(serveUntil([&stuck] { return !stuck.empty(); }));
    isReady = true;
    QTest::qWait(50);
    EXPECT_EQ(stuck, std::vector<std::string>{"alert"});
    EXPECT_EQ(done, 0);
}

TEST(VisibleWindows, areABoxWhoseButtonsAreFoundByTheirTextWithoutMnemonics) {
    QMessageBox box;
    const QPushButton* const remove = box.addButton(QStringLiteral("&delete"), QMessageBox::AcceptRole);
    EXPECT_EQ(visibleMessageBox(), nullptr);
    box.show();
    EXPECT_EQ(visibleMessageBox(), &box);
    EXPECT_EQ(visibleFileDialog(), nullptr);
    EXPECT_EQ(buttonOf(box, QStringLiteral("delete")), remove);
    EXPECT_EQ(buttonOf(box, QStringLiteral("cancel")), nullptr);
}

TEST(VisibleWindows, lieOnADesktopWithAMarginAndDialogsAbove) {
    const auto coloured = [](QWidget& widget, Qt::GlobalColor colour, const QRect& place) {
        QPalette palette;
        palette.setColor(QPalette::Window, colour);
        widget.setPalette(palette);
        widget.setWindowFlag(Qt::FramelessWindowHint);
        widget.setGeometry(place);
        widget.show();
    };
    QWidget dialog;
    dialog.setWindowModality(Qt::ApplicationModal);
    coloured(dialog, Qt::blue, QRect(150, 120, 40, 30));
    QWidget window;
    coloured(window, Qt::red, QRect(100, 80, 200, 100));
    const QImage picture = visibleWindows();
    EXPECT_EQ(picture.size(), QSize(248, 148));
    EXPECT_EQ(picture.pixel(0, 0), 0xFF305068U);
    EXPECT_EQ(picture.pixel(23, 23), 0xFF305068U);
    EXPECT_EQ(picture.pixel(24, 24), 0xFFFF0000U);
    EXPECT_EQ(picture.pixel(223, 123), 0xFFFF0000U);
    EXPECT_EQ(picture.pixel(224, 124), 0xFF305068U);
    EXPECT_EQ(picture.pixel(74, 64), 0xFF0000FFU);
}

}  // namespace
}  // namespace kelvo::test
