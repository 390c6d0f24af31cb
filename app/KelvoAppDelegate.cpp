#include "KelvoAppDelegate.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <initializer_list>
#include <utility>

#include "CRC.h"
#include "ChosenFile.h"
#include "CommandCodes.h"
#include "DataUnpacking.h"
#include "Judge.h"
#include "LoadDataWindowController.h"
#include "MainQueue.h"
#include "NSLog.h"
#include "RVHidClass.h"
#include "SBProgressBar.h"
#include "ServeEvents.h"
#include "SlotTableView.h"
#include "SymbolIcon.h"
#include "ui_MainWindow.h"

namespace kelvo {
namespace {

void center(QWidget& window) {
    const QRect available = window.screen()->availableGeometry();
    window.move(available.center() - QRect(QPoint(), window.size()).center());
}

// On Wayland a program cannot place its windows: the window system centres one above that to which it belongs. On X
// both would be minimised together, which the loading window does not let happen.
void belongTo(QWidget& window, const QWidget& owner) {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        window.winId();
        window.windowHandle()->setTransientParent(owner.windowHandle());
    }
}

// Whether an import would take the file.
bool isIRFile(const QUrl& url) {
    return judgeIRFile(irPath(url)).isAccepted();
}
bool isAmpFile(const QUrl& url) {
    return judgeAmpFile(ampPath(url)).isAccepted();
}

}  // namespace

KelvoAppDelegate::KelvoAppDelegate(HidManager& manager, AppServices services)
    : manager_(manager),
      services_(std::move(services)),
      interface_(std::make_unique<CloseActionWindow>()),
      cab_{SlotBank(kFirstCabNumber),
           {kIRFileType, isIRFile, [this](int row, const QUrl& url) { return importIR(row, url); }}},
      amp_{SlotBank(kFirstAmpNumber),
           {kAmpFileType, isAmpFile, [this](int row, const QUrl& url) { return importAMP(row, url); }}},
      loadWindow_(std::make_unique<LoadDataWindowController>()) {
    Ui::MainWindow outlets;
    setWindow(*interface_);
    outlets.setupUi(interface_.get());
    setAddIR(*outlets.addIR);
    setDeleteIR(*outlets.deleteIR);
    setAddAMP(*outlets.addAMP);
    setImportIRTableV(*outlets.ImportIRTableV);
    setImportCabTableV(*outlets.ImportCabTableV);
    attachTable(ImportIRTableV(), cab_, kIRTransfer);
    attachTable(ImportCabTableV(), amp_, kAMPTransfer);
    connectActions();
    cab_.steps.emplace(ImportIRTableV(), addIR(), *outlets.previousIR, *outlets.nextIR, queue_, cab_.imports);
    amp_.steps.emplace(ImportCabTableV(), addAMP(), *outlets.previousAMP, *outlets.nextAMP, queue_, amp_.imports);
    window().setEnabled(false);
}

KelvoAppDelegate::~KelvoAppDelegate() {
    manager_.stop();
    hidThread_ = {};
    receiveThread_ = {};
    AppClassPoint = nullptr;
}

void KelvoAppDelegate::connectActions() {
    const auto connectAction = [this](QPushButton& button, const QString& icon, Symbol standIn, SlotTableView& table,
                                      std::initializer_list<Qt::Key> keys, void (KelvoAppDelegate::*act)()) {
        button.setIcon(QIcon::fromTheme(icon, symbolIcon(standIn)));
        QObject::connect(&button, &QPushButton::clicked, &window(), [this, act] { (this->*act)(); });
        for (const Qt::Key key : keys) {
            table.setKeyAction(key, [this, act] { (this->*act)(); });
        }
    };
    const QString import = QStringLiteral("document-import");
    connectAction(addIR(), import, Symbol::Import, ImportIRTableV(), {Qt::Key_Return, Qt::Key_Enter},
                  &KelvoAppDelegate::importIrButtonClick);
    connectAction(addAMP(), import, Symbol::Import, ImportCabTableV(), {Qt::Key_Return, Qt::Key_Enter},
                  &KelvoAppDelegate::importAMPButtonClick);
    connectAction(deleteIR(), QStringLiteral("edit-delete"), Symbol::Delete, ImportIRTableV(), {Qt::Key_Delete},
                  &KelvoAppDelegate::deleteCAB);
}

