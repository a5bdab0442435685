// Reader and Writer: typed little-endian values over any stream.
#include <algorithm>
#include <array>
#include <bit>

#include "formats/streams/FileStream.h"

namespace vonta {
namespace {

constexpr std::size_t kTextBlock = 64;               // most texts of a file are names

template <class Value>
Value ReadValue(FileStream& stream, bool& truncated) {
    std::array<std::uint8_t, sizeof(Value)> bytes{};
    if (stream.Read(bytes.data(), bytes.size(), 1) != 1) {
        truncated = true;
        return 0;
    }
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
    return static_cast<Value>(value);
}

template <class Value>
void WriteValue(FileStream& stream, Value value) {
    std::array<std::uint8_t, sizeof(Value)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(value >> 8 * i);
    stream.Write(bytes.data(), bytes.size(), 1);
}

}  // namespace

std::uint8_t Reader::U8() { return ReadValue<std::uint8_t>(stream_, truncated_); }

std::uint16_t Reader::U16() { return ReadValue<std::uint16_t>(stream_, truncated_); }

std::uint32_t Reader::U32() { return ReadValue<std::uint32_t>(stream_, truncated_); }

float Reader::F32() { return std::bit_cast<float>(U32()); }

std::string Reader::Text() {
    std::string text;
    std::array<char, kTextBlock> block;
    for (;;) {
        const std::size_t got = stream_.Read(block.data(), 1, block.size());
        const auto end = block.begin() + static_cast<std::ptrdiff_t>(got);
        const auto nul = std::find(block.begin(), end, '\0');
        text.append(block.begin(), nul);
        if (nul != end) {
            stream_.Seek(nul + 1 - end, kFromHere);  // back to the byte after the NUL
            return text;
        }
        if (got < block.size()) {
            truncated_ = true;
            return text;
        }
    }
}

std::string Reader::FixedText(std::size_t width) {
    std::string text(width, '\0');
    const std::size_t got = stream_.Read(text.data(), 1, width);
    if (got < width) truncated_ = true;
    text.resize(std::min(got, text.find('\0')));
    return text;
}

std::size_t Reader::Bytes(std::span<std::uint8_t> out) {
    if (out.empty()) return 0;
    const std::size_t got = stream_.Read(out.data(), 1, out.size());
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(got), out.end(), std::uint8_t{0});
    if (got < out.size()) truncated_ = true;
    return got;
}

void Reader::Skip(std::int64_t bytes) {
    const std::int64_t rest = Remaining();
    if (bytes > rest) truncated_ = true;
    stream_.Seek(std::clamp<std::int64_t>(bytes, 0, rest), kFromHere);
}

void Writer::U8(std::uint8_t value) { WriteValue(stream_, value); }

void Writer::U16(std::uint16_t value) { WriteValue(stream_, value); }

void Writer::U32(std::uint32_t value) { WriteValue(stream_, value); }

void Writer::F32(float value) { U32(std::bit_cast<std::uint32_t>(value)); }

std::size_t Writer::Text(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    Bytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    U8(0);
    return text.size() + 1;
}

void Writer::FixedText(std::string_view text, std::size_t width, char fill) {
    std::string field(text.substr(0, std::min(width, text.find('\0'))));
    field.resize(width, fill);
    stream_.Write(field.data(), 1, width);
}

void Writer::Bytes(std::span<const std::uint8_t> bytes) {
    if (!bytes.empty()) stream_.Write(bytes.data(), 1, bytes.size());
}

}  // namespace vonta
