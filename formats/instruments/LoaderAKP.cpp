#include "formats/instruments/LoaderAKP.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "formats/instruments/AttackEnvelope.h"
#include "formats/OpenToLoad.h"
#include "formats/samples/LoaderWAV.h"
#include "formats/streams/Record.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::string_view kAkpForm = "APRG";
constexpr std::string_view kKeygroupTag = "kgrp", kLocationTag = "kloc", kEnvelopeTag = "env ", kZoneTag = "zone";
constexpr int kNoKey = -1;
constexpr std::size_t kZoneNameWidth = 20;
constexpr float kCubeOfFull = 1.0f / (100 * 100 * 100);   // times in the file are 0 to 100, on a cubic scale
constexpr double kFullTimeTicks = 500.0;                  // ticks of a time of 100
constexpr double kLeastFadeOut = 50.0;
constexpr double kPanStep = 0.02 * 128;                   // -50 to 50 in the file
constexpr std::int64_t kWaveBytesPerByte = 4;             // memory of one byte of an 8-bit file
constexpr std::int64_t kRepeatAllowance = std::int64_t{32} << 20;

struct Keygroup {
    std::int8_t lowKey = kNoKey, highKey = kNoKey;
    std::int8_t semitones = 0, fine = 0;
    std::int8_t attack = 0, decay = 0, release = 0;
};

template <class Io, class Group>
void LocationRecord(Io& io, Group& group) {          // 16 bytes
    io.Zeros(4);
    io.I8(group.lowKey);
    io.I8(group.highKey);
    io.I8(group.semitones);
    io.I8(group.fine);
    io.Zeros(8);
}

template <class Io, class Group>
void EnvelopeRecord(Io& io, Group& group) {          // 18 bytes
    io.Zeros(1);
    io.I8(group.attack);
    io.Zeros(1);
    io.I8(group.decay);
    io.I8(group.release);
    io.Zeros(13);
}

struct Zone {
    std::string name;
    std::int8_t lowVelocity = 0, highVelocity = 0;
    std::int8_t fine = 0, semitones = 0;
    std::int8_t pan = 0;
    std::int8_t playback = 0;
    std::uint8_t keyTracking = 0;                    // 0: every key plays the same pitch
};

template <class Io, class Fields>
void ZoneRecord(Io& io, Fields& zone) {              // 46 bytes
    io.Zeros(2);
    io.FixedText(zone.name, kZoneNameWidth);
    io.Zeros(12);
    io.I8(zone.lowVelocity);
    io.I8(zone.highVelocity);
    io.I8(zone.fine);
    io.I8(zone.semitones);
    io.Zeros(1);
    io.I8(zone.pan);
    io.I8(zone.playback);
    io.Zeros(2);
    io.U8(zone.keyTracking);
    io.Zeros(2);
}

// Finds and loads the waves of one program.
class WaveFolder {
public:
    WaveFolder(const std::string& programPath, LoadReport& report)
        : beside_(std::filesystem::path(programPath).parent_path()), report_(report) {}

    std::unique_ptr<Sample> Load(LoaderWAV& loader, const std::string& name) {
        const std::string path = Find(loader, name);
        if (path.empty()) {
            report_.Add("Sample \"%s\": there is no such WAV file.", name.c_str());
            return nullptr;
        }
        if (!MayLoad(path)) {
            report_.Add("Sample \"%s\" is used too often: it is missing in some zones.", name.c_str());
            return nullptr;
        }
        LoadReport wave;
        auto sample = loader.Load(path, wave);
        if (!sample) report_.Add("Sample \"%s\": %s.", name.c_str(), wave.error.c_str());
        for (const auto& line : wave.lines) report_.Add("Sample \"%s\": %s", name.c_str(), line.c_str());
        return sample;
    }

private:
    // In the current directory, then beside the program. Names come from a system that did not tell cases apart.
    std::string Find(LoaderWAV& loader, const std::string& name) const {
        if (name.find('/') != std::string::npos) return {};
        for (const auto& folder : {std::filesystem::path(), beside_})
            for (const char* ending : {".WAV", ".wav"})
                if (const std::string path = (folder / (name + ending)).string(); loader.Check(path)) return path;
        return {};
    }

    // Each zone has a wave of its own, even where they share a file: a small program may name a large file often.
    bool MayLoad(const std::string& path) {
        std::error_code error;
        const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path, error)) * kWaveBytesPerByte;
        const bool first = seen_.insert(path).second;
        if (!first && bytes > allowance_) return false;
        allowance_ += first ? bytes : -bytes;
        return true;
    }

    std::filesystem::path beside_;
    LoadReport& report_;
    std::set<std::string> seen_;
    std::int64_t allowance_ = kRepeatAllowance;      // bytes of memory for waves that were loaded before
};

class Program {
public:
    Program(Reader& in, Instrument& instrument, LoadReport& report)
        : in_(in), instrument_(instrument), waves_(in.Stream().GetPath(), report) {}

    void ReadKeygroup(const RiffChunk& chunk);

private:
    void AddZone(const Keygroup& group, const Zone& zone);
    void AddSample(const Keygroup& group, const Zone& zone);

    Reader& in_;
    Instrument& instrument_;
    WaveFolder waves_;
    int sampleCount_ = 0;                            // the next sample's number
};

