#pragma once

#include <QUrl>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

#include "AppClassPoint.h"
#include "AppServices.h"
#include "CloseActionWindow.h"
#include "HidManager.h"
#include "ImportQueue.h"
#include "Outlets.h"
#include "SlotBank.h"
#include "SlotTableModel.h"

namespace kelvo {

class LoadDataWindowController;

/// The state of both transfers at one moment.
struct TransferState {
    PointBuffer irdatabuff{};      ///< 24-bit points of the IR that is being sent
    std::uint8_t IRTick = 0;       ///< 0 idle, 1 to 4 the packet being sent
    bool isInportIR = false;       ///< set by the first IR import, never cleared
    NameBuffer SendIRFileName{};   ///< zeros after its end
    PointBuffer ampdatabuff{};     ///< unused: an amp model's words come from AmpPiontBuff
    std::uint8_t AMPTick = 0;      ///< 0 idle, 1 to 5 the packet being sent; stays 5 after a finished transfer
    bool isInportAMP = false;      ///< set by the first AMP import, never cleared
    NameBuffer SendAMPFileName{};  ///< zeros after its end
    std::int64_t selectRow = 0;    ///< the slot, shared by both kinds: an import redirects a running transfer
    TransferProgress IRProgress;
    TransferProgress AMPProgress;
};

/// The one controller: main window, slot tables, start-up, imports, deletion, and the answers of the device.
///
/// Main thread, except CMD_CallBack (receive thread) and exitApp (any thread).
class KelvoAppDelegate final : public AppClass, public SlotTableDataSource, public ImportTarget, public Outlets {
public:
    /// `manager` outlives the controller. Builds the windows; nothing is shown or started yet.
    KelvoAppDelegate(HidManager& manager, AppServices services);

    /// Ends both worker threads. Only tests get here: the program ends through exit or exitApp.
    ~KelvoAppDelegate() override;

    KelvoAppDelegate(const KelvoAppDelegate&) = delete;
    KelvoAppDelegate& operator=(const KelvoAppDelegate&) = delete;

    /// The start-up sequence. Blocks for two seconds, then until the device has reported all its data, then for one
    /// second more; events are served while the loading window runs. Then the main window is enabled.
    void applicationDidFinishLaunching();

    /// Ends the process at once with status 0.
    void exit();

    void exitApp() override;
    void CMD_CallBack(FrameView frame) override;

    void importIrButtonClick();
    void importAMPButtonClick();
    void deleteCAB();

    int numberOfRowsInTableView(int) const override { return kTableRows; }
    QString tableView_objectValueForTableColumn_row(int tag, int column, int row) const override;
    bool tableView_shouldEditTableColumn_row(int, int, int) const override { return false; }
    /// Does nothing: the selection is read when an action needs it.
    void tableViewSelectionDidChange(int) override {}
    RowStatus rowStatus(int tag, int row) const override;

    bool importFile(SlotBank& bank, int row, const QUrl& file) override;
    void slotsChanged(SlotBank& bank) override;
    void transferFinished(SlotBank& bank, int row) override;

    const LoadDataWindowController& loadWindow() const { return *loadWindow_; }
    void setLoadWindow(std::unique_ptr<LoadDataWindowController> loadWindow);

    // Getters and setters for any thread. The lists are copies.
    std::uint8_t PRESET_PARAValue() const { return PRESET_PARAValue_; }
    void setPRESET_PARAValue(std::uint8_t value) { PRESET_PARAValue_ = value; }
    std::uint8_t IRNameValue() const { return IRNameValue_; }
    void setIRNameValue(std::uint8_t value) { IRNameValue_ = value; }
    std::uint8_t AMPNameValue() const { return AMPNameValue_; }
    void setAMPNameValue(std::uint8_t value) { AMPNameValue_ = value; }
    QStringList IRNameArr() const { return cab_.labels.all(); }
    void setIRNameArr(const QStringList& labels) { cab_.labels.setAll(labels); }
    QStringList AMPNameArr() const { return amp_.labels.all(); }
    void setAMPNameArr(const QStringList& labels) { amp_.labels.setAll(labels); }

    /// A copy as it is now. Any thread.
    TransferState transferState() const;

private:
    void attachBank(SlotBank& bank, SlotTableView& table, QPushButton& import, QPushButton& previous, QPushButton& next,
                    QLabel& fileLine);
    void showMainWindow();
    void setNotice(const QString& notice);
    void loadFromDevice();
    void enableMainWindow();
    QWidget& openLoadWindow();
    void OpenHidDeviceThread();
    void OpenReceiveThread();
    void showNoDeviceAlert(const QString& button);

    void receiveCabNames(FrameView frame);
    void receiveAmpNames(FrameView frame);
    void receivePresetPara(FrameView frame);
    void receiveAcknowledgement(SlotBank& bank, std::uint8_t phase);

    const SlotBank* bankOf(int tag) const;
    void chooseFile(SlotBank& bank);
    void copyFiles(const SlotBank& bank) const;
    void sendDeletion();

    // The caller of these holds transferMutex_.
    void sendIRData() { sendPacket(cab_); }
    void sendAMPData() { sendPacket(amp_); }
    void sendPacket(SlotBank& bank);
    /// The name packet fills a slot that was cleared during its transfer, so the label returns. Returns whether it has
    /// changed.
    bool relabel(SlotBank& bank);

    HidManager& manager_;
    AppServices services_;

    /// Held while a packet is built and sent, so that packets, labels and progress change in the order of the wire.
    mutable std::mutex transferMutex_;
    std::int64_t selectRow_ = 0;

    std::atomic<std::uint8_t> PRESET_PARAValue_ = 0;
    std::atomic<std::uint8_t> IRNameValue_ = 0;  // these two are not used
    std::atomic<std::uint8_t> AMPNameValue_ = 0;

    std::unique_ptr<CloseActionWindow> interface_;
    SlotBank cab_;
    SlotBank amp_;
    FolderReaders readers_;
    ImportQueue queue_{*this, readers_, {&cab_, &amp_}};
    std::uint32_t transfers_ = 0;  // begun so far

    // Guards the pointer and the progress that arrived before there was a bar, against the receive thread.
    std::mutex loadWindowMutex_;
    std::unique_ptr<LoadDataWindowController> loadWindow_;
    double earlyProgress_ = 0.0;

    std::jthread hidThread_;
    std::jthread receiveThread_;
};

}  // namespace kelvo
