// The two directions in which a record of a file is walked. A record is described once, as a function template that
// names its fields in the order of the file:
//
//     template <class Io, class Bus>
//     void BusRecord(Io& io, Bus& bus) {
//         io.Bits(bus.active, bus.output);          // bit 0, bits 1 to 7
//         io.F32(bus.volume);
//     }
//
// RecordReader fills the fields, RecordWriter writes them. A field may be of any arithmetic type or an enumeration;
// the operation names its width in the file.
#pragma once

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "formats/streams/FileStream.h"

namespace vonta {

// Fields that the file no longer holds keep the value they had, and so do floats that are no number: what a plain
// struct starts with is what a damaged file leaves.
class RecordReader {
public:
    static constexpr bool kReading = true;
    explicit RecordReader(Reader& in) : in_(in) {}

    void U8(auto& field) { Store(field, in_.U8()); }
    void U16(auto& field) { Store(field, in_.U16()); }
    void U32(auto& field) { Store(field, in_.U32()); }
    void I8(auto& field) { Store(field, in_.I8()); }
    void I16(auto& field) { Store(field, in_.I16()); }
    void I32(auto& field) { Store(field, in_.I32()); }
    void F32(float& field) {
        const float value = in_.F32();
        if (std::isfinite(value)) Store(field, value);
    }
    void Text(std::string& field) {
        std::string value = in_.Text();
        if (!in_.Truncated()) field = std::move(value);
    }
    void FixedText(std::string& field, std::size_t width) {
        std::string value = in_.FixedText(width);
        if (!in_.Truncated()) field = std::move(value);
    }
    void Bytes(std::span<std::uint8_t> field) { in_.Bytes(field); }
    // One byte: `low` in bit 0, `high` in bits 1 to 7.
    void Bits(auto& low, auto& high) {
        const std::uint8_t byte = in_.U8();
        Store(low, byte & 1);
        Store(high, byte >> 1);
    }
    // Values that the format fixes: written as given, read and dropped.
    void ConstU8(std::uint8_t) { in_.U8(); }
    void ConstU32(std::uint32_t) { in_.U32(); }
    void ConstText(std::string_view) { in_.Text(); }
    void ConstFixedText(std::string_view, std::size_t width) { in_.Skip(static_cast<std::int64_t>(width)); }
    void Zeros(std::size_t count) { in_.Skip(static_cast<std::int64_t>(count)); }

    Reader& In() { return in_; }

private:
    template <class Field, class Value>
    void Store(Field& field, Value value) {
        if (!in_.Truncated()) field = static_cast<Field>(value);
    }

    Reader& in_;
};

class RecordWriter {
public:
    static constexpr bool kReading = false;
    explicit RecordWriter(Writer& out) : out_(out) {}

    void U8(const auto& field) { out_.U8(static_cast<std::uint8_t>(field)); }
    void U16(const auto& field) { out_.U16(static_cast<std::uint16_t>(field)); }
    void U32(const auto& field) { out_.U32(static_cast<std::uint32_t>(field)); }
    void I8(const auto& field) { out_.I8(static_cast<std::int8_t>(field)); }
    void I16(const auto& field) { out_.I16(static_cast<std::int16_t>(field)); }
    void I32(const auto& field) { out_.I32(static_cast<std::int32_t>(field)); }
    void F32(const float& field) { out_.F32(field); }
    void Text(std::string_view field) { out_.Text(field); }
    void FixedText(std::string_view field, std::size_t width) { out_.FixedText(field, width); }
    void Bytes(std::span<const std::uint8_t> field) { out_.Bytes(field); }
    void Bits(const auto& low, const auto& high) {
        out_.U8(static_cast<std::uint8_t>((low ? 1 : 0) | static_cast<int>(high) << 1));
    }
    void ConstU8(std::uint8_t value) { out_.U8(value); }
    void ConstU32(std::uint32_t value) { out_.U32(value); }
    void ConstText(std::string_view value) { out_.Text(value); }
    void ConstFixedText(std::string_view value, std::size_t width) { out_.FixedText(value, width); }
    void Zeros(std::size_t count) { out_.FixedText({}, count); }

    Writer& Out() { return out_; }

private:
    Writer& out_;
};

}  // namespace vonta
