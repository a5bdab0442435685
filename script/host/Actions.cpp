#include "script/host/Actions.h"

#include "script/Scripting.h"
#include "script/host/Reporting.h"
#include "script/host/ScriptInstance.h"

namespace vonta {

bool ActionTable::Register(const std::string& name, const std::string& scriptName, const std::string& functionName) {
    const auto [place, isNew] = byName_.try_emplace(name, nullptr);
    if (isNew) place->second = &actions_.emplace_back();
    *place->second = {name, scriptName, functionName};
    return isNew;
}

const Action* ActionTable::Find(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
}

ActionQueue::~ActionQueue() {
    const std::lock_guard lock(lock_);
    for (Request& request : requests_) request.done->Signal();
}

void ActionQueue::CallAndWait(const std::string& name, ScriptObject* argument) {
    Event done;
    {
        const std::lock_guard lock(lock_);
        requests_.push_back({&done, name, ScriptRef<ScriptObject>::Share(argument)});
    }
    wake_.Signal();
    done.Wait();
}

std::size_t ActionQueue::Count() {
    const std::lock_guard lock(lock_);
    return requests_.size();
}

// Taken out one by one: a loop that an action runs goes on with the next.
void ActionQueue::Serve() {
    const std::lock_guard lock(lock_);
    while (!requests_.empty()) {
        Request request = std::move(requests_.front());
        requests_.pop_front();
        ExecuteActionNow(request.name, request.argument.Get(), nullptr);
        request.argument = {};
        request.done->Signal();
    }
}

bool ExecuteActionNow(const std::string& name, ScriptObject* argument1, ScriptObject* argument2) {
    Scripting* const scripting = Scripting::Current();
    if (!scripting) return false;
    if (!scripting->IsMainThread()) {
        scripting->Queue().CallAndWait(name, argument1);
        return true;
    }
    const Action* const action = scripting->Actions().Find(name);
    if (!action) {
        Print("Action(%s) not registered, can't be executed", name.c_str());
        return false;
    }
    ScriptInstance* const instance = scripting->FindScript(action->scriptName);
    if (!instance) return false;
    // A copy: the function may register the action anew.
    const bool done = instance->Execute(std::string(action->functionName).c_str(), argument1, argument2);
    scripting->DropAbandoned();
    return done;
}

}  // namespace vonta
