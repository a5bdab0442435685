// Actions: names under which a function of a registered script is called, by scripts, by the player's messages, and by
// other threads of the program.
#pragma once

#include <list>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "script/binding/ScriptObject.h"
#include "script/host/Event.h"

namespace vonta {

struct Action {
    std::string name, scriptName, functionName;
};

// Records in the order of registration, found by name.
class ActionTable {
public:
    // False if the name was there before; the record has changed all the same.
    bool Register(const std::string& name, const std::string& scriptName, const std::string& functionName);
    const Action* Find(const std::string& name) const;

private:
    std::list<Action> actions_;
    std::map<std::string, Action*, std::less<>> byName_;
};

// Calls made on other threads, which wait until the main thread has served them.
class ActionQueue {
public:
    ~ActionQueue();                                  // lets those who still wait go

    // Any thread but the main one: returns when the action has run.
    void CallAndWait(const std::string& name, ScriptObject* argument);
    // The main thread: runs all that wait, in order, holding the lock. An action may itself end up here.
    void Serve();
    std::size_t Count();                             // of those that wait
    Event& Wake() { return wake_; }

private:
    struct Request {
        Event* done;                                 // the caller's
        std::string name;
        ScriptRef<ScriptObject> argument;
    };

    std::recursive_mutex lock_;
    std::list<Request> requests_;
    Event wake_;
};

// True if the action's function ran to its end. On another thread than the main one it waits until Run has served it,
// answers true, and argument2 is left out.
bool ExecuteActionNow(const std::string& name, ScriptObject* argument1, ScriptObject* argument2);

}  // namespace vonta