void Program::ReadKeygroup(const RiffChunk& chunk) {
    Keygroup group;
    bool hasEnvelope = false;
    WalkRiffChunks(in_, chunk.end, [&](const RiffChunk& part) {
        RecordReader record(in_);
        if (part.tag == kLocationTag) {
            LocationRecord(record, group);
        } else if (part.tag == kEnvelopeTag && !std::exchange(hasEnvelope, true)) {
            EnvelopeRecord(record, group);
        } else if (part.tag == kZoneTag) {
            Zone zone;
            ZoneRecord(record, zone);
            if (!in_.Truncated()) AddZone(group, zone);
        }
        return !in_.Truncated();
    });
}

void Program::AddZone(const Keygroup& group, const Zone& zone) {
    if (group.lowKey == kNoKey || group.highKey == kNoKey || sampleCount_ >= kMaxSamples || zone.name.empty()) return;
    AddSample(group, zone);
    const int low = std::max<int>(zone.lowVelocity, 0), high = std::max<int>(zone.highVelocity, 0);
    for (int key = std::max<int>(group.lowKey, 0); key <= group.highKey; ++key) {
        if (zone.keyTracking == 0) instrument_.fixedKey[static_cast<std::size_t>(key)] = 1;
        instrument_.AddKeySample(key, sampleCount_, low, high);   // a save holds no others
    }
    ++sampleCount_;                                  // also without a wave: its keys stay silent
}

void SetTuning(Sample& sample, const Keygroup& group, const Zone& zone, const LoaderWAV& loader) {
    const RateTuning rate = TuneToRate(loader.GetSampleRate());
    int tone = zone.semitones - loader.GetBaseNote() + rate.note + group.semitones;
    int fine = zone.fine + group.fine + rate.fineTune;
    if (fine + rate.fineTune > 127) {
        ++tone;
        fine -= 127;
    } else if (fine < -127) {
        --tone;
        fine += 127;
    }
    sample.toneRel = ToSignedByte(tone);
    sample.fineTune = ToSignedByte(fine);
}

void SetLoop(Sample& sample, int playback, const LoaderWAV& loader) {
    const auto channels = static_cast<std::uint64_t>(sample.Channels());
    SetLoopPoints(sample, loader.GetLoopStart() * channels, loader.GetLoopEnd() * channels);
    const bool always = playback == 2 || playback == 3;
    const bool asRecorded = playback == 4 || playback == 6;
    if (always || (asRecorded && loader.GetLoopEnd() != 0)) LoopForward(sample);
}

// A time of the file as a part of its full scale.
double Cube(std::int8_t time) { return static_cast<double>(time * time * time) * kCubeOfFull; }

void SetVolumeCourse(Instrument& instrument, const Keygroup& group) {
    SetAttackEnvelope(instrument.volumeEnvelopes[0],
                      {{{0, 0}, {Cube(group.attack) * kFullTimeTicks, 64}, {Cube(group.decay) * kFullTimeTicks, 64},
                        {0, 64}}});
    const double fadeOut = (1.0 - Cube(group.release)) * kMaxFadeOut;
    instrument.fadeOut = static_cast<std::uint16_t>(std::clamp<double>(fadeOut, kLeastFadeOut, kMaxFadeOut));
}

void Program::AddSample(const Keygroup& group, const Zone& zone) {
    LoaderWAV loader;
    auto sample = waves_.Load(loader, zone.name);
    if (!sample) return;
    sample->SetName(zone.name);
    sample->volume = 128;
    SetTuning(*sample, group, zone, loader);
    sample->panning = static_cast<std::uint8_t>(std::clamp<double>(zone.pan * kPanStep + 128, 0, 255));
    SetLoop(*sample, zone.playback, loader);
    instrument_.SetSample(sampleCount_, std::move(sample), 1);
    instrument_.numSamples = sampleCount_ + 1;
    SetVolumeCourse(instrument_, group);
}

}  // namespace

bool LoaderAKP::Check(const std::string& path) { return IsRiff(path, kAkpForm); }

std::unique_ptr<Instrument> LoaderAKP::Load(const std::string& path, LoadReport& report) {
    DebugOutput("* LOADING AKP file (%s)...\n", path.c_str());
    DiskStream stream;
    return OpenToLoad(stream, path, report) ? Load(stream, report) : nullptr;
}

std::unique_ptr<Instrument> LoaderAKP::Load(FileStream& stream, LoadReport& report) {
    DebugOutput("\t- file (%s) opened\n", stream.GetPath().c_str());
    auto instrument = std::make_unique<Instrument>();
    instrument->SetName(stream.GetPath());
    Reader in(stream);
    if (IsRiff(stream, kAkpForm)) {
        Program program(in, *instrument, report);
        WalkRiffChunks(in, stream.Size(), [&](const RiffChunk& chunk) {
            if (chunk.IsCut()) report.Add("The program is cut short: what follows is missing.");
            if (chunk.tag == kKeygroupTag) program.ReadKeygroup(chunk);
            return true;
        });
    } else {
        report.Fail("not a keygroup program");
        instrument.reset();
    }
    DebugOutput("\t- file (%s) closed\n", stream.GetPath().c_str());
    if (instrument) DebugOutput("\t- instrument loaded correctly\n");
    return instrument;
}

}  // namespace vonta
