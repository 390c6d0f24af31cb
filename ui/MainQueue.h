#pragma once

#include <functional>

namespace kelvo {

/// Runs `work` on the main thread from its event loop, later and in the order of the calls. Any thread, once the
/// application object exists. Work that is still queued when the event loop has ended is never run.
void dispatchMain(std::function<void()> work);

}  // namespace kelvo
