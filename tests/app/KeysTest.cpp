#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Driver.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

class Keys : public FileImports {
protected:
    QWidget& window_ = app_.controller.window();
};

TEST_F(Keys, returnEnterAndADoubleClickOpenTheChooserForTheRow) {
    clickRow(cab_, 7);
    QTest::keyClick(&cab_, Qt::Key_Return);
    QTest::keyClick(&cab_, Qt::Key_Enter, Qt::KeypadModifier);
    clickRow(amp_, 2);
    QTest::keyClick(&amp_, Qt::Key_Return);
    const QPoint row = cab_.visualRect(cab_.model()->index(3, 0)).center();
    QTest::mouseClick(cab_.viewport(), Qt::LeftButton, {}, row);
    QTest::mouseDClick(cab_.viewport(), Qt::LeftButton, {}, row);
    EXPECT_THAT(app_.services.openPanels, ElementsAre("wav", "wav", "amp", "wav"));
    EXPECT_THAT(app_.services.openPanelTitles,
                ElementsAre("Choose a .wav file for CAB 34", "Choose a .wav file for CAB 34",
                            "Choose a .amp file for AMP 58", "Choose a .wav file for CAB 30"));
}

TEST_F(Keys, deleteAsksAboutTheSelectedCabOnly) {
    clickRow(amp_, 6);
    QTest::keyClick(&amp_, Qt::Key_Delete);
    clickRow(cab_, 2);
    QTest::keyClick(&cab_, Qt::Key_Delete);
    ASSERT_EQ(app_.services.alerts.size(), 1U);
    EXPECT_EQ(app_.services.alerts[0].alert.informativeText, "29. VINTAGE412");
    EXPECT_EQ(app_.services.alerts[0].alert.subject, &cab_);
}

TEST_F(Keys, mnemonicsReachEveryTableAndButton) {
    QTest::keyClick(&window_, Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(amp_.hasFocus());
    QTest::keyClick(&amp_, Qt::Key_Down);
    QTest::keyClick(&window_, Qt::Key_C, Qt::AltModifier);
    EXPECT_TRUE(cab_.hasFocus());
    QTest::keyClick(&window_, Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(amp_.selectedRow(), 1);
    QTest::keyClick(&window_, Qt::Key_I, Qt::AltModifier);
    QTest::keyClick(&window_, Qt::Key_M, Qt::AltModifier);
    EXPECT_TRUE(serveUntil([this] { return app_.services.openPanels == std::vector<QString>{"wav", "amp"}; }));
    QTest::keyClick(&window_, Qt::Key_D, Qt::AltModifier);
    EXPECT_TRUE(serveUntil([this] { return app_.services.alerts.size() == 1; }));
}

TEST_F(Keys, tabGoesFromTableToItsButtonsAndOn) {
    std::vector<QString> order;
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(window_.focusWidget(), Qt::Key_Tab);
        order.push_back(window_.focusWidget()->objectName());
    }
    EXPECT_THAT(order, ElementsAre("addIR", "deleteIR", "ImportCabTableV", "addAMP", "ImportIRTableV"));
}

}  // namespace
}  // namespace kelvo::test
