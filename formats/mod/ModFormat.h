// The module of 31 instruments, for its reader and its writer.
//
// A header of 1084 bytes, patterns of 64 rows, then one wave of signed bytes for each instrument. Numbers of
// two bytes are big-endian, and the lengths among them count words of two bytes.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "formats/streams/Record.h"
#include "song/Pattern.h"

namespace vonta {

constexpr int kModInstruments = 31;
constexpr int kModPositions = 128;
constexpr int kModRows = 64;
constexpr int kModChannels = 32;                     // written at most; a reader meets up to 99
constexpr std::uint8_t kModLowestNote = 12;          // those below have no periods of their own
constexpr std::uint8_t kModVolume = 64;              // full
constexpr std::size_t kModTagOffset = 1080;
constexpr std::size_t kModTitleWidth = 20, kModNameWidth = 22, kModTagWidth = 4;
constexpr std::size_t kModCellBytes = 4;
constexpr std::uint32_t kModWordBytes = 2;
constexpr std::uint32_t kModMaxWords = 65535;

using ModTag = std::array<std::uint8_t, kModTagWidth>;   // letters that tell the number of channels

struct ModSample {
    std::string name;
    std::uint16_t length = 0;                        // words, as the loop
    std::int8_t fineTune = 0;                        // 1/8 of a semitone
    std::uint8_t volume = kModVolume;
    std::uint16_t loopStart = 0, loopLength = 0;     // a length of 1 or less is no loop
};

struct ModHeader {
    std::string title;
    std::array<ModSample, kModInstruments> samples;
    std::uint8_t length = 0;                         // positions
    std::uint8_t restart = 0;
    std::array<std::uint8_t, kModPositions> orders{};
    ModTag tag{};
};

// The two directions of the records below.
class ModReader : public RecordReader {
public:
    using RecordReader::RecordReader;
    void Word(std::uint16_t& value) {
        U16(value);
        value = static_cast<std::uint16_t>(value << 8 | value >> 8);
    }
};

class ModWriter : public RecordWriter {
public:
    using RecordWriter::RecordWriter;
    void Word(std::uint16_t value) { U16(value << 8 | value >> 8); }
};

template <class Io, class Sample>
void ModSampleRecord(Io& io, Sample& sample) {
    io.FixedText(sample.name, kModNameWidth);
    io.Word(sample.length);
    io.I8(sample.fineTune);
    io.U8(sample.volume);
    io.Word(sample.loopStart);
    io.Word(sample.loopLength);
}

template <class Io, class Header>
void ModHeaderRecord(Io& io, Header& header) {
    io.FixedText(header.title, kModTitleWidth);
    for (auto& sample : header.samples) ModSampleRecord(io, sample);
    io.U8(header.length);
    io.U8(header.restart);
    io.Bytes(header.orders);
    io.Bytes(header.tag);
}

// True for the letters of any known tag, whatever its digits are.
bool IsModTag(const ModTag& tag);
// 0 for an unknown tag, or for one whose digits are none.
int ModTagChannels(const ModTag& tag);
// For an even number from 2 to kModChannels.
ModTag MakeModTag(int channels);

// The period that stands for a note: of index 0 to 129, those without a sound giving 0.
std::uint16_t NoteToPeriod(std::uint8_t note);
// The first note whose period is not above this one; kNoNote for 0.
std::uint8_t PeriodToNote(std::uint16_t period);

Cell ReadModCell(std::span<const std::uint8_t, kModCellBytes> bytes);
void WriteModCell(std::span<std::uint8_t, kModCellBytes> bytes, const Cell& cell);

}  // namespace vonta
