// What replaces the song or clears a kind of its parts.
#pragma once

#include <memory>

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

void ReplaceSong(Editor& editor, StepName name, const Place& at, std::unique_ptr<Song> song);
void ClearPatterns(Editor& editor, const Place& at);         // the order list too; its first position is played next
void ClearInstruments(Editor& editor, const Place& at);

}  // namespace vonta
