#include <algorithm>
#include <string>

#include "platform/Shared.h"
#include "script/binding/ScriptCall.h"
#include "script/song/Wrappers.h"

namespace vonta {
namespace {

constexpr const char* kBadBpm = "BPM parameter out of range";
constexpr const char* kBadTempo = "Tempo parameter out of range";
constexpr const char* kBadChannels = "Channels parameter out of range";
constexpr const char* kBadLength = "Lenght parameter out of range";
constexpr const char* kBadPosition = "Position parameter out of range";
constexpr const char* kBehindLength = "Position value is bigger than PatternPosLenght";
constexpr const char* kBadRestart = "RestartPattern parameter out of range";
constexpr const char* kRestartBehindLength = "RestartPattern value is bigger than PatternPosLenght";
constexpr int kNewChannels = 4;
constexpr std::size_t kSongBytes = sizeof(Song), kInstrumentBytes = sizeof(Instrument);

template <class Work>
int WithSong(ScriptCall& call, Work work) { return With<VTSong>(call, kSongGone, work); }

int Construct(ScriptCall& call) {
    call.Vm().NoteMemory(kSongBytes);
    auto song = std::make_unique<Song>();
    song->numChannels = kNewChannels;
    song->length = 1;
    return call.GiveObject(MakeObject<VTSong>(std::make_shared<HeldSong>(std::move(song))));
}

std::string JoinedTexts(ScriptCall& call) {
    std::string text;
    for (int i = 0; i < std::max(call.Count(), 1); ++i) text += call.Vm().CheckString(call.Index(i));
    return text;
}

// The methods that only read one value.
template <auto read>
int GiveValue(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) { return call.GiveNumber((song.*read)()); });
}

// Those that only store one, which has been checked.
template <auto store>
int StoreValue(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        (song.*store)(static_cast<std::uint32_t>(call.Integer(0)));
        return 0;
    });
}

int GetTitle(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) { return call.GiveText(song.title); });
}

int SetTitle(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        song.SetTitle(JoinedTexts(call));
        return 0;
    });
}

int GetComments(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) { return call.GiveText(song.comments); });
}

int SetComments(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        std::string text = JoinedTexts(call);
        call.Vm().NoteMemory(text.size());
        song.SetComments(std::move(text));
        return 0;
    });
}

int GetNumChannels(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) { return call.GiveNumber(Load(song.numChannels)); });
}

int SetNumChannels(ScriptCall& call) {
    int channels = std::clamp(call.Integer(0), -kMaxChannels, 2 * kMaxChannels);
    channels += channels & 1;
    if (channels < 1 || channels > kMaxChannels) return call.Warn(kBadChannels);
    return WithSong(call, [&](Song& song) {
        song.SetNumChannels(channels);
        return 0;
    });
}

int SetLength(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        const auto length = static_cast<std::uint32_t>(call.Integer(0));
        song.SetPatternPosLenght(length);
        if (song.GetPatternPosRestart() >= length) song.SetPatternPosRestart(length - 1);
        return 0;
    });
}

bool IsBehindLength(const Song& song, int position) {
    return position >= static_cast<int>(std::min<std::uint32_t>(song.GetPatternPosLenght(), kMaxPositions));
}

int GetPosition(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) {
        if (IsBehindLength(song, call.Integer(0))) return call.Warn(kBehindLength);
        return call.GiveNumber(song.GetPatternPosIndex(call.Integer(0)));
    });
}

int SetPosition(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        if (IsBehindLength(song, call.Integer(0))) return call.Warn(kBehindLength);
        const int pattern = call.Integer(1);
        if (pattern < 0 || pattern >= kMaxPatterns) return call.Warn(kBadIndex);
        song.SetPatternPosIndex(call.Integer(0), pattern);
        return 0;
    });
}

int SetRestart(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        if (IsBehindLength(song, call.Integer(0))) return call.Warn(kRestartBehindLength);
        song.SetPatternPosRestart(static_cast<std::uint32_t>(call.Integer(0)));
        return 0;
    });
}

int GetPattern(ScriptCall& call) {
    return WithSong(call, [&](Song& song) {
        const int number = call.Integer(0);
        const auto& held = call.Self<VTSong>().held;
        if (!song.GetPattern(number)) {
            auto pattern = std::make_unique<Pattern>();
            call.Vm().NoteMemory(sizeof *pattern);
            const SongEdit edit(held.get());
            song.SetPattern(number, std::move(pattern));
            song.numPatterns = std::max(song.numPatterns, number + 1);
        }
        return call.GiveObject(MakeObject<VTPattern>(held, number, song.GetPattern(number)));
    });
}

int ExistInstrument(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) { return call.GiveTruth(song.GetInstrument(call.Integer(0))); });
}

int GetInstrument(ScriptCall& call) {
    return WithSong(call, [&](const Song& song) {
        Instrument* const instrument = song.GetInstrument(call.Integer(0));
        if (!instrument) return call.Warn(kInstrumentGone);
        auto held = std::make_shared<HeldInstrument>(call.Self<VTSong>().held, instrument);
        return call.GiveObject(MakeObject<VTInstrument>(std::move(held)));
    });
}

