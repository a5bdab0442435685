#include "edit/WholeSong.h"

#include <utility>

#include "edit/OrderList.h"

namespace vonta {
void ReplaceSong(Editor& editor, StepName name, const Place& at, std::unique_ptr<Song> song) {
    const Editor::StepScope step(editor, name, at);
    editor.SetSong(std::move(song));
}

void ClearPatterns(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepClearPatterns, at);
    const Hold hold(editor.Player());            // one for all
    for (int number = 0; number < kMaxPatterns; ++number) editor.SetPattern(number, nullptr);
    editor.Set(SongField(&Song::numPatterns), 0);
    editor.Set(SongField(&Song::patternList), {});
    SetSongLength(editor, at, 1);
    editor.Player().SetPosition(0);
    editor.Player().SetRow(0);
}

void ClearInstruments(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepClearInstruments, at);
    const Hold hold(editor.Player());
    for (int slot = 0; slot < kMaxInstruments; ++slot) editor.SetInstrument(slot, nullptr);
    editor.Set(SongField(&Song::numInstruments), 0);
}

}  // namespace vonta
