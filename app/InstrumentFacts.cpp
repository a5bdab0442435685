#include "app/InstrumentFacts.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>

#include "app/Messages.h"
#include "engine/channels/Channel.h"

namespace vonta {
namespace {

constexpr int kMiddleNote = 48;                      // C-4
constexpr const char* kLoopNames[] = {"none", "forward", "ping-pong"};
constexpr const char* kEnvelopeNames[kEnvelopeKinds] = {"volume", "pan", "cutoff", "resonance"};

// Neighbouring keys whose zones are the same count as one range.
std::vector<ZoneFacts> DescribeZones(const Instrument& instrument) {
    std::vector<ZoneFacts> facts;
    for (int low = 0, high; low < kKeys; low = high + 1) {
        const auto zonesOf = [&](int key) -> const auto& { return instrument.keyZones[static_cast<std::size_t>(key)]; };
        high = low;
        while (high + 1 < kKeys && zonesOf(high + 1) == zonesOf(low)) ++high;
        for (const KeyZone& zone : zonesOf(low)) {
            ZoneFacts& described = facts.emplace_back(low, high, zone.velocityLow, zone.velocityHigh);
            for (std::size_t layer = 0; layer < zone.numSamples; ++layer)
                described.samples.push_back(zone.samples[layer] + 1);
        }
    }
    return facts;
}

EnvelopeFacts DescribeEnvelope(const Envelope& envelope, const char* kind, int alternative) {
    EnvelopeFacts facts{kind, alternative, envelope.numPoints};
    facts.lastTick = envelope.points[static_cast<std::size_t>(envelope.numPoints - 1)].x;
    if (envelope.sustainOn) facts.sustain = envelope.sustainPoint + 1;
    if (envelope.loopOn) {
        facts.loopStart = envelope.loopStart + 1;
        facts.loopEnd = envelope.loopEnd + 1;
    }
    return facts;
}

std::vector<EnvelopeFacts> DescribeEnvelopes(const Instrument& instrument) {
    std::vector<EnvelopeFacts> facts;
    for (int kind = 0; kind < kEnvelopeKinds; ++kind) {
        int alternative = 0;
        for (const Envelope& envelope : instrument.GetEnvelopes(static_cast<EnvelopeKind>(kind))) {
            ++alternative;
            if (envelope.enabled) facts.push_back(DescribeEnvelope(envelope, kEnvelopeNames[kind], alternative));
        }
    }
    return facts;
}

std::string NoteName(int note) {
    constexpr const char* kNames[] = {"C-", "C#", "D-", "D#", "E-", "F-", "F#", "G-", "G#", "A-", "A#", "B-"};
    return kNames[note % 12] + std::to_string(note / 12);
}

void PrintZone(std::ostream& out, const ZoneFacts& zone) {
    out << "     " << NoteName(zone.keyLow) << " to " << NoteName(zone.keyHigh) << ", velocity " << zone.velocityLow
        << " to " << zone.velocityHigh << ':';
    for (const int sample : zone.samples) out << ' ' << sample;
    out << '\n';
}

void PrintEnvelope(std::ostream& out, const EnvelopeFacts& envelope) {
    out << "     " << envelope.kind << ' ' << envelope.alternative << ": " << envelope.points << " points, "
        << envelope.lastTick << " ticks";
    if (envelope.sustain) out << ", sustain at point " << envelope.sustain;
    if (envelope.loopStart) out << ", loop of points " << envelope.loopStart << " to " << envelope.loopEnd;
    out << '\n';
}

nlohmann::ordered_json AsJson(const ZoneFacts& zone) {
    return {{"keys", {zone.keyLow, zone.keyHigh}},
            {"velocities", {zone.velocityLow, zone.velocityHigh}},
            {"samples", zone.samples}};
}

nlohmann::ordered_json AsJson(const EnvelopeFacts& envelope) {
    return {{"kind", envelope.kind},       {"alternative", envelope.alternative}, {"points", envelope.points},
            {"ticks", envelope.lastTick},  {"sustain", envelope.sustain},
            {"loop", {envelope.loopStart, envelope.loopEnd}}};
}

template <class Facts>
nlohmann::ordered_json ListAsJson(const std::vector<Facts>& list) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Facts& facts : list) all.push_back(AsJson(facts));
    return all;
}

}  // namespace

