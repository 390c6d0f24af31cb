#pragma once

#include <vector>

namespace kelvo::test {

/// Notes which mutexes this thread locks while the object lives. One at a time.
class LockRecord {
public:
    LockRecord();
    ~LockRecord();
    LockRecord(const LockRecord&) = delete;
    LockRecord& operator=(const LockRecord&) = delete;

    std::vector<const void*> locked;
};

}  // namespace kelvo::test
