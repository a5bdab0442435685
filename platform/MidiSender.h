// Carries short messages from the audio thread to a port whose sending may wait, on a thread of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <thread>

namespace vonta {

class MidiSender {
public:
    using Write = std::function<void(std::uint32_t message)>;

    static constexpr std::size_t kCapacity = 4096;  // messages; two full queues of an output

    // `write` runs on the sender's thread and may wait. Throws std::system_error if there can be no thread.
    explicit MidiSender(Write write);
    // Lets `write` take what was sent, for up to a second. A `write` that hangs longer is left to itself with all that
    // it holds, so that a port that is stuck cannot keep the program from ending.
    ~MidiSender();
    MidiSender(const MidiSender&) = delete;
    MidiSender& operator=(const MidiSender&) = delete;

    // One thread at a time, which this never holds up. False if kCapacity messages wait.
    bool Send(std::uint32_t message);

private:
    struct Shared;

    std::shared_ptr<Shared> shared_;               // with the thread, which may be the last to let go
    std::future<void> ended_;
    std::thread thread_;
};

}  // namespace vonta
