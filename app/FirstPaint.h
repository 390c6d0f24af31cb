#pragma once

class QWidget;

namespace kelvo {

/// Shows the window and serves events until it has been painted, or for a second at most where the desktop never
/// exposes it. The user's input is left for later. Main thread.
void showUntilPainted(QWidget& window);

}  // namespace kelvo
