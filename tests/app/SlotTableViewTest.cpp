#include <gtest/gtest.h>

#include <QProxyStyle>
#include <QScrollBar>
#include <QVariantAnimation>

#include "Driver.h"
#include "FileImports.h"
#include "SlotDelegate.h"

namespace kelvo::test {
namespace {

class FilledTable : public FileImports {
protected:
    QWidget& window_ = app_.controller.window();
};

TEST(SlotTableView, withoutRows_hasNoneSelected) {
    EXPECT_EQ(SlotTableView().selectedRow(), -1);
}

TEST_F(FilledTable, homeAndEndGoToTheFirstAndTheLastSlot) {
    clickRow(cab_, 4);
    QTest::keyClick(&cab_, Qt::Key_End);
    EXPECT_EQ(cab_.selectedRow(), 9);
    QTest::keyClick(&cab_, Qt::Key_Home);
    EXPECT_EQ(cab_.selectedRow(), 0);
}

TEST_F(FilledTable, aClickBesideTheRowsLeavesTheSelection) {
    clickRow(cab_, 4);
    // All rows are visible, so there is space beside them only in a window that was forced to be larger.
    cab_.setMinimumHeight(cab_.height() + 100);
    ASSERT_TRUE(serveUntil(
        [this] { return cab_.viewport()->height() > cab_.visualRect(cab_.model()->index(9, 0)).bottom() + 50; }));
    QTest::mouseClick(cab_.viewport(), Qt::LeftButton, {}, {20, cab_.viewport()->height() - 10});
    EXPECT_EQ(cab_.selectedRow(), 4);
}

TEST_F(FilledTable, controlClick_keepsTheSelection) {
    clickRow(cab_, 4);
    const QPoint sameRow = cab_.visualRect(cab_.model()->index(4, 0)).center();
    QTest::mouseClick(cab_.viewport(), Qt::LeftButton, Qt::ControlModifier, sameRow);
    EXPECT_EQ(cab_.selectedRow(), 4);
    QTest::keyClick(&cab_, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(cab_.selectedRow(), 4);
    QTest::keyClick(&cab_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(cab_.selectedRow(), 4);
}

TEST_F(FilledTable, notice_isInTheSixthRowInASubduedColour) {
    QPalette palette = cab_.palette();
    palette.setColor(QPalette::PlaceholderText, QColor(255, 0, 0));
    cab_.setPalette(palette);
    const auto isRed = [this](int row) {
        const QRect rect = cab_.visualRect(cab_.model()->index(row, 0));
        const QImage right = cab_.viewport()->grab({rect.center().x(), rect.top(), 40, rect.height()}).toImage();
        for (int i = 0; i < right.width() * right.height(); ++i) {
            const QColor pixel = right.pixelColor(i % right.width(), i / right.width());
            if (pixel.red() > 200 && pixel.green() < 150) {
                return true;
            }
        }
        return false;
    };
    cab_.setNotice(QString(40, '.'));
    for (int row = 0; row < 10; ++row) {
        EXPECT_EQ(isRed(row), row == 5) << row;
    }
}

TEST_F(FilledTable, itsRowsAreOfTwoGroundsWithoutLinesBetweenThem) {
    QPalette palette = cab_.palette();
    palette.setColor(QPalette::Base, QColor(255, 255, 255));
    palette.setColor(QPalette::AlternateBase, QColor(200, 220, 240));
    cab_.setPalette(palette);
    const QImage picture = cab_.viewport()->grab().toImage();
    const QRect row = cab_.visualRect(cab_.model()->index(2, 0));
    for (int y = row.top(); y <= row.bottom(); ++y) {
        ASSERT_EQ(picture.pixelColor(row.right(), y), QColor(255, 255, 255)) << y;
        ASSERT_EQ(picture.pixelColor(row.right(), y + row.height()), QColor(200, 220, 240)) << y;
    }
}

TEST_F(FilledTable, hasNoScrollBarsHoweverSmallItIs) {
    cab_.setFixedSize(40, 40);
    QCoreApplication::processEvents();
    EXPECT_FALSE(cab_.verticalScrollBar()->isVisible());
    EXPECT_FALSE(cab_.horizontalScrollBar()->isVisible());
}

TEST_F(FilledTable, isNeverNarrowerThanItsWidestLabelWithTheFrame) {
    const QFontMetrics metrics = cab_.fontMetrics();
    EXPECT_EQ(cab_.minimumSizeHint().width(), SlotDelegate::labelWidth(metrics, "65.MMMMMMMMMM") + 2);
    EXPECT_EQ(cab_.sizeHint().width(), std::max(cab_.minimumSizeHint().width(), 45 * metrics.averageCharWidth()));
    EXPECT_EQ(cab_.columnWidth(0), cab_.viewport()->width());
}

TEST_F(FilledTable, theWindowHasTheOneSizeOfItsContentInEachFont) {
    const auto expectOneSize = [this] {
        EXPECT_EQ(window_.minimumSize(), window_.size());
        EXPECT_EQ(window_.maximumSize(), window_.size());
        EXPECT_EQ(cab_.rowHeight(0), cab_.fontMetrics().height() + 10);
        EXPECT_EQ(cab_.viewport()->height(), cab_.visualRect(cab_.model()->index(9, 0)).bottom() + 1);
    };
    expectOneSize();
    const QSize before = window_.size();
    QFont font = window_.font();
    font.setPixelSize(2 * QFontInfo(font).pixelSize());
    window_.setFont(font);
    ASSERT_TRUE(serveUntil([&] { return window_.height() > before.height() * 4 / 3; }));
    expectOneSize();
}

/// The desktop's wish for no animations.
class StillStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* more) const override {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, more);
    }
};

class FinishedTransfer : public FilledTable {
protected:
    /// From here on the test lets the time go by.
    QVariantAnimation& finish(int row) {
        cab_.showFinished(row);
        QVariantAnimation& fading = *cab_.findChildren<QVariantAnimation*>().last();
        fading.pause();
        return fading;
    }
    /// How blue the end of a row's line is; the row's ground is white or a light grey.
    int foot(int row) const {
        const QRect rect = cab_.visualRect(cab_.model()->index(row, 0));
        const QColor pixel = cab_.viewport()->grab().toImage().pixelColor(rect.right() - 2, rect.bottom() - 3);
        return pixel.blue() - pixel.red();
    }

