// Records as files hold them: a definition lists the members, a struct holds what was read of one.
#pragma once

#include <string>
#include <vector>

#include "script/binary/DataTypes.h"
#include "script/binary/VTArray.h"

namespace vonta {

class VTStructDef final : public ScriptObject {
public:
    struct Member {
        int type = 0;
        int subtype = 0;                             // of the elements of a VT_ARRAY
        double length = 0;                           // bytes of a VT_STRING, elements of a VT_ARRAY
        std::string name;
    };

    VTStructDef() : ScriptObject(VTStructDefClass()) {}
    std::vector<Member> members;
};

class VTStruct final : public ScriptObject {
public:
    struct Value {
        bool filled = false;
        ValueBytes bytes{};                          // of a number
        std::string text;
        ScriptRef<VTArray> array;
    };

    explicit VTStruct(ScriptRef<VTStructDef> members)
        : ScriptObject(VTStructClass()), definition(std::move(members)), values(definition->members.size()) {}

    const ScriptRef<VTStructDef> definition;
    std::vector<Value> values;                       // one for each member
};

}  // namespace vonta
