#include "tools/DemoScore.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>

namespace vonta::demo {
namespace {

constexpr std::uint8_t kPortaToNote = 3, kVibrato = 4;
constexpr std::uint8_t kSlideSpeed = 0x18;     // a semitone and a half a tick
constexpr std::uint8_t kVibratoDepth = 0x82;   // speed 8, a fifth of a semitone
constexpr int kVibratoAfter = 3;               // rows for which a note stands still
constexpr float kAccent = 1.25f;

std::uint16_t Loudness(float volume) {
    return static_cast<std::uint16_t>(std::clamp(std::lround(volume), 0L, static_cast<long>(kMaxVolume)));
}

bool HasVolume(const Cell& cell) { return cell.volume <= kMaxVolume; }

// One word of a phrase.
struct Word {
    bool slide = false, accent = false, vibrato = false;
    std::string_view name;
    int rows = 1;
};

Word ParseWord(std::string_view text) {
    const std::string whole(text);
    Word word;
    for (; !text.empty() && (text.front() == '/' || text.front() == '^'); text.remove_prefix(1))
        (text.front() == '/' ? word.slide : word.accent) = true;
    if (text.ends_with('~')) {
        word.vibrato = true;
        text.remove_suffix(1);
    }
    const std::size_t colon = text.find(':');
    word.name = text.substr(0, colon);
    if (colon == std::string_view::npos) return word;
    const std::string_view length = text.substr(colon + 1);
    const auto [end, error] = std::from_chars(length.data(), length.data() + length.size(), word.rows);
    if (error != std::errc() || end != length.data() + length.size() || word.rows < 1)
        throw std::invalid_argument("no length in '" + whole + "'");
    return word;
}

bool SamePattern(const Pattern& a, const Pattern& b) {
    for (int track = 0; track < kTracks; ++track)
        for (int row = 0; row < kRowsPerPattern; ++row)
            if (a.Read(row, track) != b.Read(row, track)) return false;
    return true;
}

int FindPattern(const Song& song, const Pattern& pattern) {
    for (int i = 0; i < song.numPatterns; ++i)
        if (SamePattern(*song.GetPattern(i), pattern)) return i;
    return -1;
}

}  // namespace

std::uint8_t ParseNote(std::string_view name) {
    constexpr std::string_view kLetters = "C D EF G A B";
    const std::size_t step = name.empty() || name[0] == ' ' ? std::string_view::npos : kLetters.find(name[0]);
    const bool altered = name.size() == 3 && (name[1] == '#' || name[1] == 'b');
    const char octave = name.empty() ? '\0' : name.back();
    if (step == std::string_view::npos || name.size() != (altered ? 3u : 2u) || octave < '0' || octave > '7')
        throw std::invalid_argument("no note: '" + std::string(name) + "'");
    const int alteration = !altered ? 0 : name[1] == '#' ? 1 : -1;
    return static_cast<std::uint8_t>(12 * (octave - '0') + static_cast<int>(step) + alteration);
}

Score::Score(int rows, int tracks)
    : rows_(rows), tracks_(tracks), cells_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(tracks)) {}

Cell& Score::At(int row, int track) {
    if (row < 0 || row >= rows_ || track < 0 || track >= tracks_) return outside_ = Cell{};
    return cells_[static_cast<std::size_t>(row) * static_cast<std::size_t>(tracks_) + static_cast<std::size_t>(track)];
}

void Score::Note(int row, const Part& part, std::uint8_t note) {
    Cell& cell = At(row, part.track);
    cell.note = note;
    cell.instrument = static_cast<std::uint8_t>(part.instrument + 1);
    cell.volume = Loudness(static_cast<float>(part.volume));
}

void Score::Drums(int row, int track, std::string_view line, const std::vector<Hit>& hits) {
    for (const char symbol : line) {
        const int here = row++;
        if (symbol == '.') continue;
        const auto hit = std::ranges::find(hits, symbol, &Hit::symbol);
        if (hit == hits.end()) throw std::invalid_argument(std::string("no drum: ") + symbol);
        Note(here, {track, hit->instrument, hit->volume}, hit->note);
        At(here, track).effect = hit->effect;
        At(here, track).param = hit->param;
    }
}

void Score::Phrase(int row, const Part& part, std::string_view text) {
    while (!text.empty()) {
        const std::size_t blank = std::min(text.find(' '), text.size());
        const std::string_view token = text.substr(0, blank);
        text.remove_prefix(std::min(blank + 1, text.size()));
        if (token.empty()) continue;
        const Word word = ParseWord(token);
        if (word.name == "=") {
            At(row, part.track).note = kNoteOff;
        } else if (word.name != ".") {
            Note(row, part, ParseNote(word.name));
            Cell& cell = At(row, part.track);
            if (word.accent) cell.volume = Loudness(kAccent * static_cast<float>(part.volume));
            if (word.slide) cell.effect = kPortaToNote, cell.param = kSlideSpeed;
        }
        for (int held = kVibratoAfter; word.vibrato && held < word.rows; ++held)
            At(row + held, part.track).effect = kVibrato, At(row + held, part.track).param = kVibratoDepth;
        row += word.rows;
    }
}

void Score::Echo(int fromTrack, const Part& part, int delay, float level) {
    for (int row = 0; row + delay < rows_; ++row) {
        Cell cell = At(row, fromTrack);
        if (cell.instrument) cell.instrument = static_cast<std::uint8_t>(part.instrument + 1);
        if (HasVolume(cell)) cell.volume = Loudness(level * static_cast<float>(cell.volume));
        At(row + delay, part.track) = cell;
    }
}

void Score::Swell(int firstRow, int rows, float fromLevel, float toLevel) {
    for (int row = 0; row < rows; ++row) {
        const float way = static_cast<float>(row) / static_cast<float>(rows);
        const float level = fromLevel + (toLevel - fromLevel) * way;
        for (int track = 0; track < tracks_; ++track) {
            Cell& cell = At(firstRow + row, track);
            if (HasVolume(cell)) cell.volume = Loudness(level * static_cast<float>(cell.volume));
        }
    }
}

void Score::WriteTo(Song& song) const {
    song.SetPatternPosLenght(static_cast<std::uint32_t>(rows_ / kRowsPerPattern));
    for (int position = 0; position < rows_ / kRowsPerPattern; ++position) {
        auto pattern = std::make_unique<Pattern>();
        for (int row = 0; row < kRowsPerPattern; ++row)
            for (int track = 0; track < tracks_; ++track) {
                const int at = (position * kRowsPerPattern + row) * tracks_ + track;
                pattern->Write(row, track, cells_[static_cast<std::size_t>(at)]);
            }
        const int known = FindPattern(song, *pattern);
        song.SetPatternPosIndex(position, known >= 0 ? known : song.AddPattern(std::move(pattern)));
    }
}

}  // namespace vonta::demo
