#pragma once

#include <QCoreApplication>
#include <QTableView>
#include <array>
#include <string>

#include "AppHarness.h"
#include "FuzzInput.h"
#include "MemoryFile.h"
#include "SampleFiles.h"
#include "SlotTableView.h"
#include "model/ControllerModel.h"

namespace kelvo::fuzz {

/// Files in memory that a user may choose: two good ones and a bad one of each kind.
class Files {
public:
    struct Choice {
        MemoryFile file;
        std::string name;
        ControllerModel::Words words{};
    };

    static constexpr std::size_t kKinds = 3;

    Files();
    /// The last of each is refused by the readers.
    std::array<Choice, kKinds> irs;
    std::array<Choice, kKinds> amps;
};

/// The controller's user. Applies each action to the controller and to the model.
class User {
public:
    User(KelvoAppDelegate& controller, test::ScriptedServices& services, ControllerModel& model)
        : controller_(controller), services_(services), model_(model) {}

    /// Resets the state that an earlier input left: labels and progress as from a device with all zeros, and the first
    /// packet of one import of each kind as the last one sent.
    void beginAnew();

    /// Row 10 means none.
    void importIR(std::size_t row, std::size_t file);
    void importAMP(std::size_t row, std::size_t file);
    void deleteCab(std::size_t row, bool confirm);

    /// Checks that labels, progress and phases are the model's.
    void checkState() const;

private:
    static int select(QTableView& table, std::size_t row);

    KelvoAppDelegate& controller_;
    test::ScriptedServices& services_;
    ControllerModel& model_;
};

/// The one application object of a fuzz target, on the offscreen platform.
void startToolkit();

}  // namespace kelvo::fuzz
