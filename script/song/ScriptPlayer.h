// The player of scripts: none until VTPlayer:Init, one until VTPlayer:End.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "engine/SndPlayer.h"
#include "script/binary/VTArray.h"
#include "script/song/Held.h"

namespace vonta {

class ScriptPlayer {
public:
    static constexpr int kOutputHalves = 2 * kOutputPairs, kChannels = kTracks;
    static constexpr std::uint32_t kSampleRate = 44100;    // Hz

    ScriptPlayer(DeviceFactory devices, MidiOpener midi) : devices_(devices), midi_(midi) {}

    SndPlayer* Get() const { return player_.get(); }
    SndPlayer& Create();                             // or the one that there is
    bool IsStarted() const { return player_ && player_->GetDevice(); }
    bool Start(DeviceKind kind);                     // false: it could not, and there is no player any more
    void End();

    // The song that the player has; as a script holds it.
    bool Has(const HeldSong& song) const;
    std::shared_ptr<HeldSong> CurrentSong();
    void SetCurrentSong(const std::shared_ptr<HeldSong>& song);

    // The action of a message, "SongPos" or "SongBPM"; false if it is neither.
    bool SetAction(const std::string& message, const std::string& action);
    void ForgetActions();
    // The actions of what has changed since the last call.
    std::vector<std::string> TakeMessages();

    // The latest trace of a half of an output, of a channel; null while there is no device.
    ScriptRef<VTArray> OutputData(int half);
    ScriptRef<VTArray> ChannelData(int channel);

private:
    DeviceFactory devices_;
    MidiOpener midi_;
    std::unique_ptr<SndPlayer> player_;
    std::shared_ptr<HeldSong> current_;
    std::array<std::string, 2> actions_;             // by message; empty: none
    std::array<ScriptRef<VTArray>, kOutputHalves> outputs_;
    std::array<ScriptRef<VTArray>, kChannels> channels_;
};

}  // namespace vonta
