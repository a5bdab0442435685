#include "tools/DemoSong.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/DemoInstruments.h"
#include "tools/DemoScore.h"

namespace vonta {
namespace {

using namespace demo;

constexpr int kBarsPerSection = kRowsPerPattern / kRowsPerBar;
constexpr int kChordNotes = 4;
constexpr int kEchoRows = 3;                   // a dotted eighth

enum Track {
    kKickTrack, kSnareTrack, kHatTrack, kPercTrack, kFxTrack, kBassTrack,
    kPadTrack, kArpTrack = kPadTrack + kChordNotes, kArpEchoTrack, kLeadTrack, kLeadEchoTrack, kHarmonyTrack,
    kKeysTrack, kKeysEchoTrack, kStabTrack, kTrackCount,
};

// The four voices move by the smallest steps from one chord to the next; the bass alone leaps.
struct Chord {
    std::string_view name, bass;
    std::array<std::string_view, kChordNotes> notes;
    std::uint8_t third;                        // semitones above the root, for the stabs: 3, 4, or 5 for a suspension
};

constexpr Chord kChords[] = {
    {"Am9",    "A1", {"E3", "B3", "C4", "G4"}, 3},
    {"Fmaj9",  "F1", {"E3", "A3", "C4", "G4"}, 4},
    {"C",      "C2", {"E3", "G3", "C4", "G4"}, 4},
    {"Gadd9",  "G1", {"D3", "A3", "B3", "G4"}, 4},
    {"Dm7",    "D2", {"F3", "A3", "C4", "D4"}, 3},
    {"Em7",    "E2", {"G3", "B3", "D4", "E4"}, 3},
    {"F",      "F2", {"A3", "C4", "F4", "A4"}, 4},
    {"Gsus4",  "G2", {"C4", "D4", "G4", "C5"}, 5},
    {"G",      "G2", {"B3", "D4", "G4", "B4"}, 4},
    {"Fmaj7",  "F1", {"A3", "C4", "E4", "A4"}, 4},
    {"G/low",  "G1", {"G3", "B3", "D4", "G4"}, 4},
    {"Em/mid", "E1", {"G3", "B3", "E4", "G4"}, 3},
    {"Am7",    "A1", {"A3", "C4", "E4", "G4"}, 3},
    {"G/high", "G1", {"B3", "D4", "G4", "B4"}, 4},
    {"C/high", "C2", {"C4", "E4", "G4", "C5"}, 4},
    {"E7sus4", "E1", {"B3", "E4", "A4", "B4"}, 5},
    {"E7",     "E1", {"B3", "E4", "G#4", "B4"}, 4},
    {"Dm9",    "D2", {"F3", "A3", "C4", "E4"}, 3},
    {"Am/C",   "C2", {"E3", "A3", "C4", "E4"}, 3},
    {"Bbmaj9", "Bb1", {"D3", "A3", "C4", "F4"}, 4},
    {"E7s/low", "E1", {"D3", "A3", "B3", "E4"}, 5},
    {"E7/low", "E1", {"D3", "G#3", "B3", "E4"}, 4},
    {"Aadd9",  "A1", {"E3", "B3", "C#4", "A4"}, 4},
};

// What the characters of the drum lines play. Capitals are loud.
const std::vector<Hit> kHits = {
    {'K', kKick, 48, 112},          {'k', kKick, 48, 74},
    {'S', kSnare, 48, 88},          {'m', kSnare, 48, 50},         {'s', kSnare, 48, 24},
    {'r', kSnare, 48, 44, 14, 0x93},                               // three strokes in a row's time
    {'l', kSnare, 48, 40, 14, 0xD3},                               // half a row late
    {'L', kClap, 48, 76},
    {'H', kClosedHat, 48, 66},      {'h', kClosedHat, 48, 40},
    {'O', kOpenHat, 48, 58},        {'o', kOpenHat, 48, 58, 14, 0xC4},   // choked
    {'1', kTom, 45, 80, 8, 0x40},   {'2', kTom, 41, 84, 8, 0x80},  {'3', kTom, 36, 90, 8, 0xC0},
    {'C', kCrash, 48, 70},          {'c', kCrash, 50, 40},         {'R', kRiser, 48, 66},
};

// A bar of drums. A riser takes two bars.
struct Groove {
    char name;
    std::string_view kick, snare, hats, perc, fx;
};

constexpr Groove kGrooves[] = {
    {'-', "", "", "", "", ""},
    {'c', "", "", "", "", "c"},
    {'a', "", "", "h...h...h...h.h.", "", ""},
    {'b', "K.......k.......", "", "h.h.H.h.h.h.H.hh", "", ""},
    {'B', "K.......k.....k.", "............s.ms", "h.h.H.h.h.h.H.o.", "", ""},
    {'1', "K.....K..K......", "....S.......S..s", "H.h.H.hhH.h.H.O.", "", "c"},
    {'v', "K.....K..K......", "....S.......S..s", "H.h.H.hhH.h.H.O.", "", ""},
    {'w', "K.....K..K....k.", "....S..s.s..S.s.", "H.h.HhhhH.h.o.h.", "", ""},
    {'f', "K.....K.K.......", "....S.......S.ml", "H.h.H.hhH.......", "..........1.2.33", ""},
    {'u', "K...K...K...K...", "m...m...m...m...", "h.h.h.h.h.h.h.h.", "", ""},
    {'U', "K...K...K...K...", "m.m.m.m.m.m.m.m.", "H.h.H.h.H.h.H.h.", "", "R"},
    {'X', "K.K.K.K.K.K.....", "mmmmmmmmrrrr....", "HhHhHhHhHhHh....", "............3...", ""},
    {'C', "K...K...K...K...", "....S.......S...", "h.O.h.O.h.O.h.O.", "....L.......L...", "C"},
    {'x', "K...K...K...K...", "....S.......S..s", "h.O.h.O.h.O.h.O.", "....L.......L...", ""},
    {'y', "K...K...K..kK.k.", "....S..s....S.s.", "h.OhhhO.h.OhhhO.", "....L.......L...", ""},
    {'z', "K...K...K.K.....", "....S...S.mmSSrr", "h.O.h.O.h.......", "....L.....1122.3", ""},
    {'q', "", "", "h.......h.....h.", "", ""},
    {'p', "K.........k.....", "........L.......", "h.h.h.h.h.h.h.hh", "", ""},
    {'P', "K.........k...k.", "........L...s.ml", "h.h.h.h.h.h.o.h.", "..............1.", "R"},
};

// A bar of bass: R root, O octave, 5 fifth, 7 seventh, / slide to the octave, = off.
struct BassLine {
    char name;
    std::string_view line;
};

constexpr BassLine kBassLines[] = {
    {'-', ""},
    {'l', "R..............."},
    {'e', "R.........=.R.5."},
    {'v', "R..R=.O=..R=..5O"},
    {'w', "R..R=.O=..R.7.5."},
    {'c', "R.=R.=O.=R.=R.O="},
    {'d', "R.=R.=O.=R.=5./."},
    {'u', "R.=.R.=.R.=.R.=."},
    {'U', "R.R.R.R.R.R.R.R."},
    {'X', "R.R.O.R.O.R.=..."},
    {'b', "R.....R...=...5."},
};

// A bar of plucks: digits count the chord's notes upwards, and on into the next octave.
struct ArpLine {
    char name;
    std::string_view line;
};

constexpr ArpLine kArpLines[] = {
    {'-', ""},
    {'a', "0..2..1.3..2..1."},
    {'e', "0.1.2.3.4.3.2.1."},
    {'s', "0123213201234321"},
    {'t', "0241324202415342"},
    {'u', "0213243546352413"},
    {'l', "0...1...2...3..."},
};

// Four bars: one pattern. Chords, drums, bass and arpeggio name a bar each; "A/B" changes the chord in the middle.
struct Section {
    std::string_view name;
    std::array<std::string_view, kBarsPerSection> chords;
    std::string_view grooves, bass, arp;
    int padVolume, arpVolume;
    bool stabs;
    std::string_view lead, harmony, keys;
    float fromLevel, toLevel;                  // the section swells from one to the other
    std::uint8_t openFrom = 0, openTo = 0;     // cutoff of the plucks, if the section opens it; 255 is 10 kHz
};

constexpr std::string_view kHook =
    "A4:2 C5:2 ^E5:6~ D5:2 C5:4  D5:6~ B4:2 G4:6~ B4:2 "
    "B4:2 D5:2 ^G5:6~ E5:2 D5:4  E5:10~ C5:2 B4:2 A4:2";
constexpr std::string_view kHookEnd =
    "A4:2 C5:2 ^E5:6~ D5:2 C5:4  D5:3 E5:3 F5:2 ^G5:6~ F5:2 "
    "E5:6~ G5:2 ^C6:6~ B5:2  B5:4 A5:4 /G#5:7~ =";
constexpr std::string_view kHookBelow =
    "F4:2 A4:2 C5:6~ A4:2 A4:4  B4:6~ G4:2 D4:6~ G4:2 "
    "G4:2 B4:2 E5:6~ B4:2 B4:4  C5:10~ A4:2 G4:2 E4:2";
constexpr std::string_view kHookEndBelow =
    "F4:2 A4:2 C5:6~ A4:2 A4:4  B4:3 C5:3 D5:2 D5:6~ D5:2 "
    "C5:6~ E5:2 E5:6~ G5:2  E5:4 E5:4 E5:7~ =";
constexpr std::string_view kVerseTune =
    ".:2 E4:2 A4:2 B4:2 ^C5:4 B4:2 A4:2  C5:6 A4:2 .:8  .:2 E4:2 G4:2 A4:2 C5:2 ^D5:4 C5:2  B4:8 D5:4 .:4";
constexpr std::string_view kVerseAnswer =
    ".:2 E4:2 A4:2 B4:2 C5:2 D5:2 ^E5:4  E5:6 D5:2 C5:4 .:4  .:2 G4:2 C5:2 D5:2 ^E5:4 D5:2 C5:2  D5:6 B4:2 G4:4 .:4";
constexpr std::string_view kBreakTune =
    ".:4 A4:2 C5:2 ^E5:6 F5:2  E5:6 C5:2 G4:8  .:4 A4:2 C5:2 ^F5:6 E5:2  D5:4 B4:4 G#4:4 B4:4";
constexpr std::string_view kBreakLead =
    ".:4 A4:2 C5:2 E5:6~ /F5:2  /E5:6~ C5:2 G4:8~  .:4 A4:2 C5:2 F5:6~ /E5:2  D5:4 B4:4 G#4:4 /B4:4";
constexpr std::string_view kFarewell =
    "A4:4 C5:4 G5:8  D5:4 B4:4 A4:8  ^C#5:4 E5:4 A5:4 B5:4";

constexpr std::array<std::string_view, 4> kVerse{"Am9", "Fmaj9", "C", "Gadd9"};
constexpr std::array<std::string_view, 4> kChorus{"Fmaj7", "G/low", "Em/mid", "Am7"};
constexpr std::array<std::string_view, 4> kChorusEnd{"Fmaj7", "G/high", "C/high", "E7sus4/E7"};
constexpr std::array<std::string_view, 4> kRise{"Dm7", "Em7", "F", "Gsus4/G"};
constexpr std::array<std::string_view, 4> kBreak{"Dm9", "Am/C", "Bbmaj9", "E7s/low/E7/low"};
constexpr std::array<std::string_view, 4> kClose{"Fmaj9", "Gadd9", "Aadd9", ""};

//   name        chords      drums   bass    arp     pad arp stabs  lead, harmony, keys
constexpr Section kSections[] = {
    {"Intro",    kVerse,     "--aa", "----", "-aae", 36, 48, false, "", "", "", 0.45f, 0.9f},
    {"Intro",    kVerse,     "bbbB", "lllw", "eess", 34, 50, false, "", "", "", 0.85f, 1.0f},
    {"Verse",    kVerse,     "1vwf", "vvvw", "ssss", 28, 48, false, "", "", kVerseTune, 0.95f, 1.0f},
    {"Verse",    kVerse,     "1vwf", "vvvw", "ssst", 28, 50, false, "", "", kVerseAnswer, 1.0f, 1.0f},
    {"Build",    kRise,      "uuUX", "uuUX", "ttuu", 32, 56, false, "", "", "", 0.7f, 1.08f, 20, 200},
    {"Chorus",   kChorus,    "Cxyx", "cccd", "tttt", 30, 42, true, kHook, "", "", 1.0f, 1.0f},
    {"Chorus",   kChorusEnd, "xxyz", "cccd", "tttu", 30, 42, true, kHookEnd, "", "", 1.0f, 1.0f},
    {"Break",    kBreak,     "c-q-", "lllb", "lala", 38, 44, false, "", "", kBreakTune, 0.8f, 0.9f},
    {"Break",    kBreak,     "ppPX", "ebeX", "aeeu", 36, 48, false, kBreakLead, "", "", 0.85f, 1.05f, 25, 170},
    {"Chorus",   kChorus,    "Cxyx", "cccd", "tttt", 30, 42, true, kHook, kHookBelow, "", 1.0f, 1.0f},
    {"Chorus",   kChorusEnd, "xxyz", "cccd", "uuuu", 30, 42, true, kHookEnd, kHookEndBelow, "", 1.0f, 1.04f},
    {"Outro",    kVerse,     "1vwf", "vvve", "ssse", 30, 48, false, "", "", kVerseTune, 1.0f, 0.8f},
    {"Outro",    kClose,     "cqc-", "lll-", "eel-", 38, 45, false, "", "", kFarewell, 0.85f, 0.55f},
};

constexpr float kMasterVolume = 0.80f;          // the loudest moment is 2 dB below full scale
constexpr int kLeadVolume = 50, kHarmonyVolume = 32, kKeysVolume = 56, kStabVolume = 24, kBassVolume = 74;

template <class Row, std::size_t count, class Name>
const Row& Find(const Row (&table)[count], const Name& name) {
    const auto row = std::ranges::find(table, name, &Row::name);
    if (row == std::end(table)) throw std::invalid_argument("not in the table: " + (std::string() += name));
    return *row;
}

// The chords of a bar and the rows on which they begin. A name that holds a slash itself is looked up whole.
struct Change {
    int row;
    const Chord* chord;
};

std::vector<Change> ChordsOfBar(std::string_view text) {
    if (text.empty()) return {};
    if (const auto whole = std::ranges::find(kChords, text, &Chord::name); whole != std::end(kChords))
        return {{0, &*whole}};
    for (std::size_t slash = text.find('/'); slash != std::string_view::npos; slash = text.find('/', slash + 1)) {
        const auto first = std::ranges::find(kChords, text.substr(0, slash), &Chord::name);
        if (first != std::end(kChords))
            if (const auto next = std::ranges::find(kChords, text.substr(slash + 1), &Chord::name);
                next != std::end(kChords))
                return {{0, &*first}, {kRowsPerBar / 2, &*next}};
    }
    throw std::invalid_argument("no chord: " + std::string(text));
}

const Chord& ChordAt(const std::vector<Change>& changes, int row) {
    return row >= changes.back().row ? *changes.back().chord : *changes.front().chord;
}

void WriteDrums(Score& score, int row, const Groove& groove) {
    score.Drums(row, kKickTrack, groove.kick, kHits);
    score.Drums(row, kSnareTrack, groove.snare, kHits);
    score.Drums(row, kHatTrack, groove.hats, kHits);
    score.Drums(row, kPercTrack, groove.perc, kHits);
    score.Drums(row, kFxTrack, groove.fx, kHits);
}

void WritePad(Score& score, int row, const std::vector<Change>& changes, int volume) {
    for (const Change& change : changes)
        for (int i = 0; i < kChordNotes; ++i)
            score.Note(row + change.row, {kPadTrack + i, kPad, volume},
                       ParseNote(change.chord->notes[static_cast<std::size_t>(i)]));
}

void WriteBass(Score& score, int row, const std::vector<Change>& changes, std::string_view line) {
    for (int i = 0; i < static_cast<int>(line.size()); ++i) {
        const int root = ParseNote(ChordAt(changes, i).bass);
        const char symbol = line[static_cast<std::size_t>(i)];
        const auto play = [&](int note) {
            score.Note(row + i, {kBassTrack, kBass, kBassVolume}, static_cast<std::uint8_t>(note));
        };
        switch (symbol) {
            case '.': break;
            case '=': score.At(row + i, kBassTrack).note = kNoteOff; break;
            case 'R': play(root); break;
            case 'O': play(root + 12); break;
            case '5': play(root + 7); break;
            case '7': play(root + 10); break;
            case '/':
                play(root + 12);
                score.At(row + i, kBassTrack).effect = 3;
                score.At(row + i, kBassTrack).param = 0x20;
                break;
            default: throw std::invalid_argument(std::string("no bass note: ") + symbol);
        }
    }
}

// Plucks wander from side to side, a turn in two bars; where the section opens the filter, they do that instead.
void ColourPluck(Cell& cell, const Section& section, int rowOfSection) {
    if (section.openTo) {
        const int way = (section.openTo - section.openFrom) * rowOfSection / kRowsPerPattern;
        cell.effect = 18;
        cell.param = static_cast<std::uint8_t>(section.openFrom + way);
    } else {
        cell.effect = 8;
        cell.param = static_cast<std::uint8_t>(
            std::lround(128.0 + 72.0 * std::sin(2.0 * std::numbers::pi * rowOfSection / (2 * kRowsPerBar))));
    }
}

void WriteArp(Score& score, int sectionRow, int bar, const std::vector<Change>& changes, std::string_view line,
              const Section& section) {
    for (int i = 0; i < static_cast<int>(line.size()); ++i) {
        const char symbol = line[static_cast<std::size_t>(i)];
        if (symbol == '.') continue;
        const int step = symbol - '0';
        const auto& notes = ChordAt(changes, i).notes;
        const int note = ParseNote(notes[static_cast<std::size_t>(step % kChordNotes)]) + 12 * (step / kChordNotes) + 12;
        const int row = bar * kRowsPerBar + i;
        const int volume = section.arpVolume * (i % 4 == 0 ? 6 : 5) / 6;
        score.Note(sectionRow + row, {kArpTrack, kPluck, volume}, static_cast<std::uint8_t>(note));
        ColourPluck(score.At(sectionRow + row, kArpTrack), section, row);
    }
}

// The chord in one channel: root, third and fifth a tick each.
void WriteStabs(Score& score, int row, const std::vector<Change>& changes) {
    constexpr std::string_view kRhythm = "x..x..x...x..x..";
    for (int i = 0; i < kRowsPerBar; ++i) {
        if (kRhythm[static_cast<std::size_t>(i)] != 'x') continue;
        const Chord& chord = ChordAt(changes, i);
        const int root = ParseNote(chord.bass) % 12 + 60;
        score.Note(row + i, {kStabTrack, kStab, kStabVolume}, static_cast<std::uint8_t>(root));
        score.At(row + i, kStabTrack).param = static_cast<std::uint8_t>(chord.third << 4 | 7);
    }
}

void WriteSection(Score& score, int row, const Section& section) {
    for (int bar = 0; bar < kBarsPerSection; ++bar) {
        const auto at = static_cast<std::size_t>(bar);
        const int barRow = row + bar * kRowsPerBar;
        WriteDrums(score, barRow, Find(kGrooves, section.grooves[at]));
        const std::vector<Change> changes = ChordsOfBar(section.chords[at]);
        if (changes.empty()) continue;
        WritePad(score, barRow, changes, section.padVolume);
        WriteBass(score, barRow, changes, Find(kBassLines, section.bass[at]).line);
        WriteArp(score, row, bar, changes, Find(kArpLines, section.arp[at]).line, section);
        if (section.stabs) WriteStabs(score, barRow, changes);
    }
    score.Phrase(row, {kLeadTrack, kLead, kLeadVolume}, section.lead);
    score.Phrase(row, {kHarmonyTrack, kHarmony, kHarmonyVolume}, section.harmony);
    score.Phrase(row, {kKeysTrack, kPiano, kKeysVolume}, section.keys);
    score.Swell(row, kRowsPerPattern, section.fromLevel, section.toLevel);
}

// The last chord is let go a bar before the end and rings out.
void WriteEnding(Score& score) {
    for (int i = 0; i < kChordNotes; ++i) score.At(score.Rows() - kRowsPerBar, kPadTrack + i).note = kNoteOff;
    score.At(score.Rows() - kRowsPerBar, kBassTrack).note = kNoteOff;
}

}  // namespace

std::unique_ptr<Song> ComposeDemoSong() {
    Score score(static_cast<int>(std::size(kSections)) * kRowsPerPattern, kTrackCount);
    for (int i = 0; i < static_cast<int>(std::size(kSections)); ++i)
        WriteSection(score, i * kRowsPerPattern, kSections[static_cast<std::size_t>(i)]);
    WriteEnding(score);
    score.Echo(kArpTrack, {kArpEchoTrack, kPluckEcho, 0}, kEchoRows, 0.5f);
    score.Echo(kLeadTrack, {kLeadEchoTrack, kLeadEcho, 0}, kEchoRows, 0.5f);
    score.Echo(kKeysTrack, {kKeysEchoTrack, kPianoEcho, 0}, kEchoRows, 0.5f);

    auto song = std::make_unique<Song>();
    song->SetTitle("Harbour Lights");
    song->SetComments("The demo song of Vonta Tracker.\nEvery sound in it is synthesised.");
    song->SetBPM(116);
    song->SetTempo(6);
    song->SetNumChannels(kTrackCount);
    song->SetMasterVolume(kMasterVolume);
    AddInstruments(*song);
    score.WriteTo(*song);
    song->Validate();
    return song;
}

}  // namespace vonta
