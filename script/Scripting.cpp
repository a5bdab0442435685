#include "script/Scripting.h"

#include <algorithm>
#include <utility>

#include "script/classes/VTDebug.h"
#include "script/classes/VTDictionary.h"
#include "script/classes/VTScript.h"
#include "script/host/Reporting.h"
#include "script/host/ScriptInstance.h"
#include "script/song/ScriptPlayer.h"

namespace vonta {
namespace {

std::atomic<Scripting*> g_current{nullptr};

// The queue's event and the player's are of different kinds: while there is a player its event is the one that is
// waited on, and the other is looked at every few milliseconds.
class TheRunEvents final : public RunEvents {
public:
    TheRunEvents(Event& wake, ScriptPlayer& player) : wake_(wake), player_(player) {}

    bool Wait(int ms) override {
        SndPlayer* const player = player_.Get();
        if (!player) return wake_.WaitFor(ms);
        for (; ms > 0; ms -= kSliceMs)
            if (player->GetPositionNotice().Wait(kSliceMs) || wake_.WaitFor(0)) return true;
        return false;
    }

private:
    static constexpr int kSliceMs = 5;

    Event& wake_;
    ScriptPlayer& player_;
};

}  // namespace

Scripting::Scripting(ScriptingOptions options)
    : options_(std::move(options)), player_(std::make_unique<ScriptPlayer>(options_.devices, options_.midi)),
      sink_(std::make_unique<HookSink>(options_.print)) {
    g_current = this;
    SetStopQuestion(options_.stop);
    SetOutputSink(sink_.get());
}

Scripting::~Scripting() {
    for (NamedScript& entry : scripts_)
        if (ScriptInstance* const instance = entry.script->Instance()) abandoned_.push_back(instance);
    // Their states go first: collecting what they hold may still need all the rest.
    for (ScriptInstance* instance : std::exchange(abandoned_, {})) delete instance;
    scripts_.clear();
    dictionaries_.clear();
    CollectDictionaries();
    player_->End();
    SetOutputSink(nullptr);
    SetStopQuestion(nullptr);
    g_current = nullptr;
}

Scripting* Scripting::Current() { return g_current; }

void Scripting::SetWindowManager(WindowManager* manager) { windows_ = manager ? manager : &noWindows_; }

void Scripting::Run(const std::atomic<std::uint8_t>* stopFlag) {
    TheRunEvents events(queue_.Wake(), *player_);
    while (!quit_ && !(stopFlag && *stopFlag) && !StopAsked()) {
        windows_->Wait(events);
        for (const std::string& action : player_->TakeMessages()) ExecuteActionNow(action, nullptr, nullptr);
        queue_.Serve();
        windows_->Update();
        DropAbandoned();
    }
}

ScriptInstance* Scripting::FindScript(std::string_view name) const {
    const auto found = std::ranges::find(scripts_, name, &NamedScript::name);
    return found == scripts_.end() ? nullptr : found->script->Instance();
}

const std::string* Scripting::NameOfScript(const ScriptInstance& instance) const {
    for (const NamedScript& entry : scripts_)
        if (entry.script->Instance() == &instance) return &entry.name;
    return nullptr;
}

void Scripting::RegisterScript(const std::string& name, ScriptRef<VTScript> script) {
    Forget(script->Instance());                      // it may have lost another name before
    const auto found = std::ranges::find(scripts_, name, &NamedScript::name);
    if (found == scripts_.end()) {
        scripts_.push_back({std::move(script), name});
        return;
    }
    if (ScriptInstance* const former = found->script->Instance()) abandoned_.push_back(former);
    found->script = std::move(script);
    DropAbandoned();
}

void Scripting::DropAbandoned() {
    if (abandoned_.empty()) return;
    const auto keep = std::partition(abandoned_.begin(), abandoned_.end(), [](ScriptInstance* instance) {
        return instance->IsInUse() || VTScript::IsHeldElsewhere(*instance);
    });
    const std::vector<ScriptInstance*> gone(keep, abandoned_.end());
    abandoned_.erase(keep, abandoned_.end());
    for (ScriptInstance* instance : gone) delete instance;
}

VTDictionary* Scripting::CreateDictionary(const std::string& name) {
    if (dictionaries_.contains(name)) return nullptr;
    return dictionaries_.emplace(name, MakeObject<VTDictionary>()).first->second.Get();
}

VTDictionary* Scripting::GetDictionary(const std::string& name) const {
    const auto found = dictionaries_.find(name);
    return found == dictionaries_.end() ? nullptr : found->second.Get();
}

}  // namespace vonta
