// The real chooser and the real alert, as the desktop gets them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCompleter>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <chrono>

#include "AppHarness.h"
#include "AppServices.h"
#include "Driver.h"
#include "OnEvent.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Desktop : public testing::Test {
protected:
    void SetUp() override {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        table_.setModel(&rows_);
        table_.setSelectionBehavior(QAbstractItemView::SelectRows);
        table_.setSelectionMode(QAbstractItemView::SingleSelection);
        table_.setGeometry(10, 20, 200, 180);
        window_.setGeometry(100, 100, 400, 300);
        window_.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_));
    }

    const AppServices services_ = desktopServices();
    QWidget window_;
    QStringListModel rows_{{"a", "b", "c"}};
    QTableView table_{&window_};
};

class RealAlert : public Desktop {
protected:
    QMessageBox& show(const Alert& alert) {
        services_.beginSheetModal(window_, alert, [this](int response) { answers_.push_back(response); });
        return *visibleMessageBox();
    }
    static Alert question() { return {.messageText = "Sure?", .buttons = {"delete", "cancel"}}; }

    std::vector<int> answers_;
};

TEST_F(RealAlert, comesBeforeAllOtherWindows_countsItsButtonsFromThousand_isGoneOnceItIsAnswered) {
    int raised = 0;
    const OnEvent counting(*qApp, QEvent::ZOrderChange, [&] { ++raised; });
    Alert alert = question();
    alert.informativeText = "27. <b>A</b> &amp;";
    QMessageBox& box = show(alert);
    EXPECT_EQ(raised, 1);
    const auto* const line = box.findChild<QLabel*>("qt_msgbox_informativelabel");
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->text(), "27. <b>A</b> &amp;");
    EXPECT_EQ(line->textFormat(), Qt::PlainText);
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    EXPECT_EQ(box.windowModality(), Qt::ApplicationModal);
    click(*buttonOf(box, "delete"));
    click(*buttonOf(show(question()), "cancel"));
    EXPECT_THAT(answers_, ElementsAre(1000, 1001));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window_.findChildren<QMessageBox*>().isEmpty());
    EXPECT_EQ(show({.messageText = "Gone", .buttons = {"exit"}, .style = AlertStyle::Critical}).icon(),
              QMessageBox::Critical);
}

TEST_F(RealAlert, returnAndEscape_chooseTheButtonThatChangesNothing) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        QMessageBox& box = show(question());
        box.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
        QTest::keyClick(&box, key);
        ASSERT_EQ(visibleMessageBox(), nullptr);
    }
    show(question()).close();
    EXPECT_THAT(answers_, ElementsAre(1001, 1001, 1001, 1001));
}

TEST_F(RealAlert, isBesideWhatItIsAboutAsFarAsTheScreenAllows) {
    const QRect screen = window_.screen()->availableGeometry();
    table_.move(0, 20);
    Alert alert = question();
    alert.subject = &table_;
    const auto boxAt = [&](int x, int y = 100) {
        window_.setGeometry(x, y, 400, 300);
        QMessageBox& box = show(alert);
        const QRect frame = box.frameGeometry();
        box.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return frame;
    };
    EXPECT_EQ(boxAt(100).topLeft(), QPoint(100 + table_.width() + 8, 120));
    EXPECT_EQ(boxAt(100, screen.bottom() - 40).bottom(), screen.bottom());
    const int width = boxAt(100).width();
    const int last = screen.right() + 1 - width - 8 - table_.width();
    EXPECT_EQ(boxAt(last).right(), screen.right());
    EXPECT_EQ(boxAt(last + 1).left(), last + 1 - 8 - width);
    // A table without space on its right, with just enough on its left, and with a pixel less.
    table_.setFixedWidth(screen.width());
    EXPECT_EQ(boxAt(width + 8).left(), screen.left());
    EXPECT_EQ(boxAt(width + 7).right(), screen.right());
}

class RealChooser : public Desktop {
protected:
    QFileDialog& show(const QString& fileType) {
        const OpenPanel panel{
            .fileType = fileType, .table = &table_, .title = [this] {
                return QStringLiteral("for row %1").arg(table_.selectionModel()->selectedRows().value(0).row());
            }};
        services_.beginOpenPanel(window_, panel, [this, fileType](int response, const QUrl& url) {
            answers_.push_back(fileType + QStringLiteral(" %1 ").arg(response) + url.fileName());
        });
        return *visibleFileDialog();
    }

    SampleDir files_;
    std::vector<QString> answers_;
};

