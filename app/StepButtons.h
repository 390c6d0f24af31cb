#pragma once

#include "ImportQueue.h"

class QPushButton;

namespace kelvo {

class SlotTableView;

/// The two buttons beside a table's import, and the keys of the same meaning: the previous and the next file of the
/// folder from which the selected row's file came; the keys work in the table and on the three buttons. Disabled for a
/// row without a file; else their tooltips name the file that will come. Main thread.
class StepButtons {
public:
    /// All that it is given outlives this object, which is `table`'s `changed`.
    StepButtons(SlotTableView& view, QPushButton& import, QPushButton& previous, QPushButton& next, ImportQueue& queue,
                ImportQueue::Table& table);
    StepButtons(const StepButtons&) = delete;
    StepButtons& operator=(const StepButtons&) = delete;
    ~StepButtons() = default;

private:
    void connectStep(QPushButton& button, QPushButton& import, Qt::Key key, int direction);
    void update();

    SlotTableView& view_;
    QPushButton& previous_;
    QPushButton& next_;
    ImportQueue& queue_;
    ImportQueue::Table& table_;
};

}  // namespace kelvo
