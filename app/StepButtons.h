#pragma once

#include <Qt>

class QLabel;
class QPushButton;

namespace kelvo {

class ImportQueue;
struct SlotBank;

/// The controls for the file of a table's selected row: two buttons that import the previous and the next file of its
/// folder, the keys that do the same in the table and on its buttons, and the line that names the file. A button
/// without a target is disabled. Main thread.
class StepButtons {
public:
    /// All references must outlive this object. The bank's table has its model.
    StepButtons(SlotBank& bank, ImportQueue& queue, QPushButton& import, QPushButton& previous, QPushButton& next,
                QLabel& fileLine);
    StepButtons(const StepButtons&) = delete;
    StepButtons& operator=(const StepButtons&) = delete;
    ~StepButtons() = default;

    /// The bank's slots have changed.
    void update();

private:
    void connectStep(QPushButton& button, QPushButton& import, Qt::Key arrow, Qt::Key page, int direction);
    void enable(QPushButton& button, bool isEnabled);

    SlotBank& bank_;
    ImportQueue& queue_;
    QPushButton& previous_;
    QPushButton& next_;
    QLabel& fileLine_;
};

}  // namespace kelvo
