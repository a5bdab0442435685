// A value of 128 bits.
#pragma once

#include "script/binary/BinaryClasses.h"
#include "script/binding/LuaVM.h"
#include "script/binding/ScriptObject.h"

namespace vonta {

class VTU128 final : public ScriptObject {
public:
    VTU128() : ScriptObject(VTU128Class()) {}
    U128 value;
};

}  // namespace vonta
