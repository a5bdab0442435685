#include <algorithm>

#include "formats/Loaders.h"
#include "script/Scripting.h"
#include "script/binding/ScriptCall.h"
#include "script/classes/VTDictionary.h"
#include "script/song/ScriptPlayer.h"
#include "script/song/Wrappers.h"

namespace vonta {
namespace {

constexpr const char* kNotInitialised = "Sound player must be initialized before use it";
constexpr const char* kRunning = "Sound Player is running, can't init. Use vtPlayer:End() function";
constexpr const char* kNoDictionary = "First parameter must be a VTDictionary";
constexpr const char* kNoMode = "OutputMode not specified";
constexpr const char* kBadMode = "OutputMode (%s) not supported";
constexpr const char* kBadListPosition = "Pattern List Position(%i) out of range";
constexpr const char* kBadRow = "PlayPosRow(%i) out of range";
constexpr const char* kBadMessage = "Sound Player (%s) message is not a valid one";
constexpr const char* kBadOutput = "Output index(%i) must be lower than 32";
constexpr const char* kBadChannel = "Sound Channel index(%i) must be lower than 64";
constexpr std::size_t kSongBytes = 1 << 20;          // about, of a song beside its file

struct OutputMode {
    const char* name;
    DeviceKind kind;
};
constexpr OutputMode kOutputModes[] = {
    {"NoSound", DeviceKind::NoSound},
    {"WaveOut", DeviceKind::WaveOut},
    {"DirectSound", DeviceKind::DirectSoundPrimary},
};

ScriptPlayer& Host() { return Scripting::Current()->Player(); }
SndPlayer& Player() { return *Host().Get(); }

int Construct(ScriptCall& call) { return call.GiveNone(); }

int Nothing(ScriptCall&) { return 0; }

const char* NoPlayer() { return Host().Get() ? nullptr : kNotInitialised; }

// A method that needs a player.
MethodRow Playing(MethodRow row) {
    row.messages.insert(row.messages.begin(), kNotInitialised);
    row.refuse = NoPlayer;
    return row;
}

const VTDictionary* SettingsOf(ScriptCall& call) {
    LuaVM& vm = call.Vm();
    if (!call.Has(0) || vm.Type(call.Index(0)) != vm.TypeUserData()) return nullptr;
    ScriptObject* const object = CheckAnyObject(vm, call.Index(0));
    if (object && object->Class().IsType(VTDictionaryClass().Name())) return static_cast<VTDictionary*>(object);
    call.Warn(kNoDictionary);
    return nullptr;
}

int Init(ScriptCall& call) {
    Host().Create();
    if (Host().IsStarted()) {
        call.Warn(kRunning);
        return call.GiveTruth(false);
    }
    const VTDictionary* const settings = SettingsOf(call);
    std::string mode;
    if (!settings) return call.GiveTruth(false);
    if (!settings->GetString("OutputMode", mode)) {
        call.Warn(kNoMode);
        return call.GiveTruth(false);
    }
    const auto row = std::ranges::find(kOutputModes, mode, &OutputMode::name);
    if (row == std::end(kOutputModes)) {
        call.Warn(kBadMode, mode.c_str());
        return call.GiveTruth(false);
    }
    return call.GiveTruth(Host().Start(row->kind));
}

int End(ScriptCall&) {
    Host().End();
    return 0;
}

int LoadSong(ScriptCall& call) {
    DiskStream stream;
    if (!stream.Open(call.Text(0), "rb")) return 0;
    call.Vm().NoteMemory(4 * static_cast<std::size_t>(stream.Size()) + kSongBytes);
    LoadReport report;
    bool unknown = false;
    auto song = LoadModule(stream, unknown, report);
    if (!song) return 0;
    return call.GiveObject(MakeObject<VTSong>(std::make_shared<HeldSong>(std::move(song))));
}

int SaveSong(ScriptCall& call) {
    const MixerPause pause(Player());
    DiskStream stream;
    if (!stream.Open(call.Text(0), "wb")) return call.GiveTruth(false);
    return call.GiveTruth(SaveFile(&stream, SaveMode::Module, Player().GetSong(), {}) == 0);
}

int SetCurrentSong(ScriptCall& call) {
    const VTSong& song = call.As<VTSong>(0);
    if (!song.held->Find()) return call.Warn(kSongGone);
    Host().SetCurrentSong(song.held);
    return 0;
}

int GetCurrentSong(ScriptCall& call) { return call.GiveObject(MakeObject<VTSong>(Host().CurrentSong())); }

int PlaySong(ScriptCall& call) {
    const std::string_view what = call.Text(0);
    if (what == "Song") Player().Play(0);
    if (what == "Pattern") Player().Play(kPlayPattern);
    return 0;
}

int StopSong(ScriptCall&) {
    Player().Stop(0, 0);
    return 0;
}

int GetPlayMode(ScriptCall& call) {
    return call.GiveText(Player().IsPlaying() ? "Play" : Player().IsPatternMode() ? "PlayPattern" : "Stop");
}

int GetCurrentPlayPos(ScriptCall& call) {
    const PlayPosition at = Player().GetCurrentPlayPos();
    const int last = at.current ? at.current->Rows() - 1 : 0;
    return call.GiveNumbers({static_cast<double>(at.pattern), static_cast<double>(at.position),
                             static_cast<double>(std::clamp(at.row, 0, std::max(last, 0)))});
}

int SetPatternListPos(ScriptCall& call) {
    const int position = call.Integer(0);
    if (position < 0 || position >= static_cast<int>(Player().GetSong().GetPatternPosLenght()))
        return call.Warn(kBadListPosition, position);
    Player().SetPosition(position);
    return 0;
}

int SetPlayPosRow(ScriptCall& call) {
    const PlayPosition at = Player().GetCurrentPlayPos();
    const int row = call.Integer(0), rows = at.current ? at.current->Rows() : 0;
    if (row < 0 || row >= rows) return call.Warn(kBadRow, row);
    Player().SetRow(row);
    return 0;
}

int SetAction(ScriptCall& call) {
    return Host().SetAction(call.Text(0), call.Text(1)) ? 0 : call.Warn(kBadMessage, call.Text(0));
}

// There are no arrays while the player has no device.
int GiveData(ScriptCall& call, ScriptRef<VTArray> data) {
    return data ? call.GiveObject(std::move(data)) : call.Warn(kNotInitialised);
}

int GetOutputData(ScriptCall& call) { return GiveData(call, Host().OutputData(call.Integer(0))); }
int GetChannelData(ScriptCall& call) { return GiveData(call, Host().ChannelData(call.Integer(0))); }

int SetChannelMuted(ScriptCall& call) {
    Player().SetChannelMuted(call.Integer(0), call.Truth(1));
    return 0;
}

int GetChannelMuted(ScriptCall& call) { return call.GiveTruth(Player().IsChannelMuted(call.Integer(0))); }

void ForgetPlayer() {
    Scripting* const scripting = Scripting::Current();
    if (!scripting) return;
    scripting->Player().End();
    scripting->Player().ForgetActions();
}

constexpr const char* kExample = R"(output = VTDictionary()
output:Set("OutputMode", "NoSound")
if vtPlayer:Init(output) then
    local song = vtPlayer:GetCurrentSong()
    song:SetTitle("Sketch")
    vtPlayer:SaveSong("sketch.vtm")
    vtPlayer:End()
end
)";

}  // namespace

