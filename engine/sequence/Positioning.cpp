// Where the player stands, as the interface sets and reads it: plain stores that the next row sees.
#include <algorithm>

#include "engine/SndPlayer.h"

namespace vonta {

void SndPlayer::SetRow(int row) {
    row_ = std::clamp(row, 0, kMaxRows - 1);
    rowStep_ = 0;
}

void SndPlayer::SetPosition(int position) {
    if (position < 0 || position >= static_cast<int>(song_->GetPatternPosLenght())) return;
    EnterPosition(position);
    rowStep_ = 0;
}

void SndPlayer::NextPosition() {
    rowStep_ = 0;
    SetPosition(position_ + 1);
}

void SndPlayer::PreviousPosition() {
    rowStep_ = 0;
    SetPosition(position_ - 1);
}

void SndPlayer::NextPattern() { SelectPattern(static_cast<int>(pattern_) + 1); }

void SndPlayer::PreviousPattern() { SelectPattern(static_cast<int>(pattern_) - 1); }

void SndPlayer::SelectPattern(int pattern) {
    rowStep_ = 0;
    pattern_ = static_cast<std::uint32_t>(std::clamp(pattern, 0, kMaxPatterns - 1));
    row_ = std::min<std::int32_t>(row_, CurrentPattern().Rows() - 1);
}

PlayPosition SndPlayer::GetCurrentPlayPos() const {
    PlayPosition at;
    at.pattern = pattern_;
    at.position = position_;
    at.current = &CurrentPattern();
    at.row = std::min<std::int32_t>(row_, at.current->Rows());
    return at;
}

}  // namespace vonta
