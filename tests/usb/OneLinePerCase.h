#pragma once

#include <gtest/gtest.h>

#include <cstdio>

namespace kelvo::test {

/// Prints one line for each case, with its time, and every failure.
class OneLinePerCase : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo& test) override {
        const testing::TestResult& result = *test.result();
        std::printf("%s %6.1f s  %s.%s\n", result.Passed() ? "ok  " : "FAIL",
                    static_cast<double>(result.elapsed_time()) / 1000, test.test_suite_name(), test.name());
        std::fflush(stdout);
    }
    void OnTestPartResult(const testing::TestPartResult& part) override {
        if (part.failed()) {
            std::printf("%s:%d: %s\n", part.file_name() != nullptr ? part.file_name() : "?", part.line_number(),
                        part.message());
        }
    }
};

/// Runs the cases that the command line names. Returns the process's status.
inline int runOneLinePerCase(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
    delete listeners.Release(listeners.default_result_printer());
    listeners.Append(new OneLinePerCase);
    return RUN_ALL_TESTS();
}

}  // namespace kelvo::test
