// The single entries through which files come in and go out, and what a loader of each kind answers.
//
// A loader takes any bytes: it checks counts and sizes against what the file holds before it allocates, and gives a
// whole new object or null. Nobody else sees the object until then.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "formats/streams/FileStream.h"
#include "song/Song.h"

namespace vonta {

struct PluginLoader;

// What a loader tells the user: what was dropped or repaired, and why a file was refused.
struct LoadReport {
    static constexpr std::size_t kMaxLines = 20;
    static constexpr std::size_t kMaxLineLength = 255;

    std::vector<std::string> lines;                  // at most maxLines, each cut to kMaxLineLength
    std::size_t maxLines = kMaxLines;                // what a screen has room for
    std::vector<std::string> repairs;                // what the self-check brought inside the limits
    std::string formatName;                          // what the file was recognised as, such as "XM"
    std::string fxDirectory;                         // third place to look for an effect
    const PluginLoader* plugins = nullptr;           // who loads the plug-ins of the file; null: none can be
    std::string error;                               // one line if the load failed

    [[gnu::format(printf, 2, 3)]] void Add(const char* format, ...);   // further lines are dropped
    [[gnu::format(printf, 2, 3)]] void Fail(const char* format, ...);  // the first reason stays
};

class ModuleLoader {
public:
    virtual ~ModuleLoader() = default;
    virtual std::unique_ptr<Song> Load(FileStream& stream, LoadReport& report) = 0;   // null on failure
    virtual bool Check(FileStream& stream) = 0;      // moves the position
    virtual bool HasUnknownChunks() const { return false; }
};

class SampleLoader {
public:
    virtual ~SampleLoader() = default;
    virtual std::unique_ptr<Sample> Load(const std::string& path, LoadReport& report) = 0;   // null on failure
    virtual bool Check(const std::string& path) = 0;
    virtual std::uint32_t GetSampleRate() const { return 0; }           // Hz, 0 if the format has none
    virtual std::uint32_t GetLoopStart() const { return 0; }            // frames
    virtual std::uint32_t GetLoopEnd() const { return 0; }
    virtual int GetBaseNote() const { return 60; }                      // MIDI unity note
};

// An instrument of a foreign format.
class InstrumentLoader {
public:
    virtual ~InstrumentLoader() = default;
    virtual std::unique_ptr<Instrument> Load(const std::string& path, LoadReport& report) = 0;
    virtual bool Check(const std::string& path) = 0;
};

// Offers the stream to native, XM and MOD in this order, validates what comes and names it after its file. Null if none
// knows the format or the load failed: report.error says why. outUnknown tells of chunks of a newer version.
std::unique_ptr<Song> LoadModule(FileStream& stream, bool& outUnknown, LoadReport& report);
std::unique_ptr<Song> LoadModule(const std::string& path, bool& outUnknown, LoadReport& report);

// WAV, then raw. autoTune sets tone and fine tune from the file's rate.
std::unique_ptr<Sample> LoadSample(const std::string& path, bool autoTune, LoadReport& report);

// Native, then XI, SF2 and AKP.
std::unique_ptr<Instrument> LoadInstrument(const std::string& path, LoadReport& report);

struct MixdownOptions {
    std::uint32_t sampleRate = 44100;                // Hz, 8000 to 192000
    std::uint32_t bits = 16;                         // 8, 16 or 32
    std::uint8_t byParts = 0;                        // one file, or one for each part of the signal path
    std::string extension = ".wav";                  // of the one file, as it is to be written
};

enum class SaveMode : int { Module = 2, Xm = 3, Mod = 4, Nothing = 5, Mixdown = 6 };

struct SaveOptions {
    bool compress = false;                           // Module: sample data as Vorbis
    // Mixdown: who renders. This room knows no engine; the caller passes the engine's own. 0 on success.
    std::function<int(const std::string& base, Song& song)> mixdown;
    LoadReport* report = nullptr;                    // what the target format could not hold; may be null
};

// Names the song after the file, writes it and closes the stream. 0 on success; 1 for a null stream, an unknown mode,
// a mode without a writer, or a failed write (the old file and the old name then stay).
int SaveFile(FileStream* stream, SaveMode mode, Song& song, const SaveOptions& options);

// A WAV file of 16 bits. 0 on success, and report.lines tell what it could not hold; 1 for a sample without a wave or a
// failed write, and report.error says why.
int SaveSample(const std::string& path, const Sample& sample, LoadReport& report);
bool SaveSample(FileStream& stream, const Sample& sample);   // closes it; the caller has looked at the length

}  // namespace vonta
