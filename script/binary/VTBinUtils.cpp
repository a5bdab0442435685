#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "script/binary/BinaryClasses.h"
#include "script/binary/DataTypes.h"
#include "script/binding/ScriptCall.h"

namespace vonta {
namespace {

constexpr const char* kBadType = "DataType invalid for Binary operations";
constexpr const char* kBadValue = "Value out of DataType range";
constexpr int kMaxWidth = 256;                       // characters that a text is filled up to

int Construct(ScriptCall& call) { return call.GiveNone(); }

int And(ScriptCall& call) {
    return call.GiveNumber(CutToWidth(call.Integer(0), BitsOf(call.Number(1)) & BitsOf(call.Number(2))));
}

int Or(ScriptCall& call) {
    return call.GiveNumber(CutToWidth(call.Integer(0), BitsOf(call.Number(1)) | BitsOf(call.Number(2))));
}

int Not(ScriptCall& call) { return call.GiveNumber(CutToWidth(call.Integer(0), call.Number(1)) == 0 ? 1 : 0); }

// A value that is too large is told of, and worked on as what is left of it.
void CheckRange(ScriptCall& call, double value) {
    if (!IsInRange(call.Integer(0), value)) call.Warn(kBadValue);
}

int Convert(ScriptCall& call) {
    CheckRange(call, call.Number(1));
    ValueBytes bytes{};
    WriteNumber(call.Integer(0), call.Number(1), bytes.data());
    ConvertEndian(call.Integer(0), bytes.data());
    return call.GiveNumber(ReadNumber(call.Integer(0), bytes.data()));
}

int IsBitOn(ScriptCall& call) {
    CheckRange(call, call.Number(2));
    std::uint32_t mask = std::uint32_t{1} << (BitsOf(call.Number(1)) & 31);
    if (kDataTypes[call.Integer(0)].size == 1) mask &= 0xFF;
    return call.GiveTruth(BitsOf(CutToWidth(call.Integer(0), call.Number(2))) & mask);
}

template <class Value>
int GiveFilled(ScriptCall& call, const char* format, Value value) {
    std::array<char, kMaxWidth + 32> text;
    const int width = call.Has(1) ? std::clamp(call.Integer(1), 0, kMaxWidth) : 0;
    std::snprintf(text.data(), text.size(), format, width, value);
    return call.GiveText(text.data());
}

int ToHex(ScriptCall& call) { return GiveFilled(call, "%0*X", BitsOf(call.Number(0))); }

int ToString(ScriptCall& call) {
    LuaVM& vm = call.Vm();
    const int index = call.Index(0), type = vm.Type(index);
    if (type == vm.TypeBoolean()) return call.GiveText(vm.CheckBoolean(index) ? "true" : "false");
    if (type == vm.TypeString()) return call.GiveText('"' + std::string(vm.CheckString(index)) + '"');
    if (type != vm.TypeNumber()) return 0;
    if (call.Has(1)) return GiveFilled(call, "%0*i", WholeNumber(vm.CheckNumber(index)));
    return call.GiveText(vm.CheckString(index));
}

int ToNumber(ScriptCall& call) { return call.GiveNumber(static_cast<double>(std::strtoll(call.Text(0), nullptr, 0))); }

int FloatToInt(ScriptCall& call) { return call.GiveNumber(std::trunc(call.Number(0))); }

constexpr const char* kExample = R"(flags = 10
if vtBinUtils:IsBitOn(VT_UBYTE, 3, flags) then
    vtDebug:ODS("0x" .. vtBinUtils:ToHex(vtBinUtils:And(VT_UBYTE, flags, 6), 2))
end
)";

}  // namespace

const ScriptClass& VTBinUtilsClass() {
    const Parameter type = Number("type", VT_UBYTE, VT_SDWORD, kBadType);
    const Parameter width = Optional(Number("width"));
    static const ScriptClass scriptClass(
        "VTBinUtils",
        {"Works on the bits of numbers. A type is one from VT_UBYTE to VT_SDWORD. `vtBinUtils` is there in every script.",
         kExample, "vtBinUtils = VTBinUtils()"},
        {"VTBinUtils", {}, "VTBinUtils", "Another handle on it.", Construct},
        {
            {"And", {type, Number("a"), Number("b")}, "number", "The bits that both have.", And},
            {"Or", {type, Number("a"), Number("b")}, "number", "The bits that one of them has.", Or},
            {"Not", {type, Number("a")}, "number", "1 if the number is 0 in this type, else 0.", Not},
            {"ConvertEndian", {type, Number("value")}, "number", "The value with its bytes turned round.", Convert,
             {kBadValue}},
            {"IsBitOn", {type, Number("bit"), Number("value")}, "boolean", "Whether the bit, from 0, is set.", IsBitOn,
             {kBadValue}},
            {"ToHex", {Number("number"), width}, "string",
             "Its hexadecimal digits; with a width, up to 256, filled up with zeros.", ToHex},
            {"ToString", {Any("value", "number, string or boolean"), width}, "string",
             "The value as text: a text in double quotes, a number with a width as a whole one filled up with zeros.",
             ToString},
            {"ToNumber", {Text("text")}, "number",
             "The whole number that the text begins with: hexadecimal behind \"0x\", octal behind \"0\"; else 0.",
             ToNumber},
            {"FloatToInt", {Number("number")}, "number", "The number without its fraction.", FloatToInt},
        });
    return scriptClass;
}

}  // namespace vonta
