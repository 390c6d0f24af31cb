#pragma once

namespace kelvo {

/// Presents every SBProgressBar to assistive tools: role progress bar, value in whole percent from 0 to 100, read only.
/// Once per process is enough, more do no harm. Main thread.
void installProgressBarAccessibility();

/// The value in whole percent, rounded as "%.0f" does.
int progressPercent(double value);

}  // namespace kelvo
