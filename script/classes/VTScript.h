// A script's handle on a loaded script. It does not keep it alive by itself, and knows when it has gone.
#pragma once

#include "script/binding/ScriptObject.h"
#include "script/classes/HostClasses.h"

namespace vonta {

class ScriptInstance;

class VTScript final : public ScriptObject {
public:
    explicit VTScript(int instanceNumber);
    ~VTScript() override;

    ScriptInstance* Instance() const;                // null once it has gone
    // Somebody besides the script itself has an object of it.
    static bool IsHeldElsewhere(const ScriptInstance& instance);

private:
    int number_;
};

}  // namespace vonta