// One that belongs to a song already stays there, and this one gets a copy: no part has two owners.
int SetInstrument(ScriptCall& call) {
    HeldInstrument& held = *call.As<VTInstrument>(1).held;
    return WithSong(call, [&](Song& song) {
        Instrument* const instrument = held.Find();
        const int number = call.Integer(0);
        if (!instrument) return call.Warn(kInstrumentGone);
        if (song.GetInstrument(number) == instrument) return 0;
        const auto& parent = call.Self<VTSong>().held;
        std::unique_ptr<Instrument> stored;
        if (held.owned) {
            held.song = parent;
            stored = std::move(held.owned);
        } else {
            call.Vm().NoteMemory(kInstrumentBytes);
            stored = instrument->Duplicate();
        }
        const SongEdit edit(parent.get(), SongEdit::Frees::Sound);
        song.SetInstrument(number, std::move(stored));
        song.numInstruments = std::max(song.numInstruments, number + 1);
        return 0;
    });
}

constexpr const char* kExample = R"(song = VTSong()
song:SetTitle("Sketch in ", "C")
song:SetPatternPosLenght(2)
song:SetPatternPosIndex(1, 3)
song:GetPattern(3):SetNote(0, 0, 36)
)";

}  // namespace

const ScriptClass& VTSongClass() {
    const Parameter position = Number("position", 0, kMaxPositions - 1, kBadPosition);
    const Parameter instrument = Number("index", 0, kMaxInstruments - 1, kBadIndex);
    static const ScriptClass scriptClass(
        "VTSong",
        {"A song: a list of pattern numbers, patterns and instruments. All that has to do with it is counted from 0. "
         "Every method warns \"This song does not exist\" if the song has gone.",
         kExample},
        {"VTSong", {}, "VTSong",
         "A new song: 125 BPM, tempo 6, 4 channels, one position, and no patterns or instruments yet.", Construct},
        {
            {"GetTitle", {}, "string", "Its title.", GetTitle},
            {"SetTitle", {Rest("texts", "one or more strings")}, nullptr, "All texts joined, at most 254 bytes.",
             SetTitle},
            {"GetComments", {}, "string", "Its comments, an empty text if there are none.", GetComments},
            {"SetComments", {Rest("texts", "one or more strings")}, nullptr, "All texts joined.", SetComments},
            {"GetBPM", {}, "number", "Beats a minute.", GiveValue<&Song::GetBPM>},
            {"SetBPM", {Number("bpm", kMinBpm, kMaxBpm, kBadBpm)}, nullptr, "Sets them.", StoreValue<&Song::SetBPM>},
            {"GetTempo", {}, "number", "Ticks of a row.", GiveValue<&Song::GetTempo>},
            {"SetTempo", {Number("tempo", 0, kMaxTempo, kBadTempo)}, nullptr, "Sets them.",
             StoreValue<&Song::SetTempo>},
            {"GetNumChannels", {}, "number", "How many channels are played.", GetNumChannels},
            {"SetNumChannels", {Number("channels")}, nullptr,
             "Sets how many, from 1 to 64; an odd number is raised by one.", SetNumChannels, {kBadChannels}},
            {"GetPatternPosLenght", {}, "number", "How many positions the song's list has.",
             GiveValue<&Song::GetPatternPosLenght>},
            {"SetPatternPosLenght", {Number("length", 1, kMaxPositions - 1, kBadLength)}, nullptr,
             "Sets how many. A restart position behind it becomes the last.", SetLength},
            {"GetPatternPosIndex", {position}, "number",
             "The number of the pattern at the position; -1 after a warning.",
             GetPosition, {kBehindLength}, -1},
            {"SetPatternPosIndex", {position, Number("pattern")}, nullptr,
             "Puts a pattern, from 0 to 255, at the position.", SetPosition, {kBehindLength, kBadIndex}},
            {"GetPatternPosRestart", {}, "number", "The position at which the song goes on after its end.",
             GiveValue<&Song::GetPatternPosRestart>},
            {"SetPatternPosRestart", {Number("position", 0, kMaxPositions - 2, kBadRestart)}, nullptr, "Sets it.",
             SetRestart,
             {kRestartBehindLength}},
            {"GetPattern", {Number("index", 0, kMaxPatterns - 1, kBadIndex)}, "VTPattern",
             "A pattern; one that is not there is made, with 64 rows.", GetPattern},
            {"ExistInstrument", {instrument}, "boolean", "Whether there is an instrument.", ExistInstrument},
            {"GetInstrument", {instrument}, "VTInstrument", "An instrument.", GetInstrument, {kInstrumentGone}},
            {"SetInstrument", {instrument, Object("instrument", "VTInstrument")}, nullptr,
             "Puts an instrument in its place. One that is in a song already is copied.", SetInstrument,
             {kInstrumentGone}},
        });
    return scriptClass;
}

}  // namespace vonta
