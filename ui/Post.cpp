#include "Post.h"

#include <QCoreApplication>
#include <atomic>
#include <utility>

namespace kelvo {
namespace {

/// The toolkit's queue orders the threads already, but ThreadSanitizer cannot see into the toolkit. This it sees; a
/// suppression would hide every real race of the posted work, too.
std::atomic<unsigned> posted;

}  // namespace

void post(const QPointer<QObject>& context, std::function<void()> work) {
    const auto run = [context, work = std::move(work)] {
        posted.load(std::memory_order_acquire);
        if (context) {
            work();
        }
    };
    posted.fetch_add(1, std::memory_order_release);
    QMetaObject::invokeMethod(QCoreApplication::instance(), run, Qt::QueuedConnection);
}

}  // namespace kelvo
