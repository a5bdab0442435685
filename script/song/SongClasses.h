// The classes for the player and what it plays.
#pragma once

#include "script/binding/ScriptClass.h"

namespace vonta {

const ScriptClass& VTPlayerClass();
const ScriptClass& VTSongClass();
const ScriptClass& VTPatternClass();
const ScriptClass& VTInstrumentClass();
const ScriptClass& VTSampleClass();

}  // namespace vonta
