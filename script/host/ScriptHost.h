// Who adds classes to a script beyond those of the library: the application, rooms above this one, and extensions.
#pragma once

#include <string>
#include <vector>

#include "script/binding/ScriptClass.h"

namespace vonta {

class ScriptHost {
public:
    virtual ~ScriptHost() = default;
    virtual void RegisterClasses(lua_State* L) = 0;
    virtual void GetInitText(std::string& text) = 0;
};

// Joins the process-wide list while it lives.
class ScriptExtension {
public:
    ScriptExtension();
    ScriptExtension(const ScriptExtension&) = delete;
    ScriptExtension& operator=(const ScriptExtension&) = delete;
    virtual void Register(lua_State* L) = 0;
    virtual std::string GetInitText() = 0;

protected:
    ~ScriptExtension();
};

using ClassList = std::vector<const ScriptClass*>;

// In the order in which they are registered.
const ClassList& LibraryClasses();
ClassList ApplicationClasses();                      // with those of the window toolkit in their place
// Of the library classes in the order in which their start-up texts stand.
const ClassList& LibraryTexts();
// The classes of the room above that draws windows, between VTApp and VTDebug. Before the first script runs.
void SetWindowClasses(ClassList classes);

ScriptHost& ApplicationHost();
void AppendInitText(std::string& text, const ScriptClass& scriptClass);

}  // namespace vonta
