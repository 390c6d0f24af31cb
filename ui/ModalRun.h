#pragma once

class QWidget;

namespace kelvo {

/// Shows the window, blocks all other windows of the application and serves events until stopModal. Main thread.
void runModalForWindow(QWidget& window);

/// Makes the innermost runModalForWindow return; without one it does nothing. The window's visibility is the caller's
/// business. Main thread.
void stopModal();

}  // namespace kelvo
