#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>
#include <algorithm>
#include <cmath>
#include <vector>

#include "SlotDelegate.h"
#include "SlotTableModel.h"

namespace kelvo {
namespace {

using testing::ElementsAre;

constexpr int kWidth = 200;
constexpr int kHeight = 24;

/// Draws labels as a table of that palette would.
class SlotDrawing : public testing::Test {
protected:
    QImage draw(const QString& label, QStyle::State state = QStyle::State_Enabled | QStyle::State_Active,
                const QPalette& palette = QPalette(Qt::black, Qt::lightGray, Qt::white, Qt::darkGray, Qt::gray,
                                                   Qt::black, Qt::white)) {
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

TEST_F(SlotDrawing, figuresAreOfOneWidth) {
    const auto width = [this](const QString& label) { return SlotDelegate::labelWidth(table_.fontMetrics(), label); };
    for (int number = 11; number < 100; ++number) {
        EXPECT_EQ(width(QString::number(number) + '.'), width("00."));
    }
}

TEST_F(SlotDrawing, aLabelIsAsWideAsItsPiecesAndTwoMarginsOfTenPixels) {
    const QFontMetrics metrics = table_.fontMetrics();
    int figure = 0;
    for (const char c : {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}) {
        figure = std::max(figure, metrics.horizontalAdvance(QLatin1Char(c)));
    }
    EXPECT_EQ(SlotDelegate::labelWidth(metrics, "27.MMMM"), 10 + 2 * figure + metrics.horizontalAdvance('.') +
                                                                metrics.averageCharWidth() +
                                                                metrics.horizontalAdvance("MMMM") + 10);
}

TEST_F(SlotDrawing, numberAndNameStandInTheMiddleOfTheRowsHeightInTheTablesFont) {
    // One that leaves as much above as below: where half a pixel goes is the toolkit's affair.
    QFont font = table_.font();
    int pixels = QFontInfo(font).pixelSize();
    do {
        font.setPixelSize(++pixels);
    } while ((kHeight - QFontMetrics(font).height()) % 2 != 0);
    table_.setFont(font);
    const QFontMetrics metrics = table_.fontMetrics();
    const int name = SlotDelegate::labelWidth(metrics, "27.") - 10;
    QImage expected(kWidth, kHeight, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setFont(table_.font());
    painter.setPen(QColor(102, 102, 102));  // 0.6 of the ink on the ground
    painter.drawText(QRect(10, 0, kWidth, kHeight), Qt::AlignLeft | Qt::AlignVCenter, "2");
    painter.setPen(Qt::black);
    painter.drawText(QRect(name, 0, kWidth, kHeight), Qt::AlignLeft | Qt::AlignVCenter, "MMMM");
    painter.end();
    const QImage image = draw("27.MMMM");
    const QRect figure(0, 0, 10 + metrics.horizontalAdvance('2'), kHeight);
    EXPECT_EQ(image.copy(figure), expected.copy(figure));
    const QRect names(name, 0, kWidth - name, kHeight);
    EXPECT_EQ(image.copy(names), expected.copy(names));
}

TEST_F(SlotDrawing, numberAndNameStandApart) {
    // The same pixels in both: where nothing is drawn a blank column of the ground.
    const QImage image = draw("27.MMMM");
    const int name = SlotDelegate::labelWidth(table_.fontMetrics(), "27.") - SlotDelegate::kLabelMargin;
    const int gap = table_.fontMetrics().averageCharWidth();
    EXPECT_EQ(darkest(image.copy(name - gap, 0, gap, kHeight)), 255);
    EXPECT_LT(darkest(image.copy(name - 2 * gap, 0, gap, kHeight)), 160);
    EXPECT_LT(darkest(image.copy(name, 0, gap, kHeight)), 40);
}

TEST_F(SlotDrawing, aClearedSlotsWordStandsWhereNamesDo) {
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

TEST_F(SlotDrawing, anEmptySlotIsPalerThanAFilledOne) {
    EXPECT_LT(darkest(draw("27.MMMM")), 40);
    for (const char* const empty : {"30EMPTY", "32.", "61.          "}) {
        EXPECT_GT(darkest(draw(empty)), 80) << empty;
        EXPECT_LT(darkest(draw(empty)), 160) << empty;
    }
    EXPECT_EQ(darkest(draw("")), 255);
}

TEST_F(SlotDrawing, aLineBreakInANameIsDrawnAsADot) {
    EXPECT_EQ(draw("27.A\nB"), draw(QStringLiteral("27.A·B")));
    EXPECT_EQ(draw("27.A\x01"), draw(QStringLiteral("27.A·")));
}

TEST_F(SlotDrawing, aNameThatDoesNotFitEndsInsideTheCell) {
    const QImage image = draw("27." + QString(60, 'W'));
    EXPECT_EQ(darkest(image.copy(kWidth - SlotDelegate::kLabelMargin, 0, SlotDelegate::kLabelMargin, kHeight)), 255);
    EXPECT_EQ(image, draw("27." + QString(80, 'W')));
}

TEST_F(SlotDrawing, theSelectionIsPalerWithoutTheFocus) {
    const QStyle::State selected = QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Selected;
    QPalette palette(Qt::black, Qt::lightGray, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0, 0, 200));
    ASSERT_FALSE(table_.hasFocus());
    const QColor unfocused = draw("27.A", selected, palette).pixelColor(kWidth - 3, kHeight / 2);
    EXPECT_EQ(unfocused, QColor(179, 179, 239));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    EXPECT_LT(darkest(draw("27.III", selected, palette)), 30);  // in the colour of other names

    table_.show();
    table_.activateWindow();
    table_.setFocus();
    QApplication::processEvents();
    ASSERT_TRUE(table_.hasFocus());
    EXPECT_EQ(draw("27.A", selected, palette).pixelColor(kWidth - 3, kHeight / 2), QColor(0, 0, 200));
}

class LineDrawing : public SlotDrawing {
protected:
    LineDrawing() { palette_.setColor(QPalette::Highlight, QColor(0, 0, 200)); }

    /// The colours of the row's last five pixels at x, from above. Where the line is, the row's own
    /// stand above and below it: a selected row's line must not run into the next row's ground.
    std::vector<QColor> foot(int x, QStyle::State more = {}) {
        const QImage image = draw("27.A", QStyle::State_Enabled | QStyle::State_Active | more, palette_);
        return {image.pixelColor(x, kHeight - 5), image.pixelColor(x, kHeight - 4), image.pixelColor(x, kHeight - 3),
                image.pixelColor(x, kHeight - 2), image.pixelColor(x, kHeight - 1)};
    }
    const QColor ground_ = Qt::white;
    const QColor strong_{0, 0, 200};
    const QColor trough_{191, 191, 241};  // a quarter of the strong one on the ground
    QPalette palette_{Qt::black, Qt::lightGray, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white};
};

TEST_F(LineDrawing, isNotThereWithoutATransfer) {
    EXPECT_THAT(foot(0), ElementsAre(ground_, ground_, ground_, ground_, ground_));
}

TEST_F(LineDrawing, isTwoPixelsHighAndStrongAsFarAsTheTransferIs) {
    state_ = SlotState::Running;
    share_ = 0.25;
    EXPECT_THAT(foot(0), ElementsAre(ground_, strong_, strong_, ground_, ground_));
    EXPECT_THAT(foot(49), ElementsAre(ground_, strong_, strong_, ground_, ground_));
    EXPECT_THAT(foot(50), ElementsAre(ground_, trough_, trough_, ground_, ground_));
    EXPECT_THAT(foot(199), ElementsAre(ground_, trough_, trough_, ground_, ground_));
    share_ = 0.8;
    EXPECT_THAT(foot(159), ElementsAre(ground_, strong_, strong_, ground_, ground_));
    EXPECT_THAT(foot(160), ElementsAre(ground_, trough_, trough_, ground_, ground_));
}

TEST_F(LineDrawing, showsATransferThatNothingAcknowledges) {
    state_ = SlotState::NotAnswering;
    EXPECT_THAT(foot(0), ElementsAre(ground_, trough_, trough_, ground_, ground_));
}

TEST_F(LineDrawing, isSeenOnASelectedRowWithAndWithoutTheFocus) {
    state_ = SlotState::Running;
    share_ = 0.5;
    const QColor pale(179, 179, 239);
    EXPECT_THAT(foot(99, QStyle::State_Selected), ElementsAre(pale, strong_, strong_, pale, pale));
    table_.show();
    table_.activateWindow();
    table_.setFocus();
    QApplication::processEvents();
    ASSERT_TRUE(table_.hasFocus());
    EXPECT_THAT(foot(99, QStyle::State_Selected),
                ElementsAre(strong_, QColor(Qt::white), QColor(Qt::white), strong_, strong_));
    EXPECT_THAT(foot(100, QStyle::State_Selected),
                ElementsAre(strong_, QColor(64, 64, 214), QColor(64, 64, 214), strong_, strong_));
}

TEST_F(LineDrawing, ofAFinishedTransferIsFullAndAsOpaqueAsItIsTold) {
    delegate_.setFinished(0, 1.0);
    EXPECT_THAT(foot(199), ElementsAre(ground_, strong_, strong_, ground_, ground_));
    delegate_.setFinished(0, 0.25);
    EXPECT_THAT(foot(199), ElementsAre(ground_, trough_, trough_, ground_, ground_));
    delegate_.setFinished(0, 0.0);
    EXPECT_THAT(foot(199), ElementsAre(ground_, ground_, ground_, ground_, ground_));
    delegate_.setFinished(1, 1.0);
    EXPECT_THAT(foot(199), ElementsAre(ground_, ground_, ground_, ground_, ground_));
}

TEST_F(LineDrawing, isBrokenWhereATransferWasCutOff) {
    state_ = SlotState::CutOff;
    const QColor subdued(102, 102, 102);
    EXPECT_THAT(foot(0), ElementsAre(ground_, subdued, subdued, ground_, ground_));
    EXPECT_THAT(foot(11), ElementsAre(ground_, subdued, subdued, ground_, ground_));
    EXPECT_THAT(foot(12), ElementsAre(ground_, ground_, ground_, ground_, ground_));
    EXPECT_THAT(foot(24), ElementsAre(ground_, subdued, subdued, ground_, ground_));
}

/// The contrast ratio of two colours, by the rule for text and graphics on the web: from 1 to 21.
double contrast(const QColor& one, const QColor& other) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST_F(SlotDrawing, eachStateHasAMarkOfItsOwnWithAContrastOfThreeToOneOrMore) {
    const QPalette light(Qt::black, Qt::lightGray, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white);
    const QPalette dark(Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::gray, Qt::white, QColor(30, 30, 30));
    const QStyle::State enabled = QStyle::State_Enabled | QStyle::State_Active;
    for (const QPalette& palette : {light, dark}) {
        for (const QStyle::State state : {enabled, enabled | QStyle::State_Selected}) {
            const auto mark = [&](SlotState shown) {
                state_ = shown;
                return draw("27.", state, palette).copy(kWidth / 2, 0, kWidth / 2, kHeight - 5);
            };
            std::vector<QImage> marks{mark(SlotState::Idle)};
            const QColor ground = marks[0].pixelColor(0, 0);
            for (const SlotState shown :
                 {SlotState::Waiting, SlotState::Running, SlotState::NotAnswering, SlotState::Sent}) {
                const QImage image = mark(shown);
                EXPECT_THAT(marks, testing::Not(testing::Contains(image)));
                marks.push_back(image);
                double most = 1;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        most = std::max(most, contrast(image.pixelColor(x, y), ground));
                    }
                }
                EXPECT_GE(most, 3.0) << static_cast<int>(shown);
            }
        }
    }
}

TEST_F(SlotDrawing, isLegibleOnADarkGround) {
    const QPalette dark(Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::gray, Qt::white, QColor(30, 30, 30));
    const auto brightest = [](QImage image) {
        image.invertPixels();
        return 255 - darkest(image);
    };
    const QStyle::State state = QStyle::State_Enabled | QStyle::State_Active;
    EXPECT_GT(brightest(draw("27.MMMM", state, dark)), 220);
    EXPECT_GT(brightest(draw("30EMPTY", state, dark)), 120);
    EXPECT_LT(brightest(draw("30EMPTY", state, dark)), 180);
}

}  // namespace
}  // namespace kelvo
