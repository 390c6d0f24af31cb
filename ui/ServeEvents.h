#pragma once

class QWidget;

namespace kelvo {

/// Shows the window, blocks all other windows of the application and serves events until stopModal. Main thread.
void runModalForWindow(QWidget& window);

/// Makes the innermost runModalForWindow return, if there is one. Does not hide the window. Main thread.
void stopModal();

/// Shows the window and serves events until it has been painted, at most for one second, since the desktop may never
/// expose it. User input stays queued. Main thread.
void showUntilPainted(QWidget& window);

/// Serves events until the window, which is visible, is the active one, at most for 200 ms. A window that covered it is
/// then gone, and the covered area has been painted.
void serveUntilActive(QWidget& window);

}  // namespace kelvo
