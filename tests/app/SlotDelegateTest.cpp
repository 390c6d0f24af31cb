#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>
#include <algorithm>
#include <vector>

#include "ApprovedPicture.h"
#include "SlotDelegate.h"
#include "SlotTableModel.h"

namespace kelvo {
namespace {

constexpr int kWidth = 200;
constexpr int kHeight = 24;

/// Draws labels as a table of that palette would.
class SlotDrawing : public testing::Test {
protected:
    SlotDrawing() {
        for (QPalette* const palette : {&light_, &dark_}) {
            palette->setColor(QPalette::Highlight, QColor(0, 0, 200));
        }
    }
    QImage draw(const QString& label) { return draw(label, enabled_, light_); }
    QImage draw(const QString& label, QStyle::State state, const QPalette& palette) {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), label);
        model.setData(model.index(0, 0), QVariant::fromValue(state_), SlotTableModel::kStateRole);
        model.setData(model.index(0, 0), share_, SlotTableModel::kShareRole);
        QImage image(kWidth, kHeight, QImage::Format_RGB32);
        image.fill(palette.color(QPalette::Base));
        QStyleOptionViewItem option;
        option.initFrom(&table_);
        option.widget = &table_;
        option.rect = image.rect();
        option.palette = palette;
        option.state = state;
        option.showDecorationSelected = true;
        option.font = table_.font();
        option.fontMetrics = table_.fontMetrics();
        QPainter painter(&image);
        delegate_.paint(&painter, option, model.index(0, 0));
        return image;
    }
    static int darkest(const QImage& image) {
        int least = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                least = std::min(least, qGray(image.pixel(x, y)));
            }
        }
        return least;
    }

    const QStyle::State enabled_ = QStyle::State_Enabled | QStyle::State_Active;
    QPalette light_{Qt::black, Qt::lightGray, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white};
    QPalette dark_{Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::gray, Qt::white, QColor(30, 30, 30)};
    QTableView table_;
    SlotDelegate delegate_;
    SlotState state_ = SlotState::Idle;
    double share_ = 0.0;
};

TEST_F(SlotDrawing, namesStandAtOnePlaceWhateverTheNumber) {
    const int name = SlotDelegate::labelWidth(table_.fontMetrics(), QStringLiteral("11.")) - SlotDelegate::kLabelMargin;
    const QRect names(name, 0, kWidth - name, kHeight);
    EXPECT_EQ(draw("11.TWEED").copy(names), draw("48.TWEED").copy(names));
    EXPECT_NE(draw("11.TWEED").copy(names), draw("48.SWEET").copy(names));
    EXPECT_NE(draw("11.TWEED"), draw("48.TWEED"));
}

TEST_F(SlotDrawing, aLabelIsAsWideAsItsPiecesAndTwoMarginsOfTenPixels) {
    const QFontMetrics metrics = table_.fontMetrics();
    int figure = 0;
    for (const QChar c : QStringLiteral("0123456789")) {
        figure = std::max(figure, metrics.horizontalAdvance(c));
    }
    for (const char* const number : {"27.", "11.", "00."}) {
        EXPECT_EQ(SlotDelegate::labelWidth(metrics, QLatin1String(number) + QStringLiteral("MMMM")),
                  10 + 2 * figure + metrics.horizontalAdvance('.') + metrics.averageCharWidth() +
                      metrics.horizontalAdvance("MMMM") + 10);
    }
}

TEST_F(SlotDrawing, numberAndNameStandApartInTheTablesFont) {
    const auto nameOf = [this](const QImage& image) {
        const int name = SlotDelegate::labelWidth(table_.fontMetrics(), "27.") - SlotDelegate::kLabelMargin;
        const int gap = table_.fontMetrics().averageCharWidth();
        EXPECT_EQ(darkest(image.copy(name - gap, 0, gap, kHeight)), 255);
        EXPECT_LT(darkest(image.copy(name - 2 * gap, 0, gap, kHeight)), 160);  // the number, subdued
        EXPECT_LT(darkest(image.copy(name, 0, gap, kHeight)), 40);
        return image.copy(name, 0, kWidth - name, kHeight);
    };
    const QImage small = nameOf(draw("27.MMMM"));
    QFont font = table_.font();
    font.setPixelSize(QFontInfo(font).pixelSize() + 4);
    table_.setFont(font);
    EXPECT_NE(nameOf(draw("27.MMMM")), small);
}

