#include "script/song/ScriptPlayer.h"

#include <cstring>

namespace vonta {
namespace {

struct MessageRow {
    const char* name;
    PositionNotice::Flag flag;
};
constexpr MessageRow kMessages[] = {
    {"SongPos", PositionNotice::kPositionChanged},
    {"SongBPM", PositionNotice::kBpmChanged},
};

constexpr double kOutputScale = 1.0 / 65536.0, kChannelScale = 1.0 / 32768.0;

ScriptRef<VTArray> Fill(const ScriptRef<VTArray>& array, const ScopeTap::Trace& trace, double scale) {
    for (int i = 0; array && i < array->Size(); ++i)
        array->Set(i, static_cast<double>(static_cast<float>(trace[static_cast<std::size_t>(i)])) * scale);
    return array;
}

}  // namespace

SndPlayer& ScriptPlayer::Create() {
    if (!player_) player_ = std::make_unique<SndPlayer>(devices_, midi_);
    return *player_;
}

bool ScriptPlayer::Start(DeviceKind kind) {
    if (Create().StartSound(nullptr, static_cast<int>(kind), 0, nullptr, kSampleRate) != 0) {
        End();
        return false;
    }
    current_.reset();                                // the start made another song
    player_->SetMixerOn(true);
    for (auto& array : outputs_) array = VTArray::Make(VT_FLOAT, ScopeTap::kPoints);
    for (auto& array : channels_) array = VTArray::Make(VT_FLOAT, ScopeTap::kPoints);
    return true;
}

void ScriptPlayer::End() {
    outputs_.fill({});
    channels_.fill({});
    if (player_) player_->SetMixerOn(false);
    player_.reset();
    current_.reset();
}

bool ScriptPlayer::Has(const HeldSong& song) const {
    return player_ && current_.get() == &song && song.song == &player_->GetSong();
}

std::shared_ptr<HeldSong> ScriptPlayer::CurrentSong() {
    if (!current_ || !Has(*current_)) current_ = std::make_shared<HeldSong>(player_->GetSong());
    return current_;
}

void ScriptPlayer::SetCurrentSong(const std::shared_ptr<HeldSong>& song) {
    player_->SetMixerOn(false);
    player_->StopNotes();
    if (!Has(*song)) {
        player_->SetSong(std::move(song->owned));
        current_ = song;
    }
    if (player_->IsPlaying()) {
        const bool patternMode = player_->IsPatternMode();
        player_->PerformStop(0, 1);
        player_->Play(patternMode);
    }
    player_->SetMixerOn(true);
}

bool ScriptPlayer::SetAction(const std::string& message, const std::string& action) {
    for (std::size_t i = 0; i < actions_.size(); ++i)
        if (message == kMessages[i].name) {
            actions_[i] = action;
            return true;
        }
    return false;
}

void ScriptPlayer::ForgetActions() { actions_.fill({}); }

std::vector<std::string> ScriptPlayer::TakeMessages() {
    std::vector<std::string> due;
    if (!player_) return due;
    const std::uint8_t flags = player_->GetPositionNotice().TakeFlags();
    for (std::size_t i = 0; i < actions_.size(); ++i)
        if (flags & kMessages[i].flag && !actions_[i].empty()) due.push_back(actions_[i]);
    return due;
}

ScriptRef<VTArray> ScriptPlayer::OutputData(int half) {
    ScopeTap& scope = player_->GetMixer().scope;
    scope.Watch();
    return Fill(outputs_[static_cast<std::size_t>(half)], scope.OfOutput(half), kOutputScale);
}

ScriptRef<VTArray> ScriptPlayer::ChannelData(int channel) {
    ScopeTap& scope = player_->GetMixer().scope;
    scope.Watch();
    auto& array = channels_[static_cast<std::size_t>(channel)];
    static const ScopeTap::Trace silence{};
    return Fill(array, scope.IsActive(channel) ? scope.OfTrack(channel) : silence, kChannelScale);
}

}  // namespace vonta
