#include "LockRecord.h"

#include <pthread.h>

namespace kelvo::test {
namespace {

thread_local LockRecord* record = nullptr;

}  // namespace

LockRecord::LockRecord() {
    record = this;
}

LockRecord::~LockRecord() {
    record = nullptr;
}

}  // namespace kelvo::test

// The linker's --wrap=pthread_mutex_lock gives these names.
extern "C" int __real_pthread_mutex_lock(pthread_mutex_t* mutex);   // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {  // NOLINT(bugprone-reserved-identifier)
    if (kelvo::test::record != nullptr) {
        kelvo::test::record->locked.push_back(mutex);
    }
    return __real_pthread_mutex_lock(mutex);
}
