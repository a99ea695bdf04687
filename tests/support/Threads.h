// Work that several threads do at the same time.
#pragma once

#include <functional>
#include <thread>
#include <vector>

// Calls `work` with 0, 1 .. count - 1, each in a thread of its own, and waits for all of them.
inline void InThreads(int count, const std::function<void(int)>& work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back(work, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
