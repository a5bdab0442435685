// What the main loop of scripts waits on and keeps up to date. The room above that draws windows has one of its own;
// without it there are none.
#pragma once

namespace vonta {

// What Run can be woken by.
class RunEvents {
public:
    virtual ~RunEvents() = default;
    // Until a request of another thread or a message of the player has come in, `ms` milliseconds at most.
    virtual bool Wait(int ms) = 0;
};

class WindowManager {
public:
    virtual ~WindowManager() = default;
    virtual void Wait(RunEvents& events) { events.Wait(kIdleMs); }
    virtual void Update() {}

private:
    static constexpr int kIdleMs = 100;              // after which a Ctrl+C is seen
};

}  // namespace vonta
