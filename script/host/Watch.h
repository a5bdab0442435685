// What lets a user end a script whatever it does: a question that the host asks while Lua runs, and a mark that tells
// whether a method of ours is under way. A script that is in neither is inside a library function of Lua itself, which
// nothing can interrupt but the end of the process.
#pragma once

#include <atomic>

struct lua_State;

namespace vonta {

// True once the user wants scripts to end. Asked on the thread that runs scripts, some thousand times a second.
using StopQuestion = bool (*)();

void SetStopQuestion(StopQuestion question);         // null: never
bool StopAsked();
void WatchState(lua_State* L);                       // a stop raises an error in it from now on

// One while a method runs; Lua that a method calls is not in it.
extern std::atomic<bool> g_inMethod;

class InMethod {
public:
    explicit InMethod(bool now = true) : before_(g_inMethod.exchange(now, std::memory_order_relaxed)) {}
    ~InMethod() { g_inMethod.store(before_, std::memory_order_relaxed); }
    InMethod(const InMethod&) = delete;
    InMethod& operator=(const InMethod&) = delete;

private:
    bool before_;
};

}  // namespace vonta
