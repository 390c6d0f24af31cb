#include <gtest/gtest.h>

#include <QPushButton>

#include "AppHarness.h"
#include "LoadDataWindowController.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

TEST(Properties, ofNumbersAndLabels_giveWhatWasSetAndNothingElse) {
    RunningApp app;
    KelvoAppDelegate& controller = app.controller;
    EXPECT_EQ(controller.PRESET_PARAValue(), 0);
    EXPECT_EQ(controller.IRNameValue(), 0);
    EXPECT_EQ(controller.AMPNameValue(), 0);
    controller.setPRESET_PARAValue(200);
    controller.setIRNameValue(7);
    controller.setAMPNameValue(255);
    controller.setIRNameArr({"a", "b"});
    controller.setAMPNameArr({"c"});
    EXPECT_EQ(controller.PRESET_PARAValue(), 200);
    EXPECT_EQ(controller.IRNameValue(), 7);
    EXPECT_EQ(controller.AMPNameValue(), 255);
    EXPECT_EQ(controller.IRNameArr(), (QStringList{"a", "b"}));
    EXPECT_EQ(controller.AMPNameArr(), QStringList{"c"});
    EXPECT_EQ(controller.ImportIRTableV().model()->index(0, 0).data().toString(), "");
}

TEST(Properties, ofTheInterface_giveWhatWasSet) {
    CloseActionWindow window;
    QPushButton addIR;
    QPushButton deleteIR;
    QPushButton addAMP;
    SlotTableView cab;
    SlotTableView amp;
    auto loading = std::make_unique<LoadDataWindowController>();
    const LoadDataWindowController* const loadWindow = loading.get();
    RunningApp app;
    KelvoAppDelegate& controller = app.controller;
    controller.setWindow(window);
    controller.setAddIR(addIR);
    controller.setDeleteIR(deleteIR);
    controller.setAddAMP(addAMP);
    controller.setImportIRTableV(cab);
    controller.setImportCabTableV(amp);
    controller.setLoadWindow(std::move(loading));
    EXPECT_EQ(&controller.window(), &window);
    EXPECT_EQ(&controller.addIR(), &addIR);
    EXPECT_EQ(&controller.deleteIR(), &deleteIR);
    EXPECT_EQ(&controller.addAMP(), &addAMP);
    EXPECT_EQ(&controller.ImportIRTableV(), &cab);
    EXPECT_EQ(&controller.ImportCabTableV(), &amp);
    EXPECT_EQ(&controller.loadWindow(), loadWindow);
}

}  // namespace
}  // namespace kelvo::test
