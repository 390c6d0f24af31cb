// Files that are dropped on a table or pasted into it: one for each row from the drop down.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QVariantAnimation>

#include "Driver.h"
#include "FileDrag.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Drop : public FileImports {
protected:
    QImage picture() const { return cab_.viewport()->grab().toImage(); }
    /// The rows that a frame in the colour of a selection goes along on the left.
    std::vector<int> markedRows() const {
        const QImage shown = picture();
        std::vector<int> rows;
        for (int row = 0; row < 10; ++row) {
            const int middle = cab_.visualRect(cab_.model()->index(row, 0)).center().y();
            if (shown.pixelColor(0, middle) == cab_.palette().color(QPalette::Highlight)) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    std::vector<std::string> changes() const { return app_.manager.activity().changes; }
};

TEST_F(Drop, fillsTheRowsInTheNaturalOrderOfTheFilesAndTheirFolders) {
    ASSERT_TRUE(QDir(files_.path("")).mkdir("z"));
    QList<QUrl> files = waves({"IR 10", "ir 9", "IR 2", "z/IR 1"}) + urls({amp("1.amp"), bad("3.wav")});
    files += {QUrl("http://localhost/0.wav"), files.first()};
    EXPECT_TRUE(drop(cab_, 4, files));
    ASSERT_TRUE(changed(4));
    EXPECT_THAT(changes(), ElementsAre(StartsWith("CAB 31 <- \"IR 2\""), StartsWith("CAB 32 <- \"IR 9\""),
                                       StartsWith("CAB 33 <- \"IR 10\""), StartsWith("CAB 34 <- \"IR 1\"")));
    EXPECT_EQ(cab_.model()->index(6, 0).data().toString(), "33.IR 10");
    EXPECT_EQ(app_.cabLabel(8), "35.ACOUSTIC");
    EXPECT_EQ(cab_.selectedRow(), 4);
    ASSERT_TRUE(serveUntil([this] { return isIdle(); }));
    EXPECT_TRUE(drop(amp_, 8, urls({amp("a.amp", 2), wave("b.wav"), amp("c.amp"), amp("d.amp")})));
    ASSERT_TRUE(changed(6));
    EXPECT_EQ(app_.ampLabel(8), "64.A");
    EXPECT_EQ(app_.ampLabel(9), "65.C");
    EXPECT_EQ(app_.pedal.memory().amp[8].words[0], 2U);
}

TEST_F(Drop, isPossibleForLocalFilesOfTheTablesTypeUnlessAnAlertIsOpen) {
    EXPECT_FALSE(drop(cab_, 1, urls({amp("a.amp")})));
    EXPECT_FALSE(drop(amp_, 1, urls({wave("a.wav")})));
    EXPECT_FALSE(drop(cab_, 1, {}));
    EXPECT_FALSE(drop(cab_, 1, {QUrl("http://localhost/a.wav")}));
    EXPECT_FALSE(drop(cab_, 1, {QUrl("file://elsewhere" + files_.path("a.wav"))}));
    EXPECT_FALSE(drop(cab_, 1, urls({wave("wav")})));
    EXPECT_EQ(cab_.selectedRow(), 0);
    EXPECT_TRUE(drop(cab_, 1, urls({wave("UPPER.WAV")})));
    QWidget alert(&app_.controller.window(), Qt::Dialog);
    alert.setWindowModality(Qt::ApplicationModal);
    alert.show();
    EXPECT_FALSE(drop(cab_, 1, urls({wave("a.wav")})));
    alert.hide();
    EXPECT_TRUE(drop(cab_, 1, urls({wave("a.wav")})));
}

TEST_F(Drop, opensAUrlByItsPathOnly) {
    const QString path = urls({wave("My Cab.wav")}).first().path();
    std::size_t changes = 0;
    for (const char* const form : {"file://localhost%1", "file://%1?version=2", "file://%1#middle"}) {
        EXPECT_TRUE(drop(cab_, 7, {QUrl(QString(form).arg(path))})) << form;
        EXPECT_TRUE(changed(++changes)) << form;
    }
    EXPECT_EQ(app_.cabLabel(7), "34.MY CAB");
}

TEST_F(Drop, ofRefusedFiles_isImpossibleAfterTheirVerdict) {
    // One that is whole and of a depth that is not converted.
    const QString strange = files_.write("3.wav", WaveFile{.bitsPerSample = 12, .data = FileBytes(8)}.bytes());
    const auto isRefused = [](SlotTableView& table, const QList<QUrl>& files) {
        FileDrag drag(table, files);
        EXPECT_TRUE(drag.enter(2));
        return serveUntil([&] { return !drag.moveTo(2); }) && drag.drop(2) == Qt::IgnoreAction;
    };
    EXPECT_TRUE(isRefused(cab_, urls({bad("1.wav"), bad("2.wav"), strange})));
    EXPECT_TRUE(isRefused(amp_, urls({bad("1.amp"), files_.path("gone.amp")})));
}

TEST_F(Drop, marksAsManyRowsAsWillBeWritten) {
    FileDrag drag(cab_, waves({"1", "2", "3"}) + urls({bad("4.wav"), amp("5.amp")}));
    EXPECT_TRUE(drag.enter(1));
    EXPECT_TRUE(drag.moveTo(1));
    EXPECT_THAT(markedRows(), ElementsAre(1, 2, 3, 4));
    ASSERT_TRUE(serveUntil([&] { return markedRows() == std::vector{1, 2, 3}; }));
    EXPECT_TRUE(drag.moveTo(6));
    EXPECT_THAT(markedRows(), ElementsAre(6, 7, 8));
    EXPECT_TRUE(drag.moveTo(8));
    EXPECT_THAT(markedRows(), ElementsAre(8, 9));
    drag.leave();
    EXPECT_THAT(markedRows(), IsEmpty());
    EXPECT_TRUE(drop(cab_, 3, waves({"1", "2"})));
    EXPECT_THAT(markedRows(), IsEmpty());
}

TEST_F(Drop, isMarkedByAFrameOfTwoPixelsThatSaysHowManyFilesAreWritten) {
    const QImage before = picture();
    FileDrag all(cab_, waves({"1", "2"}));
    all.enter(4);
    all.moveTo(4);
    const QImage plain = picture();
    const QRect rows(0, cab_.rowViewportPosition(4), plain.width(), 2 * cab_.rowHeight(4));
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const bool isFrame = rows.contains(x, y) && !rows.adjusted(2, 2, -2, -2).contains(x, y);
            ASSERT_EQ(plain.pixel(x, y) != before.pixel(x, y), isFrame) << x << ", " << y;
        }
    }
    FileDrag some(cab_, waves({"1", "2"}) + urls({amp("3.amp")}));
    some.enter(4);
    some.moveTo(4);
    const QRect corner(rows.right() - 40, rows.bottom() - cab_.rowHeight(4) + 4, 36, cab_.rowHeight(4) - 8);
    EXPECT_NE(picture().copy(corner), plain.copy(corner));
}

