#include "script/binary/VTArray.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>

#include "script/binding/ScriptCall.h"
#include "script/host/Watch.h"

namespace vonta {
namespace {

constexpr const char* kBadType = "Array type can't be created";
constexpr const char* kBadSize = "Array size can't be created";
constexpr const char* kBadIndex = "Index parameter out of range";
constexpr const char* kBadValue = "Value parameter out of range";
constexpr const char* kOtherType = "Arrays data types are different";
constexpr const char* kOtherSize = "Array sizes are different";
constexpr const char* kBadSection = "Section to compare out of bounds";

std::atomic<std::size_t> g_bytes{0};

bool Reserve(std::size_t bytes) {
    if (g_bytes.fetch_add(bytes) + bytes <= kMaxArrayBytes) return true;
    g_bytes -= bytes;
    return false;
}

VTArray& Self(ScriptCall& call) { return call.Self<VTArray>(); }

int Construct(ScriptCall& call) {
    auto array = VTArray::Make(call.Integer(0), call.Number(1), &call.Vm());
    if (!array) call.Vm().RaiseError("%s", IsNumber(call.Integer(0)) ? kBadSize : kBadType);
    return call.GiveObject(std::move(array));
}

bool IsInside(ScriptCall& call) { return call.Integer(0) >= 0 && call.Integer(0) < Self(call).Size(); }

int Get(ScriptCall& call) {
    if (!IsInside(call)) return call.Warn(kBadIndex);
    return call.GiveNumber(Self(call).Get(call.Integer(0)));
}

int Set(ScriptCall& call) {
    if (!IsInside(call)) return call.Warn(kBadIndex);
    if (!IsInRange(Self(call).Type(), call.Number(1))) return call.Warn(kBadValue);
    Self(call).Set(call.Integer(0), call.Number(1));
    return 0;
}

int GetSize(ScriptCall& call) { return call.GiveNumber(Self(call).Size()); }

int Convert(ScriptCall& call) {
    ConvertEndian(call, Self(call));
    return 0;
}

int Compare(ScriptCall& call) {
    const VTArray &mine = Self(call), &other = call.As<VTArray>(0);
    if (mine.Type() != other.Type()) return call.Warn(kOtherType);
    if (!call.Has(2)) {
        if (mine.Size() != other.Size()) return call.Warn(kOtherSize);
        return call.GiveTruth(std::ranges::equal(mine.Bytes(), other.Bytes()));
    }
    const double start = std::trunc(call.Number(1)), count = std::trunc(call.Number(2));
    if (!(start >= 0 && count >= 0 && start + count <= std::min(mine.Size(), other.Size())))
        return call.Warn(kBadSection);
    const auto size = static_cast<std::size_t>(mine.ElementSize());
    const auto first = static_cast<std::size_t>(start) * size, length = static_cast<std::size_t>(count) * size;
    return call.GiveTruth(std::ranges::equal(mine.Bytes().subspan(first, length), other.Bytes().subspan(first, length)));
}

constexpr const char* kExample = R"(wave = VTArray(VT_FLOAT, 64)
for i = 0, wave:GetSize() - 1 do
    wave:Set(i, math.sin(2 * math.pi * i / 64))
end
)";

}  // namespace

VTArray::~VTArray() { g_bytes -= ByteCount(); }

ScriptRef<VTArray> VTArray::Make(int type, double size, LuaVM* vm) {
    size = std::trunc(size);
    if (!IsNumber(type) || !(size >= 0 && size * kDataTypes[type].size <= kMaxArrayBytes)) return {};
    const auto bytes = static_cast<std::size_t>(size) * static_cast<std::size_t>(kDataTypes[type].size);
    if (vm) vm->NoteMemory(bytes);
    if (!Reserve(bytes)) {
        if (vm) vm->Collect();
        if (!vm || !Reserve(bytes)) return {};
    }
    auto* const data = static_cast<std::uint8_t*>(std::calloc(std::max<std::size_t>(bytes, 1), 1));
    if (!data) {
        g_bytes -= bytes;
        return {};
    }
    return ScriptRef<VTArray>(new VTArray(type, static_cast<int>(size), data));
}

void ConvertEndian(ScriptCall& call, VTArray& array) {
    const auto size = static_cast<std::size_t>(array.ElementSize());
    for (std::uint8_t* bytes = array.Bytes().data(); bytes != array.Bytes().data() + array.Bytes().size(); bytes += size)
        if (const char* message = ConvertEndian(array.Type(), bytes)) {
            if (StopAsked()) return;
            call.Warn("%s", message);
        }
}

const ScriptClass& VTArrayClass() {
    const Parameter index = Number("index");
    static const ScriptClass scriptClass(
        "VTArray",
        {"Numbers of one type, counted from 0. All arrays together may hold 1 GiB.", kExample},
        {"VTArray", {Number("type"), Number("size")}, "VTArray",
         "An array of zeroes, of a type from VT_UBYTE to VT_SDWORD, VT_FLOAT or VT_DOUBLE. Another type, or a size that "
         "is too large, is an error that ends the running function.",
         Construct, {kBadType, kBadSize}},
        {
            {"Get", {index}, "number", "An element.", Get, {kBadIndex}},
            {"Set", {index, Number("value")}, nullptr,
             "Stores an element. The types of one and two bytes take only what they can hold.", Set,
             {kBadIndex, kBadValue}},
            {"GetSize", {}, "number", "How many elements there are.", GetSize},
            {"ConvertEndian", {}, nullptr, "Turns the bytes of each element round; not of VT_DOUBLE.", Convert,
             {kNoDoubles}},
            {"Compare", {Object("other", "VTArray"), Optional(Number("start")), Optional(Number("count"))}, "boolean",
             "Whether both hold the same, as a whole or in a section.", Compare, {kOtherType, kOtherSize, kBadSection}},
        });
    return scriptClass;
}

}  // namespace vonta