TEST_F(SlotDrawing, name_isVerticallyCentred) {
    // One that leaves as much above as below: where half a pixel goes is the toolkit's affair.
    QFont font = table_.font();
    int pixels = QFontInfo(font).pixelSize();
    do {
        font.setPixelSize(++pixels);
    } while ((kHeight - QFontMetrics(font).height()) % 2 != 0);
    table_.setFont(font);
    const int name = SlotDelegate::labelWidth(table_.fontMetrics(), "27.") - SlotDelegate::kLabelMargin;
    QImage expected(kWidth, kHeight, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setFont(font);
    painter.drawText(QRect(name, 0, kWidth, kHeight), Qt::AlignLeft | Qt::AlignVCenter, "MMMM");
    painter.end();
    const QRect names(name, 0, kWidth - name, kHeight);
    EXPECT_EQ(draw("27.MMMM").copy(names), expected.copy(names));
}

TEST_F(SlotDrawing, clearedSlotsWord_isWhereNamesAre) {
    const int name = SlotDelegate::labelWidth(table_.fontMetrics(), "27.") - SlotDelegate::kLabelMargin;
    const auto firstInk = [&](const QString& label) {
        const QImage image = draw(label);
        int x = name;
        while (x < kWidth && darkest(image.copy(x, 0, 1, kHeight)) > 200) {
            ++x;
        }
        return x;
    };
    EXPECT_LT(firstInk("30EMPTY"), kWidth);
    EXPECT_EQ(firstInk("30EMPTY"), firstInk("30.EMPTY"));
    const QRect numbers(0, 0, name, kHeight);
    EXPECT_EQ(draw("30EMPTY").copy(numbers), draw("30").copy(numbers));
}

TEST_F(SlotDrawing, anEmptySlotIsPalerThanAFilledOneOnEachGround) {
    const auto strength = [this](const QString& label, const QPalette& palette) {
        QImage image = draw(label, enabled_, palette);
        if (&palette == &dark_) {
            image.invertPixels();
        }
        return 255 - darkest(image);
    };
    for (const QPalette* const palette : {&light_, &dark_}) {
        EXPECT_GT(strength("27.MMMM", *palette), 215);
        for (const char* const empty : {"30EMPTY", "32.", "61.          "}) {
            EXPECT_GT(strength(empty, *palette), 95) << empty;
            EXPECT_LT(strength(empty, *palette), 180) << empty;
        }
    }
    EXPECT_EQ(darkest(draw("")), 255);
}

TEST_F(SlotDrawing, aNameThatDoesNotFitEndsInsideTheCell) {
    const QImage image = draw("27." + QString(60, 'W'));
    EXPECT_EQ(darkest(image.copy(kWidth - SlotDelegate::kLabelMargin, 0, SlotDelegate::kLabelMargin, kHeight)), 255);
    EXPECT_EQ(image, draw("27." + QString(80, 'W')));
}

TEST_F(SlotDrawing, aSelectedNameHasTheColourOfOtherNamesWithoutTheFocus) {
    QPalette palette = light_;
    palette.setColor(QPalette::HighlightedText, Qt::white);
    ASSERT_FALSE(table_.hasFocus());
    EXPECT_LT(darkest(draw("27.III", enabled_ | QStyle::State_Selected, palette)), 30);
}

// Without text and marks, whose sizes depend on the font.
TEST_F(SlotDrawing, groundsAndLinesOfAllStatesAreThoseOfTheReviewedPicture) {
    constexpr int kShown = 150;
    QImage sheet(3 * kShown, 2 * 8 * kHeight, QImage::Format_RGB32);
    QPainter painter(&sheet);
    const auto drawColumn = [&](int x, QStyle::State state) {
        int y = 0;
        for (const QPalette& palette : {light_, dark_}) {
            const auto drawRow = [&] {
                painter.drawImage(x, y, draw("", state, palette).copy(0, 0, kShown, kHeight));
                y += kHeight;
            };
            for (const auto& [shown, share] : {std::pair(SlotState::Idle, 0.0),
                                               {SlotState::Waiting, 0.0},
                                               {SlotState::Running, 0.5},
                                               {SlotState::NotAnswering, 0.0},
                                               {SlotState::Sent, 0.0},
                                               {SlotState::CutOff, 0.0}}) {
                state_ = shown;
                share_ = share;
                drawRow();
            }
            state_ = SlotState::Idle;
            for (const double opacity : {1.0, 0.25}) {
                delegate_.setFinished(0, opacity);
                drawRow();
            }
            delegate_.setFinished(0, 0.0);
            delegate_.setFinished(1, 1.0);  // another row's
        }
    };
    drawColumn(0, enabled_);
    drawColumn(kShown, enabled_ | QStyle::State_Selected);
    table_.show();
    table_.activateWindow();
    table_.setFocus();
    QApplication::processEvents();
    ASSERT_TRUE(table_.hasFocus());
    drawColumn(2 * kShown, enabled_ | QStyle::State_Selected);
    painter.end();
    EXPECT_TRUE(test::isApproved(sheet, KELVO_GOLDEN "/rows.png"));
}

TEST_F(SlotDrawing, eachStateHasAMarkOfItsOwnThatIsClearOnEachGround) {
    for (const QPalette& palette : {light_, dark_}) {
        for (const QStyle::State state : {enabled_, enabled_ | QStyle::State_Selected}) {
            const auto mark = [&](SlotState shown) {
                state_ = shown;
                return draw("27.", state, palette).copy(kWidth / 2, 0, kWidth / 2, kHeight - 5);
            };
            std::vector<QImage> marks{mark(SlotState::Idle)};
            const int ground = qGray(marks[0].pixel(0, 0));
            for (const SlotState shown :
                 {SlotState::Waiting, SlotState::Running, SlotState::NotAnswering, SlotState::Sent}) {
                QImage image = mark(shown);
                EXPECT_THAT(marks, testing::Not(testing::Contains(image)));
                marks.push_back(image);
                const int least = darkest(image);
                image.invertPixels();
                EXPECT_GE(std::max(ground - least, 255 - darkest(image) - ground), 90) << static_cast<int>(shown);
            }
        }
    }
}

}  // namespace
}  // namespace kelvo
