// bare_thread SECONDS: the processor time of a process whose only thread sleeps 10 ms in a loop.

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "ProcessFigures.h"

int main(int argc, char** argv) {
    const std::chrono::seconds seconds(argc > 1 ? std::atoi(argv[1]) : 1);
    std::atomic<bool> done = false;
    std::thread bare([&done] {
        while (!done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    const auto before = kelvo::processorTime();
    std::this_thread::sleep_for(seconds);
    const std::chrono::duration<double, std::milli> used = kelvo::processorTime() - before;
    done = true;
    bare.join();
    std::cout << "{\"idle_ms\": " << used.count() << "}" << std::endl;
}
