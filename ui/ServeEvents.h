#pragma once

class QWidget;

namespace kelvo {

/// Shows the window, blocks all other windows of the application and serves events until stopModal. Main thread.
void runModalForWindow(QWidget& window);

/// Makes the innermost runModalForWindow return; without one it does nothing. It does not hide
/// the window. Main thread.
void stopModal();

/// Shows the window and serves events until it has been painted, or for a second at most where the desktop never
/// exposes it. The user's input is left for later. Main thread.
void showUntilPainted(QWidget& window);

/// The same until the window, which is shown, is the active one, for a fifth of a second at most. A window that covered
/// it has then left the screen, and what it covered has been painted.
void serveUntilActive(QWidget& window);

}  // namespace kelvo
