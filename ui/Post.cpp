#include "Post.h"

#include <QCoreApplication>
#include <mutex>
#include <utility>

namespace kelvo {
namespace {

/// The toolkit's queue orders the threads already, but ThreadSanitizer cannot see into the toolkit. This lock it sees.
/// A suppression would hide every real race of the posted work, too.
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
