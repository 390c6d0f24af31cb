#include "LoadDataWindowController.h"

#include "CloseActionWindow.h"
#include "SBProgressBar.h"
#include "ServeEvents.h"
#include "ui_LoadDataWindowController.h"

namespace kelvo {

LoadDataWindowController::LoadDataWindowController() = default;

LoadDataWindowController::LoadDataWindowController(ExitProcess exitProcess)
    : exitProcess_(std::move(exitProcess)), window_(std::make_unique<CloseActionWindow>()) {
    Ui::LoadDataWindowController interface;
    interface.setupUi(window_.get());
    progressBar_ = interface.progressBar;
    loadDataLabel_ = interface.loadDataLabel;
    windowDidLoad();
}

LoadDataWindowController::~LoadDataWindowController() = default;

QWidget* LoadDataWindowController::window() const {
    return window_.get();
}

void LoadDataWindowController::windowDidLoad() {
    window_->setCloseAction([this] { exit(); });
    window_->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    window_->setFixedSize(window_->sizeHint());
    timer_ = std::make_unique<QTimer>();
    QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), [this] { tick(); });
    // A coarse timer may fire early.
    timer_->setTimerType(Qt::PreciseTimer);
    // The first tick comes as soon as events are served.
    timer_->start(0);
}

void LoadDataWindowController::tick() {
    constexpr int kTickMilliseconds = 500;
    timer_->setInterval(kTickMilliseconds);
    const double value = progressBar_->floatValue();
    loadDataLabel_->setText(QString::asprintf("%.0f%%", value * 100.0));
    if (value == 1.0) {
        // Another thread may have stored the value without a new layout so far.
        progressBar_->resizeLayers();
        window_->repaint();
        window_->hide();
        stopModal();
        timer_->stop();
    }
}

void LoadDataWindowController::exit() {
    exitProcess_(0);
}

}  // namespace kelvo
