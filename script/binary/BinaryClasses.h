// The classes for files, records, arrays and bits.
#pragma once

#include "script/binding/ScriptClass.h"

namespace vonta {

const ScriptClass& VTFileClass();
const ScriptClass& VTFileUtilsClass();
const ScriptClass& VTStructClass();
const ScriptClass& VTStructDefClass();
const ScriptClass& VTArrayClass();
const ScriptClass& VTBinUtilsClass();
const ScriptClass& VTU128Class();

}  // namespace vonta
