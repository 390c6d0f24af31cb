#include "ModalRun.h"

#include <QEventLoop>
#include <QWidget>
#include <vector>

namespace kelvo {
namespace {

std::vector<QEventLoop*> running;

}  // namespace

void runModalForWindow(QWidget& window) {
    window.setWindowModality(Qt::ApplicationModal);
    window.show();
    QEventLoop loop;
    running.push_back(&loop);
    loop.exec();
    running.pop_back();
}

void stopModal() {
    if (!running.empty()) {
        running.back()->quit();
    }
}

}  // namespace kelvo
