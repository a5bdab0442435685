// Whether a JACK server answers, and whether it still does: the MIDI library does not tell, and waits for ever for one
// that has gone.
#pragma once

#include <atomic>
#include <memory>

struct _jack_client;

namespace vonta {

// A connection without ports, which no view of the server's graph shows.
class JackServer {
public:
    // Null if libjack or the server is not there. Starts no server.
    static std::shared_ptr<const JackServer> Connect();
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    bool Answers() const { return !gone_.load(std::memory_order_relaxed); }

private:
    JackServer() = default;

    _jack_client* client_ = nullptr;
    std::atomic<bool> gone_{false};
};

}  // namespace vonta
