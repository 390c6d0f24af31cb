#include "KelvoAppDelegate.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "CRC.h"
#include "CommandCodes.h"
#include "DataUnpacking.h"
#include "LoadDataWindowController.h"
#include "NSLog.h"
#include "Post.h"
#include "RVHidClass.h"
#include "SBProgressBar.h"
#include "ServeEvents.h"
#include "SlotKinds.h"
#include "SlotTableView.h"
#include "SymbolIcon.h"
#include "ui_MainWindow.h"

namespace kelvo {
namespace {

void center(QWidget& window) {
    const QRect available = window.screen()->availableGeometry();
    const QPoint corner = available.center() - QRect(QPoint(), window.size()).center();
    // If the window is larger than the screen, its upper left corner stays visible.
    window.move(std::max(corner.x(), available.left()), std::max(corner.y(), available.top()));
}

// On Wayland a program cannot place its windows; the compositor centres a transient one above its parent. On X the two
// would be minimised together, which the loading window must not allow.
void belongTo(QWidget& window, const QWidget& owner) {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        window.winId();
        window.windowHandle()->setTransientParent(owner.windowHandle());
    }
}

struct Icons {
    QIcon import;
    QIcon deletion;
};

/// The theme's icons only if it has both: one of the theme's does not match one of ours.
Icons actionIcons() {
    const QString import = QStringLiteral("document-import");
    const QString deletion = QStringLiteral("edit-delete");
    if (QIcon::hasThemeIcon(import) && QIcon::hasThemeIcon(deletion)) {
        return {QIcon::fromTheme(import), QIcon::fromTheme(deletion)};
    }
    return {symbolIcon(Symbol::Import), symbolIcon(Symbol::Delete)};
}

}  // namespace

KelvoAppDelegate::KelvoAppDelegate(HidManager& manager, AppServices services)
    : manager_(manager),
      services_(std::move(services)),
      interface_(std::make_unique<CloseActionWindow>()),
      cab_(kCabSlots),
      amp_(kAmpSlots),
      loadWindow_(std::make_unique<LoadDataWindowController>()) {
    Ui::MainWindow outlets;
    setWindow(*interface_);
    outlets.setupUi(interface_.get());
    setAddIR(*outlets.addIR);
    setDeleteIR(*outlets.deleteIR);
    setAddAMP(*outlets.addAMP);
    setImportIRTableV(*outlets.ImportIRTableV);
    setImportCabTableV(*outlets.ImportCabTableV);
    attachBank(cab_, ImportIRTableV(), addIR(), *outlets.previousIR, *outlets.nextIR, *outlets.fileIR);
    attachBank(amp_, ImportCabTableV(), addAMP(), *outlets.previousAMP, *outlets.nextAMP, *outlets.fileAMP);
    const auto deleteSlot = [this] { deleteCAB(); };
    QObject::connect(&deleteIR(), &QPushButton::clicked, &window(), deleteSlot);
    ImportIRTableV().setKeyAction(Qt::Key_Delete, deleteSlot);
    const Icons icons = actionIcons();
    addIR().setIcon(icons.import);
    addAMP().setIcon(icons.import);
    deleteIR().setIcon(icons.deletion);
    window().setEnabled(false);
}

KelvoAppDelegate::~KelvoAppDelegate() {
    manager_.stop();
    hidThread_ = {};
    receiveThread_ = {};
    AppClassPoint = nullptr;
}

void KelvoAppDelegate::attachBank(SlotBank& bank, SlotTableView& table, QPushButton& import, QPushButton& previous,
                                  QPushButton& next, QLabel& fileLine) {
    bank.table = &table;
    bank.model = std::make_unique<SlotTableModel>(*this, table.tag());
    table.setModel(bank.model.get());
    fileLine.setForegroundRole(QPalette::PlaceholderText);
    bank.steps.emplace(bank, queue_, import, previous, next, fileLine);
    QObject::connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, &window(),
                     [this, tag = table.tag()] { tableViewSelectionDidChange(tag); });

    const auto choose = [this, &bank] { chooseFile(bank); };
    QObject::connect(&import, &QPushButton::clicked, &window(), choose);
    QObject::connect(&table, &QAbstractItemView::doubleClicked, &window(), choose);
    table.setKeyAction(Qt::Key_Return, choose);
    table.setKeyAction(Qt::Key_Enter, choose);
    table.setKeyAction(QKeySequence::Copy, [this, &bank] { copyFiles(bank); });
    import.setToolTip(
        QObject::tr("%1. Also with Return, a double click, or by dropping files on a row").arg(bank.kind.accepted));

    table.setFileAction(bank.kind.fileType,
                        [this, &bank](int row, const QList<QUrl>& files) { queue_.importSet(bank, row, files); });
    table.setFileJudge([this, &bank](const QList<QUrl>& files, const SlotTableView::Verdict& verdict) {
        const auto read = [files, verdict, verdicts = bank.verdicts](const std::stop_token& stop) {
            return [verdict, accepted = acceptedFiles(files, kTableRows, *verdicts, stop)] { verdict(accepted); };
        };
        return readers_.start(folderOf(files.first()), read);
    });
}

