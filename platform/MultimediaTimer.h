// The periodic source that drives a device's block cycle, on a real clock and a thread of its own.
//
// The period runs from the end of one tick to the start of the next, so a slow tick cannot pile up others and
// the handler is never re-entered. A device with a thread of its own derives from this and answers the same
// questions about that thread.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace vonta {

// What a timer calls. Owned by whoever installs it; must outlive the timer's Stop.
class TickHandler {
public:
    virtual ~TickHandler() = default;
    virtual bool OnTick() = 0;   // true asks the timer to end; on the timer's thread
};

class MultimediaTimer {
public:
    MultimediaTimer() = default;
    MultimediaTimer(const MultimediaTimer&) = delete;
    MultimediaTimer& operator=(const MultimediaTimer&) = delete;
    virtual ~MultimediaTimer();                                  // stops first

    virtual void Init(TickHandler* handler, int periodMs);       // stores both; nothing runs yet
    virtual void Start(int periodMs);                            // does nothing while the timer runs
    virtual void Stop();                                         // waits for a running OnTick; never from within it
    virtual bool IsRunning() const;

private:
    void Run();

    TickHandler* handler_ = nullptr;
    int periodMs_ = 10;
    std::thread thread_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool running_ = false;        // guarded by mutex_, as is stopAsked_
    bool stopAsked_ = false;
};

}  // namespace vonta
