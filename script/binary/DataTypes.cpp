#include "script/binary/DataTypes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace vonta {
namespace {

static_assert(std::endian::native == std::endian::little);

template <class T>
double As(const std::uint8_t* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return static_cast<double>(value);
}

template <class T>
void Put(T value, std::uint8_t* bytes) { std::memcpy(bytes, &value, sizeof value); }

}  // namespace

std::uint32_t BitsOf(double value) {
    constexpr double bound = 9.2e18;                 // inside 64 bits
    if (!(std::abs(value) < bound)) return 0;
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
}

double ReadNumber(int type, const std::uint8_t* bytes) {
    switch (type) {
        case VT_UBYTE: return As<std::uint8_t>(bytes);
        case VT_SBYTE: return As<std::int8_t>(bytes);
        case VT_UWORD: return As<std::uint16_t>(bytes);
        case VT_SWORD: return As<std::int16_t>(bytes);
        case VT_UDWORD: return As<std::uint32_t>(bytes);
        case VT_SDWORD: return As<std::int32_t>(bytes);
        case VT_FLOAT: return As<float>(bytes);
        case VT_DOUBLE: return As<double>(bytes);
        default: return 0;
    }
}

void WriteNumber(int type, double value, std::uint8_t* bytes) {
    if (type == VT_FLOAT) return Put(static_cast<float>(value), bytes);
    if (type == VT_DOUBLE) return Put(value, bytes);
    const std::uint32_t bits = BitsOf(value);
    std::memcpy(bytes, &bits, static_cast<std::size_t>(kDataTypes[type].size));
}

bool IsInRange(int type, double value) {
    const DataTypeRow& row = kDataTypes[type];
    return !row.checked || (std::trunc(value) >= row.least && std::trunc(value) <= row.most);
}

double CutToWidth(int type, double value) {
    ValueBytes bytes{};
    WriteNumber(type, value, bytes.data());
    return ReadNumber(type, bytes.data());
}

const char* ConvertEndian(int type, std::uint8_t* bytes) {
    if (type == VT_DOUBLE) return kNoDoubles;
    if (!IsNumber(type)) return kUnknownMember;
    std::reverse(bytes, bytes + kDataTypes[type].size);
    return nullptr;
}

}  // namespace vonta
