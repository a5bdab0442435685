#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "formats/Loaders.h"
#include "tests/support/RealSongs.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/SongCompare.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

TEST(RealSongs, EveryExtendedModuleLoadsWithoutComplaint) {
    const auto paths = RealSongs(".xm");
    ASSERT_FALSE(paths.empty()) << "tools/fetch-songs lays them into build/songs";
    for (const auto& path : paths) {
        SCOPED_TRACE(path);
        LoadReport report;
        bool unknown = false;
        const auto song = LoadModule(path, unknown, report);
        ASSERT_TRUE(song) << report.error;
        for (const auto& line : report.lines) ADD_FAILURE() << line;
        EXPECT_GT(song->CountSamples(), 0);
    }
}

std::vector<std::string> AllRealSongs() {
    auto paths = RealSongs(".xm");
    for (auto& path : RealSongs(".mod")) paths.push_back(std::move(path));
    return paths;
}

std::unique_ptr<Song> Load(const std::string& path) {
    LoadReport report;
    bool unknown = false;
    auto song = LoadModule(path, unknown, report);
    EXPECT_TRUE(song) << path << ": " << report.error;
    return song;
}

int Save(Song& song, SaveMode mode, const std::string& path) {
    DiskStream stream;
    return stream.Open(path, "wb") ? SaveFile(&stream, mode, song, {}) : 1;
}

// What a song keeps in every format.
std::string Outline(const Song& song) {
    std::ostringstream text;
    text << song.numChannels << " channels, orders";
    for (std::uint32_t i = 0; i < song.length; ++i) text << ' ' << int{song.patternList[i]};
    for (int i = 0; i < 31; ++i) {
        const Instrument* instrument = song.GetInstrument(i);
        text << '\n' << (instrument ? instrument->name : "");
    }
    return text.str();
}

bool SameCells(const Pattern& a, const Pattern& b, int channels) {
    for (int row = 0; row < std::max(a.Rows(), b.Rows()); ++row)
        for (int track = 0; track < channels; ++track) {
            Cell cell = a.Read(row, track);
            if (cell.volume & kVolumeCommand) cell.volume = kNoVolume;   // no other format takes these
            if (cell != b.Read(row, track)) return false;
        }
    return a.Rows() == b.Rows();
}

TEST(RealSongs, EverySongGoesThroughAllFormats) {
    const auto paths = AllRealSongs();
    ASSERT_FALSE(paths.empty()) << "tools/fetch-songs lays them into build/songs";
    const TempDirectory directory;
    for (const auto& path : paths)
        for (const SaveMode mode : {SaveMode::Module, SaveMode::Xm, SaveMode::Mod}) {
            SCOPED_TRACE(path + " as " + std::to_string(static_cast<int>(mode)));
            const auto song = Load(path);
            ASSERT_EQ(Save(*song, mode, directory.File("song")), 0);
            const auto back = Load(directory.File("song"));
            EXPECT_EQ(Outline(*back), Outline(*song));
            for (int i = 0; mode == SaveMode::Xm && i < song->numPatterns; ++i) {
                EXPECT_TRUE(SameCells(*song->GetPattern(i), *back->GetPattern(i), song->numChannels)) << i;
            }
        }
}

// Every wave is as long as it was, and near it: at the mean, within a share of its loudness. Noise comes back as other
// noise, so there the share is large.
void ExpectPackedSongNear(Song& song, const std::string& path, double share) {
    SaveOptions options;
    options.compress = true;
    DiskStream stream;
    ASSERT_TRUE(stream.Open(path, "wb"));
    ASSERT_EQ(SaveFile(&stream, SaveMode::Module, song, options), 0);
    const auto back = Load(path);
    for (int i = 0; i < kMaxInstruments; ++i)
        for (int k = 0; k < kMaxSamples; ++k) {
            const Sample* sample = song.GetInstrument(i) ? song.GetInstrument(i)->GetSample(k) : nullptr;
            if (!sample || !sample->Wave()) continue;
            SCOPED_TRACE(testing::Message() << "instrument " << i << " sample " << k);
            double loudness = 0;
            for (std::uint32_t at = 0; at < sample->Count(); ++at) loudness += std::abs(sample->Wave()[at]);
            test::ExpectSameWave(*sample, *back->GetInstrument(i)->GetSample(k), 400 + share * loudness / sample->Count());
        }
}

// Of a bass or a pad: a few steady partials, which pack some hundred times smaller.
std::vector<float> TonalWave(int number, std::uint32_t frames, int channels) {
    std::vector<float> wave;
    for (std::uint32_t i = 0; i < frames; ++i)
        for (int channel = 0; channel < channels; ++channel) {
            const double phase = i * (40 + 17 * number + channel) * 2 * 3.14159265358979 / 44100;
            wave.push_back(static_cast<float>(9000 * std::sin(phase) + 3000 * std::sin(2 * phase) + 900 * std::sin(3 * phase)));
        }
    return wave;
}

