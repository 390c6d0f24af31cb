#include "CloseActionWindow.h"

#include <QCloseEvent>

namespace kelvo {

void CloseActionWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (action_) {
        action_();
    }
}

}  // namespace kelvo
