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

#include "AMPFile.h"
#include "CRC.h"
#include "ChosenFile.h"
#include "CommandCodes.h"
#include "DataUnpacking.h"
#include "LoadDataWindowController.h"
#include "MainQueue.h"
#include "NSLog.h"
#include "RVHidClass.h"
#include "RVIRFile.h"
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
    RVIRFile file;
    PointBuffer points{};
    return file.OpenFilePath(irPath(url)) && file.GetIRDataBuffer(points);
}
bool isAmpFile(const QUrl& url) {
    PointBuffer words{};
    const auto file = readWholeFile(ampPath(url));
    return file && scanAmp(*file, words).isSound();
}

}  // namespace

KelvoAppDelegate::KelvoAppDelegate(HidManager& manager, AppServices services)
    : manager_(manager),
      services_(std::move(services)),
      interface_(std::make_unique<CloseActionWindow>()),
      window_(interface_.get()),
      cabImports_{kIRFileType, isIRFile, [this](int row, const QUrl& url) { return importIR(row, url); }},
      ampImports_{kAmpFileType, isAmpFile, [this](int row, const QUrl& url) { return importAMP(row, url); }},
      loadWindow_(std::make_unique<LoadDataWindowController>()) {
    Ui::MainWindow outlets;
    outlets.setupUi(window_);
    addIR_ = outlets.addIR;
    deleteIR_ = outlets.deleteIR;
    addAMP_ = outlets.addAMP;
    ImportIRTableV_ = outlets.ImportIRTableV;
    ImportCabTableV_ = outlets.ImportCabTableV;
    cabModel_ = attachTable(*ImportIRTableV_, kIRTransfer);
    ampModel_ = attachTable(*ImportCabTableV_, kAMPTransfer);
    connectActions();
    cabSteps_.emplace(*ImportIRTableV_, *addIR_, *outlets.previousIR, *outlets.nextIR, queue_, cabImports_);
    ampSteps_.emplace(*ImportCabTableV_, *addAMP_, *outlets.previousAMP, *outlets.nextAMP, queue_, ampImports_);
    window_->setEnabled(false);
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
        QObject::connect(&button, &QPushButton::clicked, window_, [this, act] { (this->*act)(); });
        for (const Qt::Key key : keys) {
            table.setKeyAction(key, [this, act] { (this->*act)(); });
        }
    };
    const QString import = QStringLiteral("document-import");
    connectAction(*addIR_, import, Symbol::Import, *ImportIRTableV_, {Qt::Key_Return, Qt::Key_Enter},
                  &KelvoAppDelegate::importIrButtonClick);
    connectAction(*addAMP_, import, Symbol::Import, *ImportCabTableV_, {Qt::Key_Return, Qt::Key_Enter},
                  &KelvoAppDelegate::importAMPButtonClick);
    connectAction(*deleteIR_, QStringLiteral("edit-delete"), Symbol::Delete, *ImportIRTableV_, {Qt::Key_Delete},
                  &KelvoAppDelegate::deleteCAB);
    const auto takeDrops = [this](SlotTableView& table, ImportQueue::Table& imports) {
        table.setDropAction(imports.fileType, imports.isGood, [this, &table, &imports](const QUrl& url) {
            queue_.importNow(imports, table.selectedRow(), url);
        });
    };
    takeDrops(*ImportIRTableV_, cabImports_);
    takeDrops(*ImportCabTableV_, ampImports_);
}

std::shared_ptr<SlotTableModel> KelvoAppDelegate::attachTable(SlotTableView& table, const TransferKind& kind) {
    auto model = std::make_shared<SlotTableModel>(*this, table.tag(), kind.namePhase);
    table.setModel(model.get());
    QObject::connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, window_,
                     [this, tag = table.tag()] { tableViewSelectionDidChange(tag); });
    return model;
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
    window_->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    window_->setCloseAction([this] { exit(); });
    setNotice(QObject::tr("Looking for the KR310…"));
    window_->adjustSize();
    center(*window_);
    // The sleep that follows serves no events: without this the user would look at an empty frame, and the window
    // system would wait for the answers that it wants from a new active window.
    showUntilPainted(*window_);
    serveUntilActive(*window_);
}

void KelvoAppDelegate::setNotice(const QString& notice) {
    ImportIRTableV_->setNotice(notice);
    ImportCabTableV_->setNotice(notice);
}

void KelvoAppDelegate::loadFromDevice() {
    static std::uint8_t aaaa[8];
    aaaa[0] = kFrameHeader1;
    aaaa[kHeader2Offset] = kFrameHeader2;
    aaaa[kLengthOffset] = 2;
    aaaa[kLengthOffset + 1] = 0;
    aaaa[kCommandOffset] = CMD_CONNECT;
    SendUartCmd(aaaa);
    receiveThread_ = std::jthread([this] { OpenReceiveThread(); });
    QWidget& loadingWindow = openLoadWindow();
    belongTo(loadingWindow, *window_);
    center(loadingWindow);
    runModalForWindow(loadingWindow);
    // The sleep that follows serves no events: without this the loading window would still stand there.
    serveUntilActive(*window_);
    services_.sleep(1);
    // What was clicked during the sleep was clicked on dead buttons: it must not reach live ones. Before the names are
    // there, so that they are not painted as dead.
    QCoreApplication::processEvents();
    NSLog(IRNameArr().join(QStringLiteral(", ")).toStdString());
    cabModel_->reloadData();
    ampModel_->reloadData();
    takeOrders();
}

void KelvoAppDelegate::takeOrders() {
    setNotice({});
    window_->setEnabled(true);
    ImportIRTableV_->selectRow(0);
    ImportCabTableV_->selectRow(0);
    ImportIRTableV_->setFocus();
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
    services_.beginSheetModal(*window_, alert, [this](int) { exit(); });
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
