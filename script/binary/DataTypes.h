// The kinds of values in files, records and arrays, as scripts number them.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace vonta {

enum DataType : int {
    VT_UBYTE = 0, VT_SBYTE, VT_UWORD, VT_SWORD, VT_UDWORD, VT_SDWORD, VT_STRING, VT_STRINGSZ, VT_FLOAT, VT_DOUBLE, VT_ARRAY,
};

struct DataTypeRow {
    const char* name;
    int size;                                        // bytes; 0 for what is no single number
    bool whole;                                      // an integer, whose bits can be worked on
    bool checked;                                    // a value stored in an array must lie in the range
    double least, most;
};

// By DataType.
inline constexpr DataTypeRow kDataTypes[] = {
    {"VT_UBYTE", 1, true, true, 0, 255},
    {"VT_SBYTE", 1, true, true, -128, 127},
    {"VT_UWORD", 2, true, true, 0, 65535},
    {"VT_SWORD", 2, true, true, -32768, 32767},
    {"VT_UDWORD", 4, true, false, 0, 4294967295.0},
    {"VT_SDWORD", 4, true, false, -2147483648.0, 2147483647.0},
    {"VT_STRING", 0, false, false, 0, 0},
    {"VT_STRINGSZ", 0, false, false, 0, 0},
    {"VT_FLOAT", 4, false, false, 0, 0},
    {"VT_DOUBLE", 8, false, false, 0, 0},
    {"VT_ARRAY", 0, false, false, 0, 0},
};

using ValueBytes = std::array<std::uint8_t, 8>;

constexpr const DataTypeRow* FindDataType(int type) {
    return type >= 0 && type < static_cast<int>(std::size(kDataTypes)) ? &kDataTypes[type] : nullptr;
}
constexpr bool IsNumber(int type) { return FindDataType(type) && FindDataType(type)->size > 0; }
constexpr bool IsWhole(int type) { return FindDataType(type) && FindDataType(type)->whole; }
// Little-endian bytes of one number of a type for which IsNumber holds, and back. A number that does not fit loses its
// high bits.
double ReadNumber(int type, const std::uint8_t* bytes);
void WriteNumber(int type, double value, std::uint8_t* bytes);
bool IsInRange(int type, double value);              // where the range is checked
double CutToWidth(int type, double value);           // as if written and read
std::uint32_t BitsOf(double value);                  // the low 32 of its whole part

// What an array or a record does with the bytes of one of its values; the warning if it cannot, else null.
const char* ConvertEndian(int type, std::uint8_t* bytes);

constexpr const char* kNoDoubles = "Double endian conversion not supported";
constexpr const char* kUnknownMember = "MemberName type unknown, possible bug in script function";

}  // namespace vonta