TEST_F(Drop, isJudgedOncePerDragUntilTheDragLeaves) {
    QList<QUrl> judged;
    std::stop_source stop;
    cab_.setFileJudge([&](const QList<QUrl>& files, const SlotTableView::Verdict&) {
        judged += files;
        return stop;
    });
    const QList<QUrl> files = waves({"1", "2"});
    FileDrag drag(cab_, files);
    drag.enter(0);
    for (int row = 0; row < 10; ++row) {
        EXPECT_TRUE(drag.moveTo(row));
    }
    EXPECT_EQ(judged, files);
    EXPECT_FALSE(stop.stop_requested());
    drag.leave();
    EXPECT_TRUE(stop.stop_requested());
}

TEST_F(Drop, isLikeAPasteOfWhatCopyListed) {
    const QString first = wave("One two.wav");
    const QString second = wave("b.wav");
    QGuiApplication::clipboard()->setText("kept");
    QTest::keyClick(&cab_, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "kept");
    QTest::keyClick(&cab_, Qt::Key_V, Qt::ControlModifier);
    int finished = 0;
    for (const auto& [row, path] : {std::pair(7, first), {2, second}}) {
        app_.importIR(row, path);
        ++finished;
        ASSERT_TRUE(serveUntil([&] { return cab_.findChildren<QVariantAnimation*>().size() == finished; }));
    }
    app_.importIR(4, bad("refused.wav"));
    cab_.setFocus();
    QTest::keyClick(&cab_, Qt::Key_C, Qt::ControlModifier);
    const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(), "29\tB\t" + second + "\n34\tONE TWO\t" + first);
    EXPECT_THAT(copied->urls(), ElementsAre(QUrl::fromLocalFile(second), QUrl::fromLocalFile(first)));
    cab_.selectRow(8);
    QTest::keyClick(&cab_, Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(changed(4));
    EXPECT_EQ(app_.cabLabel(8), "35.B");
    EXPECT_EQ(app_.cabLabel(9), "36.ONE TWO");
}

}  // namespace
}  // namespace kelvo::test
