#pragma once

class QPushButton;

namespace kelvo {

class CloseActionWindow;
class SlotTableView;

/// The widgets of the main window's interface file that the controller uses. Plain getters and setters: the widgets
/// must outlive this object. Main thread.
class Outlets {
public:
    CloseActionWindow& window() const { return *window_; }
    void setWindow(CloseActionWindow& window) { window_ = &window; }
    QPushButton& addIR() const { return *addIR_; }
    void setAddIR(QPushButton& button) { addIR_ = &button; }
    QPushButton& deleteIR() const { return *deleteIR_; }
    void setDeleteIR(QPushButton& button) { deleteIR_ = &button; }
    QPushButton& addAMP() const { return *addAMP_; }
    void setAddAMP(QPushButton& button) { addAMP_ = &button; }
    SlotTableView& ImportIRTableV() const { return *ImportIRTableV_; }
    void setImportIRTableV(SlotTableView& table) { ImportIRTableV_ = &table; }
    /// The AMP table, in spite of its name.
    SlotTableView& ImportCabTableV() const { return *ImportCabTableV_; }
    void setImportCabTableV(SlotTableView& table) { ImportCabTableV_ = &table; }

protected:
    ~Outlets() = default;

private:
    CloseActionWindow* window_ = nullptr;
    QPushButton* addIR_ = nullptr;
    QPushButton* deleteIR_ = nullptr;
    QPushButton* addAMP_ = nullptr;
    SlotTableView* ImportIRTableV_ = nullptr;
    SlotTableView* ImportCabTableV_ = nullptr;
};

}  // namespace kelvo
