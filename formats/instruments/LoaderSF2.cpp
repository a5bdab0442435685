#include "formats/instruments/LoaderSF2.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "formats/instruments/Sf2Zone.h"
#include "formats/OpenToLoad.h"
#include "formats/samples/SampleSetup.h"
#include "formats/samples/WaveBytes.h"
#include "formats/streams/Record.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::string_view kSf2Form = "sfbk";
constexpr std::string_view kLastSampleName = "EOS";  // of a record that ends the list
constexpr std::size_t kSf2NameWidth = 20;
constexpr std::int64_t kGeneratorBytes = 4, kInstrumentBytes = 22, kBagBytes = 4, kSampleBytes = 46;
constexpr std::size_t kMaxBankName = 256;
constexpr int kMaxTone = 95;
constexpr std::uint16_t kRightSample = 1u << 1, kLeftSample = 1u << 2, kRomSample = 1u << 15;
constexpr std::uint8_t kLastKey = 127;

// More zones than any instrument has: each is entered at up to 128 keys, so a file made of zones would take minutes.
constexpr int kMaxZones = 4096;

// Samples may share a wave, and each gets its own copy. Music stays far below; a made file could ask for 256 times its
// size.
constexpr std::int64_t kWaveAllowance = std::int64_t{32} << 20, kWavePerFileByte = 8;

struct SampleHeader {
    std::string name;
    std::uint32_t start = 0, end = 0;                // frames of the bank's wave
    std::uint32_t loopStart = 0, loopEnd = 0;
    std::uint32_t sampleRate = 0;
    std::uint8_t originalPitch = 0;                  // MIDI key of the recording
    std::uint16_t type = 0;
};

template <class Io, class Header>
void SampleHeaderRecord(Io& io, Header& header) {
    io.FixedText(header.name, kSf2NameWidth);
    io.U32(header.start);
    io.U32(header.end);
    io.U32(header.loopStart);
    io.U32(header.loopEnd);
    io.U32(header.sampleRate);
    io.U8(header.originalPitch);
    io.Zeros(3);                                     // pitch correction, link
    io.U16(header.type);
}

// What the zones say of one sample.
struct ZoneUse {
    bool loop = false;
    int coarseTune = 0;
};

struct KeyRange {
    int low, high;
};

class Bank {
public:
    Bank(FileStream& stream, Instrument& instrument, LoadReport& report)
        : in_(stream), instrument_(instrument), report_(report),
          waveAllowance_(kWaveAllowance + kWavePerFileByte * stream.Size()) {}

    bool Read();                                     // false if nothing sound is there
    void BuildSamples();

private:
    void ReadList(const RiffChunk& list);
    bool ReadInfo(const RiffChunk& chunk);
    bool ReadWavePlace(const RiffChunk& chunk);
    bool ReadPresetGenerators(const RiffChunk& chunk);
    bool ReadInstruments(const RiffChunk& chunk);
    bool ReadBags(const RiffChunk& chunk);
    bool ReadInstrumentGenerators(const RiffChunk& chunk);
    bool ReadSampleHeaders(const RiffChunk& chunk);
    bool IsWindowOpen(int zone) const { return firstGenerator_ <= zone && zone < firstGenerator_ + generatorCount_; }
    void AddZone(Sf2Zone& zone, int number);
    std::unique_ptr<Sample> MakeSample(const SampleHeader& header, const ZoneUse& use);
    void ReadWave(const SampleHeader& header, Sample& sample);

    using ReadPart = bool (Bank::*)(const RiffChunk& chunk);   // false ends the list
    struct PartRow {
        std::string_view list, tag;
        ReadPart read;
    };
    static const PartRow kParts[];

    Reader in_;
    Instrument& instrument_;
    LoadReport& report_;
    bool damaged_ = false;
    std::int64_t wavePlace_ = 0;                     // in the stream
    std::int64_t waveFrames_ = 0;
    std::int64_t waveAllowance_;                     // bytes of memory
    int firstBag_ = -1, secondBag_ = -1;             // of the first two instruments
    // The generators of the first instrument. Zones are counted against it, so the zones of the next instruments are
    // taken too as long as their number lies inside.
    int firstGenerator_ = -1, generatorCount_ = -1;
    std::vector<KeyRange> firstInstrumentKeys_;      // of the preset zones that name bank instrument 0
    std::array<ZoneUse, kMaxSamples> uses_;
    std::vector<SampleHeader> samples_;
};

