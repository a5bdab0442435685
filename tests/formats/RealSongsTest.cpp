#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "formats/Loaders.h"
#include "tests/support/RealSongs.h"
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

TEST(RealSongs, OtherPlayersFindInOurFilesWhatTheyFindInTheOriginals) {
    const auto paths = AllRealSongs();
    ASSERT_FALSE(paths.empty()) << "tools/fetch-songs lays them into build/songs";
    const TempDirectory directory;
    const auto ours = directory.File("song");
    for (const char* program : {"openmpt123 --info", "xmp --load-only -v"}) {
        const std::string name(program, std::string_view(program).find(' '));
        if (std::system((std::string("command -v ") + name + " >/dev/null").c_str()) != 0) continue;
        for (const auto& path : paths) {
            SCOPED_TRACE(path);
            ASSERT_EQ(Save(*Load(path), path.ends_with(".xm") ? SaveMode::Xm : SaveMode::Mod, ours), 0);
            const auto expected = Ask(program, path);
            ASSERT_GT(expected.size(), 8u) << program;
            EXPECT_EQ(Ask(program, ours), expected);
        }
    }
}

}  // namespace
}  // namespace vonta
