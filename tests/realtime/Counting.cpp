#include "tests/realtime/Counting.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

thread_local bool g_counting = false;
thread_local int g_allocations = 0, g_locks = 0;

void Count(int& counter) { if (g_counting) ++counter; }

using LockFunction = int (*)(pthread_mutex_t*);
LockFunction RealLock() {
    static const auto real = reinterpret_cast<LockFunction>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    return real;
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) { Count(g_allocations); return __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) { Count(g_allocations); return __libc_calloc(count, size); }
void* realloc(void* old, std::size_t size) { Count(g_allocations); return __libc_realloc(old, size); }
void* aligned_alloc(std::size_t alignment, std::size_t size) { Count(g_allocations); return __libc_memalign(alignment, size); }
void free(void* block) { if (block) Count(g_allocations); __libc_free(block); }
int pthread_mutex_lock(pthread_mutex_t* mutex) { Count(g_locks); return RealLock()(mutex); }
}

namespace vonta {
namespace {

// From here on the kernel kills the process at any call but these; the clock needs one where the machine has no faster
// way to it.
bool ForbidSystemCalls() {
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clock_gettime, 3, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_write, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof rules / sizeof rules[0], rules};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace

Counts CountDuring(const std::function<void()>& work) {
    g_allocations = g_locks = 0;
    g_counting = true;
    work();
    g_counting = false;
    return {g_allocations, g_locks};
}

// In a process of its own, which ends with the result that it writes.
void ExpectNoSystemCall(const std::function<std::function<void()>()>& prepare) {
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const std::function<void()> work = prepare();
        char done = 0;
        if (ForbidSystemCalls()) {
            work();
            done = 1;
        }
        const auto written = write(channel[1], &done, 1);
        syscall(SYS_exit_group, written == 1 ? 0 : 1);
    }
    close(channel[1]);
    char done = 0;
    EXPECT_EQ(read(channel[0], &done, 1), 1) << "killed at a system call";
    EXPECT_EQ(done, 1);
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
}

}  // namespace vonta
