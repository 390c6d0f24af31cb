#pragma once

namespace kelvo {

/// Makes every SBProgressBar accessible: role progress bar, read-only value in percent from 0 to 100. One call per
/// process is enough; more are harmless. Main thread.
void installProgressBarAccessibility();

/// The value in percent, rounded as "%.0f" does.
int progressPercent(double value);

}  // namespace kelvo
