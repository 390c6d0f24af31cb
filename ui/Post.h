#pragma once

#include <QPointer>
#include <functional>

class QObject;

namespace kelvo {

/// Runs `work` on the main thread from its event loop, later and in the order of the calls; never if `context`, an
/// object of the main thread, is gone by then. Any thread, once the application object exists.
void post(const QPointer<QObject>& context, std::function<void()> work);

}  // namespace kelvo