void KelvoAppDelegate::applicationDidFinishLaunching() {
    AppClassPoint = this;
    showMainWindow();
    hidThread_ = std::jthread([this] { OpenHidDeviceThread(); });
    services_.sleep(2);
    if (isOpenDevice) {
        loadFromDevice();
    } else {
        showNoDeviceAlert(QStringLiteral("exit"));
    }
}

void KelvoAppDelegate::showMainWindow() {
    window().setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    window().setCloseAction([this] { exit(); });
    setNotice(QObject::tr("Looking for the KR310…"));
    window().adjustSize();
    center(window());
    // The sleep that follows serves no events. Without this the window would stay empty, and the window system would
    // report that it does not respond.
    showUntilPainted(window());
    serveUntilActive(window());
}

void KelvoAppDelegate::setNotice(const QString& notice) {
    ImportIRTableV().setNotice(notice);
    ImportCabTableV().setNotice(notice);
}

void KelvoAppDelegate::loadFromDevice() {
    static std::uint8_t aaaa[8];
    aaaa[0] = kFrameHeader1;
    aaaa[kHeader2Offset] = kFrameHeader2;
    aaaa[kLengthOffset] = 2;
    aaaa[kCommandOffset] = CMD_CONNECT;
    SendUartCmd(aaaa);
    receiveThread_ = std::jthread([this] { OpenReceiveThread(); });
    // The loading window would cover part of the notice.
    setNotice({});
    QWidget& loadingWindow = openLoadWindow();
    belongTo(loadingWindow, window());
    center(loadingWindow);
    runModalForWindow(loadingWindow);
    // Without this the loading window would stay on the screen during the sleep, which serves no events.
    serveUntilActive(window());
    services_.sleep(1);
    // Clicks made during the sleep were on disabled buttons and must not reach enabled ones. They are discarded before
    // the names appear, so that the names are not painted as disabled.
    QCoreApplication::processEvents();
    NSLog(IRNameArr().join(QStringLiteral(", ")).toStdString());
    cab_.model->reloadData();
    amp_.model->reloadData();
    enableMainWindow();
}

void KelvoAppDelegate::enableMainWindow() {
    window().setEnabled(true);
    ImportIRTableV().selectRow(0);
    ImportCabTableV().selectRow(0);
    ImportIRTableV().setFocus();
}

QWidget& KelvoAppDelegate::openLoadWindow() {
    auto loaded = std::make_unique<LoadDataWindowController>([this](int) { exit(); });
    const std::lock_guard lock(loadWindowMutex_);
    loadWindow_ = std::move(loaded);
    loadWindow_->progressBar()->setFloatValue(earlyProgress_);
    return *loadWindow_->window();
}

void KelvoAppDelegate::OpenHidDeviceThread() {
    OpenHidDevice(manager_, quitWindow);
}

void KelvoAppDelegate::OpenReceiveThread() {
    ReceiveThread();
}

void KelvoAppDelegate::exit() {
    // The HID thread closes the node; it never blocks. A write that is stuck in the kernel would keep the node open
    // after the end.
    manager_.stop();
    hidThread_ = {};
    services_.exitProcess(0);
}

void KelvoAppDelegate::exitApp() {
    post(&window(), [this] { showNoDeviceAlert(QStringLiteral("Exit")); });
}

void KelvoAppDelegate::showNoDeviceAlert(const QString& button) {
    setNotice({});
    const Alert alert{.messageText = QStringLiteral("No device connected. Please connected your KR310"),
                      .buttons = {button},
                      .style = AlertStyle::Critical,
                      .informativeText = QString::fromStdString(unusableDevice())};
    services_.beginSheetModal(window(), alert, [this](int) { exit(); });
}

void KelvoAppDelegate::setLoadWindow(std::unique_ptr<LoadDataWindowController> loadWindow) {
    const std::lock_guard lock(loadWindowMutex_);
    loadWindow_ = std::move(loadWindow);
}

TransferState KelvoAppDelegate::transferState() const {
    const std::lock_guard lock(transferMutex_);
    return {.irdatabuff = cab_.transfer.words(),
            .IRTick = cab_.transfer.tick(),
            .isInportIR = cab_.isInport,
            .SendIRFileName = cab_.transfer.name(),
            .AMPTick = amp_.transfer.tick(),
            .isInportAMP = amp_.isInport,
            .SendAMPFileName = amp_.transfer.name(),
            .selectRow = selectRow_,
            .IRProgress = cab_.transfer.progress(),
            .AMPProgress = amp_.transfer.progress()};
}

}  // namespace kelvo
