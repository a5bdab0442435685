// The classes that speak of the host itself.
#pragma once

#include "script/binding/ScriptClass.h"

namespace vonta {

const ScriptClass& VTScriptClass();
const ScriptClass& VTDictionaryClass();
const ScriptClass& VTAppClass();
const ScriptClass& VTDebugClass();
const ScriptClass& VTSystemClass();

}  // namespace vonta
