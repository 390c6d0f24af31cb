#pragma once

#include <QPointer>
#include <functional>

class QObject;

namespace kelvo {

/// Runs `work` later from the main thread's event loop, in the order of the calls. Does not run it if `context`, an
/// object of the main thread, has been destroyed by then. Any thread, once the application object exists.
void post(const QPointer<QObject>& context, std::function<void()> work);

}  // namespace kelvo