TEST(RealSongs, EveryWaveComesBackFromACompressedSave) {
    const TempDirectory directory;
    for (const auto& path : AllRealSongs()) {
        SCOPED_TRACE(path);
        ExpectPackedSongNear(*Load(path), directory.File("song"), 0.6);
    }
    SongBuilder tonal;
    for (int i = 0; i < 40; ++i)
        tonal.SampleInstrument(i, TonalWave(i, 44100u * (i == 0 ? 72 : 2) + static_cast<unsigned>(i), 1 + i % 2), 1 + i % 2);
    ExpectPackedSongNear(*tonal.Build(), directory.File("song"), 0.05);
}

// What a program prints that tells about a file, one line each; nothing if there is no such program.
std::vector<std::string> Ask(const std::string& program, const std::string& path) {
    std::vector<std::string> lines;
    const auto close = [](FILE* pipe) { ::pclose(pipe); };
    const std::unique_ptr<FILE, decltype(close)> pipe(::popen((program + " '" + path + "' 2>&1").c_str(), "r"), close);
    char line[512];
    while (pipe && std::fgets(line, sizeof line, pipe.get())) lines.emplace_back(line);
    // These differ for good reasons: the name of the file and its size, the writer, a title of 20 characters.
    constexpr const char* kOther[] = {"Loading", "Filename", "Size",        "Module type",
                                      "Type",    "Tracker",  "Module name", "Title"};
    std::erase_if(lines, [&](const std::string& text) {
        return std::ranges::any_of(kOther, [&](const char* word) { return text.starts_with(word); });
    });
    return lines;
}

// The number behind a line's label and colon, such as "Channels...: 8"; -1 without such a line.
int NumberOf(const std::vector<std::string>& lines, const std::string& label) {
    for (const auto& line : lines)
        if (line.starts_with(label)) return std::atoi(line.substr(line.find(':') + 1).c_str());
    return -1;
}

constexpr const char* kPlayers[] = {"openmpt123 --info", "xmp --load-only -v"};

TEST(RealSongs, OtherPlayersFindInOurFilesWhatTheyFindInTheOriginals) {
    const auto paths = AllRealSongs();
    ASSERT_FALSE(paths.empty()) << "tools/fetch-songs lays them into build/songs";
    const TempDirectory directory;
    const auto ours = directory.File("song");
    for (const std::string program : kPlayers)
        for (const auto& path : paths) {
            SCOPED_TRACE(path);
            ASSERT_EQ(Save(*Load(path), path.ends_with(".xm") ? SaveMode::Xm : SaveMode::Mod, ours), 0);
            const auto expected = Ask(program, path);
            ASSERT_GT(expected.size(), 8u) << "tools/packages lists " << program;
            EXPECT_EQ(Ask(program, ours), expected);
        }
}

// What xmp prints of instrument `number` (from 0), up to its columns of numbers.
std::string InstrumentLine(const std::vector<std::string>& lines, int number) {
    constexpr std::size_t kNumberWidth = 3, kNameWidth = 32;
    char digits[8];
    std::snprintf(digits, sizeof digits, "%02x ", static_cast<unsigned>(number + 1));
    for (const auto& line : lines)
        if (line.starts_with(digits)) return line.substr(kNumberWidth, kNameWidth);
    return {};
}

// The first letters of a name, which are printed alike everywhere.
std::string CommonLetters(const std::string& name) {
    const auto isCommon = [](char c) { return c > ' ' && c <= '~'; };
    return {name.begin(), std::ranges::find_if_not(name, isCommon)};
}

TEST(RealSongs, OtherPlayersFindTheSongInWhatBecameOfItsOtherFormat) {
    const TempDirectory directory;
    const auto ours = directory.File("song");
    for (const auto& path : AllRealSongs()) {
        SCOPED_TRACE(path);
        const bool toMod = path.ends_with(".xm");
        const auto song = Load(path);
        ASSERT_EQ(Save(*song, toMod ? SaveMode::Mod : SaveMode::Xm, ours), 0);
        const auto facts = Ask(kPlayers[0], ours);
        EXPECT_EQ(NumberOf(facts, "Channels"), toMod ? (song->numChannels + 1) / 2 * 2 : song->numChannels);
        EXPECT_EQ(NumberOf(facts, "Orders"), static_cast<int>(song->length));
        const int played = *std::max_element(song->patternList.begin(), song->patternList.begin() + song->length) + 1;
        EXPECT_GE(NumberOf(facts, "Patterns"), played);
        EXPECT_LE(NumberOf(facts, "Patterns"), song->numPatterns);
        const auto lines = Ask(kPlayers[1], ours);
        EXPECT_EQ(NumberOf(lines, "Module length"), static_cast<int>(song->length));
        for (int i = 0; i < 31; ++i) {
            const Instrument* instrument = song->GetInstrument(i);
            const std::string name = instrument ? CommonLetters(instrument->name) : "";
            EXPECT_TRUE(name.empty() || InstrumentLine(lines, i).starts_with(name)) << i << " " << name;
        }
    }
}

}  // namespace
}  // namespace vonta
