#include "formats/mod/ModFormat.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "formats/ForeignEffects.h"

namespace vonta {
namespace {

// Of notes 0 to 95, and the 0 that ends the search. The lowest octave has no periods of its own.
constexpr std::array<std::uint16_t, kLastNote + 2> kPeriods = {
    3500, 3500, 3500, 3500, 3500, 3500, 3500, 3500, 3500, 3500, 3500, 3500,
    3424, 3232, 3048, 2880, 2712, 2560, 2416, 2280, 2152, 2032, 1920, 1812,
    1712, 1616, 1524, 1440, 1356, 1280, 1208, 1140, 1076, 1016, 960,  906,
    856,  808,  762,  720,  678,  640,  604,  570,  538,  508,  480,  453,
    428,  404,  381,  360,  339,  320,  302,  285,  269,  254,  240,  226,
    214,  202,  190,  180,  170,  160,  151,  143,  135,  127,  120,  113,
    107,  101,  95,   90,   85,   80,   75,   71,   67,   63,   60,   56,
    53,   50,   47,   45,   42,   40,   37,   35,   33,   31,   30,   28,
    0};

// A tag is `letters`, standing at `lettersAt`; its number of channels is fixed, or stands in digits.
struct TagRow {
    std::string_view letters;
    std::size_t lettersAt;
    int channels;                                    // 0: as the digits tell
    std::size_t digitsAt, digits;
};
constexpr TagRow kTags[] = {
    {"M.K.", 0, 4, 0, 0},
    {"M!K!", 0, 4, 0, 0},
    {"OCTA", 0, 8, 0, 0},
    {"FLT4", 0, 4, 0, 0},
    {"TDZ",  0, 0, 3, 1},
    {"CD81", 0, 8, 0, 0},
    {"CHN",  1, 0, 0, 1},
    {"CH",   2, 0, 0, 2},
};

std::string_view Letters(const ModTag& tag) { return {reinterpret_cast<const char*>(tag.data()), tag.size()}; }

const TagRow* FindTag(const ModTag& tag) {
    const auto row = std::ranges::find_if(kTags, [&tag](const TagRow& candidate) {
        return Letters(tag).substr(candidate.lettersAt, candidate.letters.size()) == candidate.letters;
    });
    return row == std::end(kTags) ? nullptr : row;
}

}  // namespace

bool IsModTag(const ModTag& tag) { return FindTag(tag) != nullptr; }

int ModTagChannels(const ModTag& tag) {
    const TagRow* row = FindTag(tag);
    if (!row) return 0;
    if (row->channels != 0) return row->channels;
    return std::max(0, std::atoi(std::string(Letters(tag).substr(row->digitsAt, row->digits)).c_str()));
}

ModTag MakeModTag(int channels) {
    const auto tens = static_cast<std::uint8_t>('0' + channels / 10);
    const auto ones = static_cast<std::uint8_t>('0' + channels % 10);
    return channels < 10 ? ModTag{ones, 'C', 'H', 'N'} : ModTag{tens, ones, 'C', 'H'};
}

std::uint16_t NoteToPeriod(std::uint8_t note) { return note < kPeriods.size() ? kPeriods[note] : 0; }

std::uint8_t PeriodToNote(std::uint16_t period) {
    if (period == 0) return kNoNote;
    const auto found = std::lower_bound(kPeriods.begin(), kPeriods.end(), period, std::greater<>());
    return static_cast<std::uint8_t>(found - kPeriods.begin());
}

Cell ReadModCell(std::span<const std::uint8_t, kModCellBytes> bytes) {
    Cell cell;
    cell.note = PeriodToNote(static_cast<std::uint16_t>((bytes[0] & 0x0F) << 8 | bytes[1]));
    cell.instrument = static_cast<std::uint8_t>((bytes[0] & 0xF0) | bytes[2] >> 4);
    cell.effect = bytes[2] & 0x0F;
    cell.param = SongParam(cell.effect, bytes[3]);
    return cell;
}

void WriteModCell(std::span<std::uint8_t, kModCellBytes> bytes, const Cell& cell) {
    const std::uint16_t period = NoteToPeriod(cell.note);
    bytes[0] = static_cast<std::uint8_t>(period >> 8 | (cell.instrument & 0xF0));
    bytes[1] = static_cast<std::uint8_t>(period);
    bytes[2] = static_cast<std::uint8_t>(cell.instrument << 4 | (cell.effect & 0x0F));
    bytes[3] = FileParam(cell.effect, cell.param);
}

}  // namespace vonta