const ScriptClass& VTPlayerClass() {
    const Parameter channel = Number("index", 0, kTracks - 1, kBadChannel);
    const Parameter output = Number("index", 0, ScriptPlayer::kOutputHalves - 1, kBadOutput);
    static const ScriptClass scriptClass(
        "VTPlayer",
        {"The player. There is none until Init, and one until End; songs can be loaded and changed only in between. "
         "`vtPlayer` is there in every script.",
         kExample, "vtPlayer = VTPlayer()"},
        {"VTPlayer", {}, "VTPlayer", "Another handle on it.", Construct},
        {
            {"EnumOuputModes", {}, nullptr, "Does nothing.", Nothing},
            {"GetOutputModeInfo", {}, nullptr, "Does nothing.", Nothing},
            {"Init", {Any("settings", "VTDictionary")}, "boolean",
             "Starts the player with an empty song. The dictionary's text \"OutputMode\" is \"NoSound\", \"WaveOut\" "
             "or \"DirectSound\".",
             Init, {kRunning, kNoDictionary, kNoMode, kBadMode}},
            Playing({"End", {}, nullptr, "Ends the player. What a script holds of its song is gone.", End}),
            Playing({"LoadSong", {Text("file")}, "VTSong, or nothing if it cannot be loaded",
             "Loads a song of any format. The player does not play it until SetCurrentSong.", LoadSong}),
            Playing({"SaveSong", {Text("file")}, "boolean", "Writes the player's song as a `.vtm` file.", SaveSong}),
            Playing({"SetCurrentSong", {Object("song", "VTSong")}, nullptr,
             "Gives the player the song, in the place of the one that it had, which is gone.", SetCurrentSong,
             {kSongGone}}),
            Playing({"GetCurrentSong", {}, "VTSong", "The player's song.", GetCurrentSong}),
            Playing({"PlaySong", {Text("what")}, nullptr,
             "Plays from the position's start: \"Song\", or \"Pattern\" over and over.",
             PlaySong}),
            Playing({"StopSong", {}, nullptr, "Stops.", StopSong}),
            Playing({"GetPlayMode", {}, "string", "\"Play\", \"PlayPattern\" or \"Stop\".", GetPlayMode}),
            Playing({"GetCurrentPlayPos", {}, "three numbers", "Pattern, position in the song's list, and row.",
             GetCurrentPlayPos}),
            Playing({"SetPatternListPos", {Number("position")}, nullptr,
                     "Goes to a position of the song's list, from 0.",
             SetPatternListPos, {kBadListPosition}}),
            Playing({"SetPlayPosRow", {Number("row")}, nullptr, "Goes to a row of the pattern, from 0.", SetPlayPosRow,
             {kBadRow}}),
            Playing({"SetAction", {Text("message"), Text("action")}, nullptr,
             "VTApp:Run calls the action when the position (\"SongPos\") or the tempo (\"SongBPM\") has changed.",
             SetAction, {kBadMessage}}),
            Playing({"GetOutputData", {output}, "VTArray",
             "256 values of what half of an output plays, left of output 0 first, 1/44100 s apart. The same array is "
             "filled each time.",
             GetOutputData}),
            Playing({"GetChannelData", {channel}, "VTArray", "The same of a channel, both sides added.",
             GetChannelData}),
            Playing({"SetChannelMuted", {channel, Truth("muted")}, nullptr,
                     "Takes the notes from a channel, or gives them back.",
             SetChannelMuted}),
            Playing({"GetChannelMuted", {channel}, "boolean", "Whether it is muted.", GetChannelMuted}),
        },
        {nullptr, ForgetPlayer});
    return scriptClass;
}

}  // namespace vonta
