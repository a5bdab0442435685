// What this process holds at a moment, so that what is left behind shows.
#pragma once

#include <malloc.h>

#include <filesystem>

namespace vonta::test {

struct Leftovers {
    long files = Count("/proc/self/fd"), threads = Count("/proc/self/task");
    std::size_t bytes = mallinfo2().uordblks;        // 0 with a checker that keeps the memory itself

    static long Count(const char* directory) {
        return std::ranges::distance(std::filesystem::directory_iterator(directory), std::filesystem::directory_iterator());
    }
};

inline void ExpectNothingMoreThan(const Leftovers& before) {
    const Leftovers now;
    EXPECT_EQ(now.files, before.files);
    EXPECT_EQ(now.threads, before.threads);
    EXPECT_LT(now.bytes, before.bytes + 100'000);
}

}  // namespace vonta::test