TEST_F(RealChooser, offersOneFileOfTheTypeInEitherCaseAndBlocksNothing) {
    const QFileDialog& chooser = show("wav");
    EXPECT_EQ(chooser.fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(chooser.acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(chooser.nameFilters(), QStringList{"WAV files (*.[wW][aA][vV])"});
    EXPECT_TRUE(chooser.testOption(QFileDialog::HideNameFilterDetails));
    EXPECT_EQ(chooser.windowModality(), Qt::NonModal);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(RealChooser, isOneThatASecondPressBringsToTheFront) {
    QFileDialog& chooser = show("wav");
    int raised = 0;
    const OnEvent counting(chooser, QEvent::ZOrderChange, [&] { ++raised; });
    window_.activateWindow();
    ASSERT_FALSE(chooser.isActiveWindow());
    EXPECT_EQ(&show("wav"), &chooser);
    EXPECT_EQ(raised, 1);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&chooser));
    EXPECT_EQ(window_.findChildren<QFileDialog*>().size(), 1);
    EXPECT_THAT(answers_, IsEmpty());
    enterPath(chooser, files_.write("a.wav", FileBytes{1}));
    EXPECT_THAT(answers_, ElementsAre("wav 1 a.wav"));
}

TEST_F(RealChooser, isCancelledByAPressForTheOtherTypeAndByAFileOfIt) {
    show("wav");
    EXPECT_EQ(show("amp").nameFilters(), QStringList{"AMP files (*.[aA][mM][pP])"});
    EXPECT_THAT(answers_, ElementsAre("wav 0 "));
    enterPath(*visibleFileDialog(), files_.write("b.amp", FileBytes{1}));
    enterPath(show("wav"), files_.path("b.amp"));
    show("wav").reject();
    EXPECT_THAT(answers_, ElementsAre("wav 0 ", "amp 1 b.amp", "wav 0 ", "wav 0 "));
}

TEST_F(RealChooser, isKeptForTheNextTimeWithoutItsLastChoice) {
    const auto children = [this] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return window_.findChild<QFileDialog*>()->findChildren<QObject*>(Qt::FindDirectChildrenOnly).size();
    };
    const QFileDialog& first = show("wav");
    enterPath(*visibleFileDialog(), files_.write("a.wav", FileBytes{1}));
    ASSERT_EQ(visibleFileDialog(), nullptr);
    const auto before = children();
    EXPECT_EQ(&show("wav"), &first);
    EXPECT_EQ(first.findChild<QLineEdit*>("fileNameEdit")->text(), "");
    QTest::keyClick(first.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    EXPECT_THAT(answers_, ElementsAre("wav 1 a.wav"));
    EXPECT_TRUE(first.isVisible());
    visibleFileDialog()->reject();
    EXPECT_EQ(children(), before);
}

TEST_F(RealChooser, returnsToItsPlaceAndToTheLastFolderOfEachType) {
    const SampleDir models;
    QFileDialog& chooser = show("wav");
    chooser.setDirectory(files_.path(""));
    chooser.setGeometry(50, 60, 500, 400);
    show("amp");
    EXPECT_EQ(chooser.geometry(), QRect(50, 60, 500, 400));
    chooser.setDirectory(models.path(""));
    show("wav");
    EXPECT_EQ(chooser.directory(), QDir(files_.path("")));
    show("amp");
    EXPECT_EQ(chooser.directory(), QDir(models.path("")));
}

TEST_F(RealChooser, leavesNoCompletionsOpen) {
    const QString path = files_.write("a.wav", FileBytes{1});
    auto* const name = show("wav").findChild<QLineEdit*>("fileNameEdit");
    visibleFileDialog()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(visibleFileDialog()));
    name->setFocus();
    const QWidget* const completions = name->completer()->popup();
    // They come when the folder has been read, which has no event here.
    ASSERT_TRUE(serveUntil([&] {
        name->clear();
        QTest::keyClicks(name, path.chopped(1));
        return completions->isVisible();
    }));
    visibleFileDialog()->reject();
    EXPECT_FALSE(completions->isVisible());
}

TEST_F(RealChooser, isBesideTheWindowAndCalledByWhatIsSelectedNow) {
    window_.move(0, 0);
    table_.selectRow(1);
    const QFileDialog& chooser = show("wav");
    EXPECT_EQ(chooser.windowTitle(), "for row 1");
    table_.selectRow(2);
    EXPECT_EQ(chooser.windowTitle(), "for row 2");
    const QRect frame = chooser.frameGeometry();
    const QRect screen = window_.screen()->availableGeometry();
    EXPECT_EQ(frame.top(), window_.geometry().top());
    EXPECT_EQ(frame.left(), std::min(window_.geometry().right() + 9, screen.right() + 1 - frame.width()));
}

TEST(DesktopServices, sleepForWholeSeconds) {
    const auto begin = std::chrono::steady_clock::now();
    desktopServices().sleep(1);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

}  // namespace
}  // namespace kelvo::test
