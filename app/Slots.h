#pragma once

#include <memory>
#include <optional>

#include "ImportQueue.h"
#include "SlotBank.h"
#include "SlotTableModel.h"
#include "StepButtons.h"

namespace kelvo {

/// The slots of one table: their labels, what the table shows of them, and how files get there.
struct Slots {
    SlotBank names;
    ImportQueue::Table imports;
    /// Shared, so that news on its way to the main thread can tell whether the model is still there.
    std::shared_ptr<SlotTableModel> model = {};
    std::optional<StepButtons> steps = {};
};

}  // namespace kelvo
