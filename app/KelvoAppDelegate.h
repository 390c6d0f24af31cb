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
#include "SlotTableModel.h"
#include "Slots.h"
#include "TransferPackets.h"
#include "TransferState.h"

namespace kelvo {

class LoadDataWindowController;

/// The number of the first CAB and of the first AMP row in the labels.
inline constexpr int kFirstCabNumber = 27;
inline constexpr int kFirstAmpNumber = 56;

/// The one controller: main window, slot tables, start-up, imports, deletion, and the answers of the device.
///
/// Main thread, but for CMD_CallBack (receive thread) and exitApp (any).
class KelvoAppDelegate final : public AppClass, public SlotTableDataSource, public Outlets {
public:
    /// `manager` outlives the controller. Builds the windows; nothing is shown or started yet.
    KelvoAppDelegate(HidManager& manager, AppServices services);

    /// Ends both worker threads. The program itself never gets here: it leaves through exit or exitApp.
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
    /// Nothing: the selection is read when an action needs it.
    void tableViewSelectionDidChange(int) override {}

    const LoadDataWindowController& loadWindow() const { return *loadWindow_; }
    void setLoadWindow(std::unique_ptr<LoadDataWindowController> loadWindow);

    // Plain get and set like the outlets, on any thread; the lists are copied as they are now.
    std::uint8_t PRESET_PARAValue() const { return PRESET_PARAValue_; }
    void setPRESET_PARAValue(std::uint8_t value) { PRESET_PARAValue_ = value; }
    std::uint8_t IRNameValue() const { return IRNameValue_; }
    void setIRNameValue(std::uint8_t value) { IRNameValue_ = value; }
    std::uint8_t AMPNameValue() const { return AMPNameValue_; }
    void setAMPNameValue(std::uint8_t value) { AMPNameValue_ = value; }
    QStringList IRNameArr() const { return cab_.names.labels(); }
    void setIRNameArr(const QStringList& labels) { cab_.names.setLabels(labels); }
    QStringList AMPNameArr() const { return amp_.names.labels(); }
    void setAMPNameArr(const QStringList& labels) { amp_.names.setLabels(labels); }

    /// A copy as it is now. Any thread.
    TransferState transferState() const;

private:
    void attachTable(SlotTableView& table, Slots& contents, const TransferKind& kind);
    void connectActions();
    void showMainWindow();
    void setNotice(const QString& notice);
    void loadFromDevice();
    void takeOrders();
    QWidget& openLoadWindow();
    void OpenHidDeviceThread();
    void OpenReceiveThread();
    void showNoDeviceAlert(const QString& button);

    void receiveCabNames(FrameView frame);
    void receiveAmpNames(FrameView frame);
    void receivePresetPara(FrameView frame);
    void receiveIRAcknowledgement(FrameView frame);
    void receiveAMPAcknowledgement(FrameView frame);

    void chooseFile(const SlotTableView& table, const QString& fileType, const QString& slot, int firstNumber,
                    ImportQueue::Table& imports);
    // The one road of one file into one row, whoever wants it there. Whether the file was taken.
    bool importIR(int row, const QUrl& url);
    bool importAMP(int row, const QUrl& url);
    void selectTransferRow(int row);
    void sendDeletion();

    // The caller of these holds transferMutex_, so that a row hears of packets in the order of the wire.
    void sendIRData();
    void sendAMPData();
    bool goesOn(const TransferKind& kind, std::uint8_t phase, std::uint8_t& tick, TransferProgress& progress,
                const std::shared_ptr<SlotTableModel>& model);
    void begin(TransferProgress& progress, const std::shared_ptr<SlotTableModel>& model);
    void showTransfer(const std::shared_ptr<SlotTableModel>& model, int acknowledged) const;
    void tellEnd(std::uint64_t transfer, const std::shared_ptr<SlotTableModel>& model);

    HidManager& manager_;
    AppServices services_;

    mutable std::mutex transferMutex_;
    TransferState transfer_;

    std::atomic<std::uint8_t> PRESET_PARAValue_ = 0;
    std::atomic<std::uint8_t> IRNameValue_ = 0;  // nobody uses these two
    std::atomic<std::uint8_t> AMPNameValue_ = 0;

    std::unique_ptr<CloseActionWindow> interface_;
    ImportQueue queue_;
    Slots cab_;
    Slots amp_;
    std::uint64_t transfers_ = 0;  // begun so far

    // Guards the pointer against the receive thread, and the progress that came before there was a bar to show it.
    std::mutex loadWindowMutex_;
    std::unique_ptr<LoadDataWindowController> loadWindow_;
    double earlyProgress_ = 0.0;

    std::jthread hidThread_;
    std::jthread receiveThread_;
};

}  // namespace kelvo