// In the order of a bank, on which the generators depend.
const Bank::PartRow Bank::kParts[] = {
    {"INFO", "INAM", &Bank::ReadInfo},
    {"sdta", "smpl", &Bank::ReadWavePlace},
    {"pdta", "pgen", &Bank::ReadPresetGenerators},
    {"pdta", "inst", &Bank::ReadInstruments},
    {"pdta", "ibag", &Bank::ReadBags},
    {"pdta", "igen", &Bank::ReadInstrumentGenerators},
    {"pdta", "shdr", &Bank::ReadSampleHeaders},
};

bool Bank::Read() {
    if (!IsRiff(in_.Stream(), kSf2Form)) {
        report_.Fail("not a SoundFont");
        return false;
    }
    WalkRiffChunks(in_, in_.Stream().Size(), [&](const RiffChunk& chunk) {
        if (chunk.tag != kListTag || chunk.Held() < static_cast<std::int64_t>(kRiffTagBytes)) return false;
        if (chunk.IsCut()) report_.Add("The bank is cut short: what follows is missing.");
        ReadList(chunk);
        return !damaged_;
    });
    return !damaged_;
}

void Bank::ReadList(const RiffChunk& list) {
    const std::string type = in_.FixedText(kRiffTagBytes);
    if (std::ranges::find(kParts, type, &PartRow::list) == std::end(kParts)) return;
    DebugOutput("Chunk %s\n", type.c_str());
    WalkRiffChunks(in_, list.end, [&](const RiffChunk& chunk) {
        const auto row = std::ranges::find_if(
            kParts, [&](const PartRow& part) { return part.list == type && part.tag == chunk.tag; });
        return row == std::end(kParts) || (this->*row->read)(chunk);
    });
}

bool Bank::ReadInfo(const RiffChunk& chunk) {
    const std::size_t width = std::min<std::size_t>(chunk.size, kMaxBankName);
    if (in_.Remaining() < static_cast<std::int64_t>(width)) {
        report_.Fail("the bank is cut short in its name");
        damaged_ = true;
        return false;
    }
    instrument_.SetName(in_.FixedText(width));
    return true;
}

bool Bank::ReadWavePlace(const RiffChunk& chunk) {
    wavePlace_ = chunk.body;
    waveFrames_ = chunk.Held() / 2;
    return true;
}

bool Bank::ReadPresetGenerators(const RiffChunk& chunk) {
    Sf2Zone zone;
    for (std::int64_t i = 0; i < chunk.Held() / kGeneratorBytes; ++i) {
        const std::uint16_t generator = in_.U16();
        zone.Take(generator, in_.U16());
        if (zone.instrument == Sf2Zone::kNone) continue;
        if (zone.instrument == 0 && firstInstrumentKeys_.size() < kMaxZones)
            firstInstrumentKeys_.push_back({zone.lowKey, zone.highKey});
        zone.lowKey = zone.highKey = zone.instrument = Sf2Zone::kNone;
    }
    return !chunk.IsCut();
}

bool Bank::ReadInstruments(const RiffChunk& chunk) {
    if (chunk.Held() < 2 * kInstrumentBytes) return false;
    for (int* bag : {&firstBag_, &secondBag_}) {
        in_.Skip(kInstrumentBytes - 2);
        *bag = in_.U16();
    }
    return true;
}

bool Bank::ReadBags(const RiffChunk& chunk) {
    for (std::int64_t i = 0; i < chunk.Held() / kBagBytes; ++i) {
        const int generator = in_.U16();
        in_.Skip(kBagBytes - 2);
        if (i == firstBag_) firstGenerator_ = generator;
        if (i == secondBag_ + firstBag_) generatorCount_ = generator - firstGenerator_;
    }
    return !chunk.IsCut();
}

bool Bank::ReadInstrumentGenerators(const RiffChunk& chunk) {
    Sf2Zone zone;
    int zones = 0;
    for (std::int64_t i = 0; i < chunk.Held() / kGeneratorBytes && IsWindowOpen(zones); ++i) {
        if (zones == kMaxZones) {
            report_.Add("The bank's first instrument has more than %i zones: the others are dropped.", kMaxZones);
            break;
        }
        const std::uint16_t generator = in_.U16();
        zone.Take(generator, in_.U16());
        if (zone.sample != Sf2Zone::kNone) AddZone(zone, zones++);
    }
    return !chunk.IsCut();
}

