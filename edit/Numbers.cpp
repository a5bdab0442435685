#include "edit/Numbers.h"

#include <algorithm>
#include <utility>

namespace vonta {
namespace {

constexpr int kSlowestTempo = kMaxTempo;         // ticks per row

}  // namespace

void SetBpm(Editor& editor, const Place& at, int bpm) {
    const Editor::StepScope step(editor, kStepBpm, at);
    editor.SetSpeed(static_cast<std::uint32_t>(std::clamp(bpm, static_cast<int>(kMinBpm), static_cast<int>(kMaxBpm))),
                    editor.GetSong().StartTempo());
}

void SetTempo(Editor& editor, const Place& at, int ticksPerRow) {
    const Editor::StepScope step(editor, kStepTempo, at);
    editor.SetSpeed(editor.GetSong().StartBpm(), static_cast<std::uint32_t>(std::clamp(ticksPerRow, 0, kSlowestTempo)));
}

void SetMasterVolume(Editor& editor, const Place& at, float volume) {
    const Editor::StepScope step(editor, kStepMasterVolume, at);
    editor.SetMasterVolume(volume);
}

void SetChannels(Editor& editor, const Place& at, int channels) {
    const Editor::StepScope step(editor, kStepChannels, at);
    editor.Set(SongField(&Song::numChannels), std::clamp(channels, kMinChannels, kMaxChannels));
}

void KeepTyped(Editor& editor, StepName name, const Place& at, const Field<std::string>& field, std::string former) {
    const Editor::StepScope step(editor, name, at);
    editor.Wrote(field, std::move(former));
}

}  // namespace vonta
