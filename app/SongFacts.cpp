#include "app/SongFacts.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/Messages.h"

namespace vonta {
namespace {

const char* EndText(SongLength::End end) {
    switch (end) {
        case SongLength::End::Song: return "";
        case SongLength::End::Circle: return ", then it goes round in a circle";
        case SongLength::End::Limit: return " or more";
    }
    return "";
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
    const auto line = [&](const char* label) -> std::ostream& { return Label(out, label); };
    line("File") << Printable(facts.file) << '\n';
    line("Title") << Trimmed(facts.title) << '\n';
    line("Format") << facts.format << '\n';
    line("Duration") << ClockTextTenths(facts.length.seconds) << EndText(facts.length.end) << '\n';
    line("Channels") << facts.channels << '\n';
    line("Patterns") << facts.patterns << '\n';
    line("Order") << facts.orderLength << " positions, " << facts.rows << " rows, restart at " << facts.restart << '\n';
    line("Tempo") << facts.bpm << " BPM, " << facts.ticksPerRow << " ticks a row\n";
    line("Instruments") << facts.instruments.size() << '\n';
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
    for (const InstrumentFacts& instrument : facts.instruments) instruments.push_back(AsJson(instrument));
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
    return Dump(song);
}

}  // namespace vonta
