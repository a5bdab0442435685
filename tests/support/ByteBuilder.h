// Bytes of a file, put together by a test: little-endian values one after the other.
#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vonta::test {

struct ByteBuilder {
    std::vector<std::uint8_t> bytes;

    ByteBuilder& U8(unsigned value) { return Put(value, 1); }
    ByteBuilder& U16(unsigned value) { return Put(value, 2); }
    ByteBuilder& U32(unsigned value) { return Put(value, 4); }
    ByteBuilder& Text(std::string_view text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }
    ByteBuilder& F32(float value) { return U32(std::bit_cast<std::uint32_t>(value)); }
    // With its NUL, as most formats end a text.
    ByteBuilder& EndedText(std::string_view text) { return Text(text).U8(0); }
    // u32 id, u32 length, body: as the native formats are made.
    ByteBuilder& Chunk(std::uint32_t id, const ByteBuilder& body) {
        return U32(id).U32(static_cast<unsigned>(body.bytes.size())).Bytes(body.bytes);
    }
    ByteBuilder& EndChunk() { return U32(0xFFFF0001).U32(0); }
    ByteBuilder& FixedText(std::string_view text, std::size_t width) {
        const std::size_t end = bytes.size() + width;
        Text(text.substr(0, width));
        bytes.resize(end);
        return *this;
    }
    ByteBuilder& Bytes(std::span<const std::uint8_t> more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    ByteBuilder& Zeros(std::size_t count) {
        bytes.resize(bytes.size() + count);
        return *this;
    }

private:
    ByteBuilder& Put(unsigned value, int width) {
        for (int i = 0; i < width; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
        return *this;
    }
};

}  // namespace vonta::test
