#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPushButton>

#include "AppHarness.h"
#include "ApprovedPicture.h"
#include "SampleFiles.h"
#include "SymbolIcon.h"

namespace kelvo {
namespace {

class SymbolIcon : public testing::Test {
protected:
    SymbolIcon() {
        QPalette palette(Qt::gray);
        palette.setColor(QPalette::Active, QPalette::ButtonText, QColor(10, 20, 30));
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(90, 100, 110));
        QApplication::setPalette(palette);
    }

    static QImage image(Symbol symbol, int size, QIcon::Mode mode = QIcon::Normal) {
        return symbolIcon(symbol).pixmap(QSize(size, size), 1.0, mode).toImage();
    }
};

TEST_F(SymbolIcon, hasTheColourOfButtonTextAlsoWhenThatChanges) {
    EXPECT_EQ(image(Symbol::Import, 16).pixelColor(8, 2), QColor(10, 20, 30));
    EXPECT_EQ(image(Symbol::Delete, 16, QIcon::Disabled).pixelColor(2, 4), QColor(90, 100, 110));
    const QIcon icon = symbolIcon(Symbol::Delete);
    QApplication::setPalette(QPalette(Qt::white, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::white, Qt::black));
    EXPECT_EQ(icon.pixmap(QSize(16, 16), 1.0).toImage().pixelColor(2, 4), QColor(Qt::white));
}

TEST_F(SymbolIcon, isSharpAtEverySize) {
    QImage sheet(320, 180, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    int x = 4;
    for (const Symbol symbol : {Symbol::Import, Symbol::Delete, Symbol::Up, Symbol::Down, Symbol::Play, Symbol::Pause,
                                Symbol::Dots, Symbol::Tick}) {
        int y = 4;
        for (const int size : {16, 20, 24, 28, 32}) {
            symbolIcon(symbol).paint(&painter, QRect(x, y, size, size));
            EXPECT_TRUE(painter.transform().isIdentity());
            y += size + 8;
        }
        x += 40;
    }
    painter.end();
    EXPECT_TRUE(test::isApproved(sheet, KELVO_GOLDEN "/symbols.png"));
}

// A grey arrow of a theme would look the same on a disabled button.
TEST_F(SymbolIcon, ofAStepIsOurOwnWhateverTheThemeHas) {
    const SampleDir themes;
    ASSERT_TRUE(QDir().mkpath(themes.path("arrows/16")));
    FileBytes index;
    append(index, "[Icon Theme]\nName=Arrows\nDirectories=16\n[16]\nSize=16\n");
    themes.write("arrows/index.theme", index);
    QImage grey(16, 16, QImage::Format_RGB32);
    grey.fill(Qt::lightGray);
    for (const char* const name : {"go-up", "go-down"}) {
        ASSERT_TRUE(grey.save(themes.path(QStringLiteral("arrows/16/%1.png").arg(QLatin1String(name)))));
    }
    QIcon::setThemeSearchPaths({themes.path(".")});
    QIcon::setThemeName("arrows");
    ASSERT_TRUE(QIcon::hasThemeIcon("go-up"));

    const test::RunningApp app;
    for (const auto* const button : app.controller.window().findChildren<QPushButton*>()) {
        EXPECT_FALSE(button->icon().isNull()) << button->objectName().toStdString();
    }
    for (const char* const name : {"previousIR", "nextIR", "previousAMP", "nextAMP"}) {
        const auto* const button = app.controller.window().findChild<QPushButton*>(QLatin1String(name));
        const auto middle = [button](QIcon::Mode mode) {
            return button->icon().pixmap(QSize(16, 16), 1.0, mode).toImage().pixelColor(8, 8);
        };
        EXPECT_EQ(middle(QIcon::Normal), QColor(10, 20, 30)) << name;
        EXPECT_EQ(middle(QIcon::Disabled), QColor(90, 100, 110)) << name;
    }
}

}  // namespace
}  // namespace kelvo