void KelvoAppDelegate::attachTable(SlotTableView& table, Slots& contents, const TransferKind& kind) {
    ImportQueue::Table& imports = contents.imports;
    contents.model = std::make_shared<SlotTableModel>(*this, table.tag(), kind.namePhase);
    table.setModel(contents.model.get());
    table.setDropAction(imports.fileType, imports.isGood, [this, &table, &imports](const QList<QUrl>& files) {
        queue_.importNow(imports, table.selectedRow(), files);
    });
    imports.showWaiting = [&contents](const QList<int>& rows) { contents.model->showWaiting(rows); };
    QObject::connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, &window(),
                     [this, tag = table.tag()] { tableViewSelectionDidChange(tag); });
}

void KelvoAppDelegate::applicationDidFinishLaunching() {
    AppClassPoint = this;
    showMainWindow();
    hidThread_ = std::jthread([this] { OpenHidDeviceThread(); });
    services_.sleep(2);
    if (isOpenDevice) {
        setNotice(QObject::tr("Reading the slot names…"));
        loadFromDevice();
    } else {
        setNotice({});
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
    // The sleep that follows serves no events: without this the user would look at an empty frame, and the window
    // system would wait for the answers that it wants from a new active window.
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
    QWidget& loadingWindow = openLoadWindow();
    belongTo(loadingWindow, window());
    center(loadingWindow);
    runModalForWindow(loadingWindow);
    // The sleep that follows serves no events: without this the loading window would still stand there.
    serveUntilActive(window());
    services_.sleep(1);
    // What was clicked during the sleep was clicked on dead buttons: it must not reach live ones. Before the names are
    // there, so that they are not painted as dead.
    QCoreApplication::processEvents();
    NSLog(IRNameArr().join(QStringLiteral(", ")).toStdString());
    cab_.model->reloadData();
    amp_.model->reloadData();
    takeOrders();
}

void KelvoAppDelegate::takeOrders() {
    setNotice({});
    window().setEnabled(true);
    ImportIRTableV().selectRow(0);
    ImportCabTableV().selectRow(0);
    ImportIRTableV().setFocus();
}

QWidget& KelvoAppDelegate::openLoadWindow() {
    auto loaded = std::make_unique<LoadDataWindowController>(services_.exitProcess);
    const std::lock_guard lock(loadWindowMutex_);
    loadWindow_ = std::move(loaded);
    loadWindow_->progressBar()->setFloatValue(earlyProgress_);
    return *loadWindow_->window();
}

void KelvoAppDelegate::OpenHidDeviceThread() {
    OpenHidDevice(manager_);
}

void KelvoAppDelegate::OpenReceiveThread() {
    ReceiveThread();
}

void KelvoAppDelegate::exit() {
    services_.exitProcess(0);
}

void KelvoAppDelegate::exitApp() {
    dispatchMain([this] {
        // Only a controller that is still the application may answer; the work may have waited.
        if (AppClassPoint == this) {
            showNoDeviceAlert(QStringLiteral("Exit"));
        }
    });
}

void KelvoAppDelegate::showNoDeviceAlert(const QString& button) {
    const Alert alert{.messageText = QStringLiteral("No device connected. Please connected your KR310"),
                      .buttons = {button},
                      .style = AlertStyle::Critical};
    services_.beginSheetModal(window(), alert, [this](int) { exit(); });
}

void KelvoAppDelegate::setLoadWindow(std::unique_ptr<LoadDataWindowController> loadWindow) {
    const std::lock_guard lock(loadWindowMutex_);
    loadWindow_ = std::move(loadWindow);
}

TransferState KelvoAppDelegate::transferState() const {
    const std::lock_guard lock(transferMutex_);
    return transfer_;
}

}  // namespace kelvo
