#include "script/binary/VTStruct.h"

#include "script/binding/ScriptCall.h"

namespace vonta {
namespace {

constexpr const char* kNoMember = "MemberName parameter incorrent";
constexpr const char* kNotFilled = "The member has not been read";

int ConstructDefinition(ScriptCall& call) {
    LuaVM& vm = call.Vm();
    auto definition = MakeObject<VTStructDef>();
    for (int next = call.Index(0); next <= vm.GetTop();) {
        VTStructDef::Member member;
        member.type = WholeNumber(vm.CheckNumber(next++));
        if (member.type == VT_ARRAY) member.subtype = WholeNumber(vm.CheckNumber(next++));
        if (member.type == VT_ARRAY || member.type == VT_STRING) member.length = vm.CheckNumber(next++);
        member.name = vm.CheckString(next++);
        definition->members.push_back(std::move(member));
    }
    return call.GiveObject(std::move(definition));
}

int Construct(ScriptCall& call) {
    return call.GiveObject(MakeObject<VTStruct>(ScriptRef<VTStructDef>::Share(&call.As<VTStructDef>(1))));
}

int Get(ScriptCall& call) {
    VTStruct& self = call.Self<VTStruct>();
    for (std::size_t i = 0; i < self.values.size(); ++i) {
        const VTStructDef::Member& member = self.definition->members[i];
        const VTStruct::Value& value = self.values[i];
        if (member.name != call.Text(0)) continue;
        if (!FindDataType(member.type)) return call.Warn(kUnknownMember);
        if (!value.filled) return call.Warn(kNotFilled);
        if (member.type == VT_ARRAY) return call.GiveObject(ScriptRef<VTArray>(value.array));
        if (IsNumber(member.type)) return call.GiveNumber(ReadNumber(member.type, value.bytes.data()));
        return call.GiveText(value.text);
    }
    return call.Warn(kNoMember);
}

int Convert(ScriptCall& call) {
    VTStruct& self = call.Self<VTStruct>();
    for (std::size_t i = 0; i < self.values.size(); ++i) {
        const int type = self.definition->members[i].type;
        VTStruct::Value& value = self.values[i];
        if (type == VT_STRING || type == VT_STRINGSZ) continue;
        if (type == VT_ARRAY) {
            if (value.array) ConvertEndian(call, *value.array);
        } else if (const char* message = ConvertEndian(type, value.bytes.data())) {
            call.Warn("%s", message);
        }
    }
    return 0;
}

std::string TypeNumbers() {
    std::string text;
    for (int type = VT_UBYTE; type <= VT_ARRAY; ++type)
        text += (text.empty() ? "" : "\n") + std::string(kDataTypes[type].name) + " = " + std::to_string(type);
    return text;
}

constexpr const char* kExample = R"(entry = VTStructDef(VT_STRING, 4, "tag", VT_UDWORD, "size", VT_ARRAY, VT_SWORD, 2, "ends")
out = VTFile("chunk.bin", false)
out:Print("peak", string.rep("0", 8))
out:Close()
chunk = VTFile("chunk.bin"):ReadStruct(entry)
chunk:ConvertEndian()
vtDebug:ODS(chunk:Get("tag") .. " holds " .. chunk:Get("size"))
)";

constexpr const char* kDefinitionExample = R"(head = VTStructDef(VT_STRING, 4, "id", VT_UDWORD, "size", VT_ARRAY, VT_UBYTE, 16, "orders")
)";

}  // namespace

const ScriptClass& VTStructDefClass() {
    static const std::string types = TypeNumbers();
    static const ScriptClass scriptClass(
        "VTStructDef",
        {"What a record of a file is made of. The globals VT_UBYTE, VT_SBYTE, VT_UWORD, VT_SWORD, VT_UDWORD, VT_SDWORD, "
         "VT_STRING, VT_STRINGSZ, VT_FLOAT, VT_DOUBLE and VT_ARRAY number the types: whole numbers of one, two and four "
         "bytes, a text of a fixed number of bytes, a text up to a zero byte, floating point numbers of four and eight "
         "bytes, and an array.",
         kDefinitionExample, types.c_str()},
        {"VTStructDef",
         {Rest("members", "for each member its type, for VT_ARRAY the type of its elements, for VT_STRING and VT_ARRAY "
                          "its length, and its name")},
         "VTStructDef", "A record of these members, in this order.", ConstructDefinition},
        {});
    return scriptClass;
}

const ScriptClass& VTStructClass() {
    static const ScriptClass scriptClass(
        "VTStruct", {"A record that VTFile:ReadStruct has read.", kExample},
        {"VTStruct", {Any("first", "not looked at"), Object("definition", "VTStructDef")}, "VTStruct",
         "A record that holds nothing.", Construct},
        {
            {"Get", {Text("member")}, "number, string or VTArray", "The member of this name.", Get,
             {kNoMember, kNotFilled, kUnknownMember}},
            {"ConvertEndian", {}, nullptr, "Turns the bytes of all numbers round; not of VT_DOUBLE.", Convert,
             {kNoDoubles, kUnknownMember}},
        });
    return scriptClass;
}

}  // namespace vonta
