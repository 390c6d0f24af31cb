#include "Post.h"

#include <QCoreApplication>
#include <mutex>
#include <utility>

namespace kelvo {
namespace {

/// The toolkit's queue already synchronises the threads, but ThreadSanitizer does not see that; it sees this mutex. A
/// suppression would also hide real races in the posted work.
std::mutex order;

}  // namespace

void post(const QPointer<QObject>& context, std::function<void()> work) {
    auto run = [context, work = std::move(work)] {
        { const std::lock_guard posted(order); }
        if (context) {
            work();
        }
    };
    const std::lock_guard lock(order);
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(run), Qt::QueuedConnection);
}

}  // namespace kelvo
