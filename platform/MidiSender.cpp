#include "platform/MidiSender.h"

#include <semaphore.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <utility>

namespace vonta {
namespace {
constexpr std::chrono::seconds kFarewell{1};
}

// One writer, one reader. `posted` counts the messages written and not yet taken, and one more for the end.
struct MidiSender::Shared {
    explicit Shared(Write w) : write(std::move(w)) { sem_init(&posted, 0, 0); }
    ~Shared() { sem_destroy(&posted); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    void Run() {
        for (;;) {
            while (sem_wait(&posted) != 0 && errno == EINTR) {}
            const std::uint32_t at = readIndex.load(std::memory_order_relaxed);
            if (at == writeIndex.load(std::memory_order_acquire)) return;   // the post without a message: the end
            const std::uint32_t message = ring[at % kCapacity];
            readIndex.store(at + 1, std::memory_order_release);
            write(message);
        }
    }

    Write write;
    std::array<std::uint32_t, kCapacity> ring{};
    std::atomic<std::uint32_t> writeIndex{0}, readIndex{0};   // never wrapped; their difference is what waits
    sem_t posted;
};

MidiSender::MidiSender(Write write) : shared_(std::make_shared<Shared>(std::move(write))) {
    std::packaged_task<void()> run([shared = shared_] { shared->Run(); });
    ended_ = run.get_future();
    thread_ = std::thread(std::move(run));
}

MidiSender::~MidiSender() {
    sem_post(&shared_->posted);
    if (ended_.wait_for(kFarewell) == std::future_status::ready)
        thread_.join();
    else
        thread_.detach();
}

bool MidiSender::Send(std::uint32_t message) {
    const std::uint32_t at = shared_->writeIndex.load(std::memory_order_relaxed);
    if (at - shared_->readIndex.load(std::memory_order_acquire) == kCapacity) return false;
    shared_->ring[at % kCapacity] = message;
    shared_->writeIndex.store(at + 1, std::memory_order_release);
    sem_post(&shared_->posted);
    return true;
}

}  // namespace vonta
