#include "app/SongFacts.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/Messages.h"
#include "engine/Channel.h"

namespace vonta {
namespace {

constexpr int kMiddleNote = 48;                      // C-4
constexpr const char* kLoopNames[] = {"none", "forward", "ping-pong"};

SampleFacts DescribeSample(const Sample& sample, int number) {
    const SampleData& data = sample.data->Source();
    const auto channels = static_cast<std::uint32_t>(sample.Channels());
    SampleFacts facts;
    facts.number = number;
    facts.name = sample.name;
    facts.frames = sample.Count() / channels;
    facts.channels = static_cast<int>(channels);
    facts.bits = sample.bits;
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
    InstrumentFacts facts{number, instrument.name, {}};
    for (int i = 0; i < kMaxSamples; ++i)
        if (const Sample* sample = instrument.GetSample(i)) facts.samples.push_back(DescribeSample(*sample, i + 1));
    return facts;
}

const char* EndText(SongLength::End end) {
    switch (end) {
        case SongLength::End::Song: return "";
        case SongLength::End::Circle: return ", then it goes round in a circle";
        case SongLength::End::Limit: return " or more";
    }
    return "";
}

// Old trackers fill names up with blanks.
std::string Trimmed(std::string_view text) {
    return Printable(text.substr(0, text.find_last_not_of(' ') + 1));
}

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

nlohmann::ordered_json SampleAsJson(const SampleFacts& sample) {
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

}  // namespace

SongFacts GatherFacts(const Song& song) {
    SongFacts facts;
    facts.title = song.title;
    facts.comments = song.comments;
    facts.channels = song.numChannels;
    facts.patterns = song.numPatterns;
    facts.orderLength = static_cast<int>(song.GetPatternPosLenght());
    facts.restart = static_cast<int>(song.GetPatternPosRestart());
    facts.bpm = static_cast<int>(song.GetBPM());
    facts.ticksPerRow = static_cast<int>(song.GetTempo());
    for (int position = 0; position < facts.orderLength; ++position) {
        const int index = song.GetPatternPosIndex(position);
        facts.order.push_back(index);
        const Pattern* pattern = song.GetPattern(index);
        facts.rows += pattern ? pattern->Rows() : kDefaultRows;   // a missing one plays empty
    }
    for (int i = 0; i < kMaxInstruments; ++i) {
        const Instrument* instrument = song.GetInstrument(i);
        if (!instrument) continue;
        InstrumentFacts described = DescribeInstrument(*instrument, i + 1);
        if (!described.samples.empty() || !described.name.empty()) facts.instruments.push_back(std::move(described));
    }
    return facts;
}

std::string FormatAsText(const SongFacts& facts) {
    std::ostringstream out;
    const auto line = [&](const char* label) -> std::ostream& { return out << std::left << std::setw(13) << label; };
    line("File") << Printable(facts.file) << '\n';
    line("Title") << Trimmed(facts.title) << '\n';
    line("Format") << facts.format << '\n';
    line("Duration") << ClockTextTenths(facts.length.seconds) << EndText(facts.length.end) << '\n';
    line("Channels") << facts.channels << '\n';
    line("Patterns") << facts.patterns << '\n';
    line("Order") << facts.orderLength << " positions, " << facts.rows << " rows, restart at " << facts.restart << '\n';
    line("Tempo") << facts.bpm << " BPM, " << facts.ticksPerRow << " ticks a row\n";
    line("Instruments") << facts.instruments.size() << '\n';
    out << std::right;
    for (const InstrumentFacts& instrument : facts.instruments) {
        out << std::setw(3) << instrument.number << "  " << Trimmed(instrument.name) << '\n';
        for (const SampleFacts& sample : instrument.samples) PrintSample(out, sample);
    }
    if (!facts.comments.empty()) out << "Comments\n" << Printable(facts.comments, Layout::Keep) << '\n';
    return out.str();
}

std::string FormatAsJson(const SongFacts& facts) {
    constexpr const char* kEnds[] = {"song", "circle", "limit"};
    nlohmann::ordered_json instruments = nlohmann::ordered_json::array();
    for (const InstrumentFacts& instrument : facts.instruments) {
        nlohmann::ordered_json samples = nlohmann::ordered_json::array();
        for (const SampleFacts& sample : instrument.samples) samples.push_back(SampleAsJson(sample));
        instruments.push_back({{"number", instrument.number}, {"name", instrument.name}, {"samples", samples}});
    }
    const nlohmann::ordered_json song{{"file", facts.file},
                                      {"title", facts.title},
                                      {"format", facts.format},
                                      {"durationSeconds", facts.length.seconds},
                                      {"end", kEnds[static_cast<int>(facts.length.end)]},
                                      {"channels", facts.channels},
                                      {"patterns", facts.patterns},
                                      {"orderLength", facts.orderLength},
                                      {"restart", facts.restart},
                                      {"order", facts.order},
                                      {"rows", facts.rows},
                                      {"bpm", facts.bpm},
                                      {"ticksPerRow", facts.ticksPerRow},
                                      {"instruments", instruments},
                                      {"comments", facts.comments}};
    // Names of files are any bytes: what is not UTF-8 becomes U+FFFD.
    return song.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace vonta