// A zone ends at its sample. Leaves `zone` as the next one starts; what stood before a first sample has flowed in.
void Bank::AddZone(Sf2Zone& zone, int number) {
    const auto index = static_cast<std::size_t>(number);
    if (!zone.HasKeys() && index < firstInstrumentKeys_.size()) {
        zone.lowKey = firstInstrumentKeys_[index].low;
        zone.highKey = firstInstrumentKeys_[index].high;
    }
    if (zone.HasKeys()) {
        ZoneUse& use = uses_[static_cast<std::size_t>(zone.sample)];
        use = {use.loop || zone.loop, zone.coarseTune};
        for (int key = zone.lowKey; key <= std::min<int>(zone.highKey, kLastKey); ++key) {
            if (zone.scaleTuning == 0) instrument_.fixedKey[static_cast<std::size_t>(key)] = 1;
            instrument_.AddKeySample(key, zone.sample, zone.lowVelocity, zone.highVelocity);
        }
    }
    SetVolumeCourse(instrument_, zone);              // the last zone's stands
    zone.StartNext();
}

bool Bank::ReadSampleHeaders(const RiffChunk& chunk) {
    RecordReader record(in_);
    const std::int64_t count = chunk.Held() / kSampleBytes;
    for (std::int64_t i = 0; i < count; ++i) {
        SampleHeader header;
        SampleHeaderRecord(record, header);
        if (header.name == kLastSampleName) continue;
        if (samples_.size() == kMaxSamples) {
            report_.Add("The bank has %i samples: the first %i are taken.", static_cast<int>(count) - 1, kMaxSamples);
            return false;
        }
        samples_.push_back(std::move(header));
    }
    return !chunk.IsCut();
}

// The samples of the whole bank. They come last, when the place of the wave and the zones are known.
void Bank::BuildSamples() {
    for (std::size_t i = 0; i < samples_.size(); ++i) instrument_.AddSample(MakeSample(samples_[i], uses_[i]));
    if (samples_.empty()) report_.Add("The bank holds no samples.");
}

std::unique_ptr<Sample> Bank::MakeSample(const SampleHeader& header, const ZoneUse& use) {
    auto sample = std::make_unique<Sample>();
    sample->SetName(header.name);
    sample->volume = 128;
    if (header.type & (kRightSample | kRomSample)) sample->panning = 255;
    if (header.type & (kLeftSample | kRomSample)) sample->panning = 0;
    const RateTuning rate = TuneToRate(header.sampleRate);
    const int pitch = header.originalPitch <= kLastKey ? header.originalPitch : kDefaultBaseNote;
    sample->toneRel = ToSignedByte(std::min(use.coarseTune - pitch + rate.note, kMaxTone));
    sample->fineTune = ToSignedByte(rate.fineTune);
    ReadWave(header, *sample);
    if (header.start <= header.loopStart && header.loopStart < header.loopEnd)
        SetLoopPoints(*sample, header.loopStart - header.start, header.loopEnd - header.start);
    if (use.loop) LoopForward(*sample);
    return sample;
}

// Straight from the file: a large bank never lies in memory twice.
void Bank::ReadWave(const SampleHeader& header, Sample& sample) {
    const std::int64_t end = std::min<std::int64_t>(header.end, waveFrames_);
    const std::int64_t frames = end - header.start;
    if (frames < static_cast<std::int64_t>(header.end) - header.start)
        report_.Add("Sample \"%s\": the file does not hold all of it.", header.name.c_str());
    if (frames <= 0) return;
    const auto bytes = frames * static_cast<std::int64_t>(sizeof(float));
    if (frames > kMaxWaveFloats || bytes > waveAllowance_) {
        report_.Add("Sample \"%s\": too long, it stays empty.", header.name.c_str());
        return;
    }
    waveAllowance_ -= bytes;
    in_.Stream().Seek(wavePlace_ + 2 * std::int64_t{header.start}, kFromStart);
    ReadWaveValues<std::int16_t>(in_, sample.Allocate(static_cast<std::uint32_t>(frames), 1));
}

}  // namespace

bool LoaderSF2::Check(const std::string& path) { return IsRiff(path, kSf2Form); }

std::unique_ptr<Instrument> LoaderSF2::Load(const std::string& path, LoadReport& report) {
    DebugOutput("* LOADING SF2 file (%s)...\n", path.c_str());
    DiskStream stream;
    return OpenToLoad(stream, path, report) ? Load(stream, report) : nullptr;
}

std::unique_ptr<Instrument> LoaderSF2::Load(FileStream& stream, LoadReport& report) {
    DebugOutput("\t- file (%s) opened\n", stream.GetPath().c_str());
    auto instrument = std::make_unique<Instrument>();
    Bank bank(stream, *instrument, report);
    if (bank.Read())
        bank.BuildSamples();
    else
        instrument.reset();
    DebugOutput("\t- file (%s) closed\n", stream.GetPath().c_str());
    if (instrument) DebugOutput("\t- instrument loaded correctly\n");
    return instrument;
}

}  // namespace vonta