SampleFacts DescribeSample(const Sample& sample, int number) {
    const SampleData& data = sample.data->Source();
    const auto channels = static_cast<std::uint32_t>(sample.Channels());
    SampleFacts facts;
    facts.number = number;
    facts.name = sample.name;
    facts.frames = sample.Count() / channels;
    facts.channels = static_cast<int>(channels);
    facts.bits = sample.IsEightBit() ? 8 : sample.IsSixteenBit() ? 16 : 32;
    facts.volume = sample.volume;
    facts.panning = sample.panning;
    facts.toneRel = sample.toneRel;
    facts.fineTune = sample.fineTune;
    facts.middleRate = PeriodToFrequency(NoteToPeriod(kMiddleNote + sample.toneRel, sample.fineTune));
    facts.isClone = sample.data->isClone;
    const bool known = data.loopType == VTSAMPLE_LOOP_FORDWARD || data.loopType == VTSAMPLE_LOOP_PINGPONG;
    if (known && data.loopEnd > data.loopStart) {
        facts.loop = kLoopNames[data.loopType];
        facts.loopStart = data.loopStart / channels;
        facts.loopEnd = data.loopEnd / channels;
    }
    return facts;
}

InstrumentFacts DescribeInstrument(const Instrument& instrument, int number) {
    InstrumentFacts facts{number, instrument.name, instrument.fadeOut, {}, DescribeZones(instrument),
                          DescribeEnvelopes(instrument)};
    for (int i = 0; i < kMaxSamples; ++i)
        if (const Sample* sample = instrument.GetSample(i)) facts.samples.push_back(DescribeSample(*sample, i + 1));
    return facts;
}

std::string Dump(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::ostream& Label(std::ostream& out, const char* label) {
    return out << std::left << std::setw(13) << label << std::right;
}

std::string Trimmed(std::string_view text) { return Printable(text.substr(0, text.find_last_not_of(' ') + 1)); }

void PrintSample(std::ostream& out, const SampleFacts& sample) {
    const std::string name = Trimmed(sample.name);
    out << "     " << std::setw(3) << sample.number << "  " << name << (name.empty() ? "" : ": ");
    if (sample.frames == 0) {
        out << "empty\n";
        return;
    }
    out << sample.frames << " frames, " << (sample.channels == 2 ? "stereo" : "mono") << ", " << sample.bits
        << " bits, volume " << sample.volume << ", panning " << sample.panning << ", tone " << std::showpos
        << sample.toneRel << " fine " << sample.fineTune << std::noshowpos << " (C-4 at " << sample.middleRate << " Hz)";
    if (sample.loopEnd) out << ", " << sample.loop << " loop " << sample.loopStart << " to " << sample.loopEnd;
    if (sample.isClone) out << ", clone";
    out << '\n';
}

void PrintInstrument(std::ostream& out, const InstrumentFacts& instrument) {
    Label(out, "Name") << Trimmed(instrument.name) << '\n';
    Label(out, "Fade-out") << instrument.fadeOut << '\n';
    Label(out, "Samples") << instrument.samples.size() << '\n';
    for (const SampleFacts& sample : instrument.samples) PrintSample(out, sample);
    Label(out, "Zones") << instrument.zones.size() << '\n';
    for (const ZoneFacts& zone : instrument.zones) PrintZone(out, zone);
    Label(out, "Envelopes") << instrument.envelopes.size() << '\n';
    for (const EnvelopeFacts& envelope : instrument.envelopes) PrintEnvelope(out, envelope);
}

nlohmann::ordered_json AsJson(const SampleFacts& sample) {
    return {{"number", sample.number},
            {"name", sample.name},
            {"frames", sample.frames},
            {"channels", sample.channels},
            {"bits", sample.bits},
            {"volume", sample.volume},
            {"panning", sample.panning},
            {"toneRel", sample.toneRel},
            {"fineTune", sample.fineTune},
            {"middleRate", sample.middleRate},
            {"clone", sample.isClone},
            {"loop", {{"type", sample.loop}, {"start", sample.loopStart}, {"end", sample.loopEnd}}}};
}

nlohmann::ordered_json AsJson(const InstrumentFacts& instrument) {
    return {{"number", instrument.number},
            {"name", instrument.name},
            {"fadeOut", instrument.fadeOut},
            {"samples", ListAsJson(instrument.samples)},
            {"zones", ListAsJson(instrument.zones)},
            {"envelopes", ListAsJson(instrument.envelopes)}};
}

}  // namespace vonta