    static constexpr int kRow = 6;
    const int before_ = foot(kRow);
};

TEST_F(FinishedTransfer, leavesAFullLineThatFadesWithinSixTenths) {
    QVariantAnimation& fading = finish(kRow);
    EXPECT_EQ(fading.duration(), 550);
    const int full = foot(kRow);
    EXPECT_GT(full, before_ + 100);
    fading.setCurrentTime(400);
    EXPECT_LT(foot(kRow), full - 40);
    EXPECT_GT(foot(kRow), before_ + 10);
    finish(kRow - 2);
    fading.setCurrentTime(600);
    EXPECT_EQ(foot(kRow), before_);
    EXPECT_GT(foot(kRow - 2), before_ + 100);
    EXPECT_EQ(foot(kRow + 1), foot(kRow - 1));
    cab_.showFinished(kRow);
    fading.pause();
    EXPECT_GT(foot(kRow), before_ + 100);
}

TEST_F(FinishedTransfer, withoutAnimations_disappearsAtTheEnd) {
    StillStyle still;
    cab_.setStyle(&still);
    QVariantAnimation& fading = finish(kRow);
    const int full = foot(kRow);
    EXPECT_GT(full, before_ + 100);
    fading.setCurrentTime(400);
    EXPECT_EQ(foot(kRow), full);
    fading.setCurrentTime(600);
    EXPECT_EQ(foot(kRow), before_);
    cab_.setStyle(nullptr);
}

}  // namespace
}  // namespace kelvo::test
