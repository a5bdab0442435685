// Where the player stands, as the interface sets and reads it: plain stores that the next row sees.
#include <algorithm>

#include "engine/sequence/Sequencer.h"

namespace vonta {

void Sequencer::SetRow(int row) {
    row_ = std::clamp(row, 0, kMaxRows - 1);
    rowStep_ = 0;
}

void Sequencer::SetPosition(int position) {
    if (position < 0 || position >= static_cast<int>(song_->GetPatternPosLenght())) return;
    EnterPosition(position);
    rowStep_ = 0;
}

void Sequencer::NextPosition() {
    rowStep_ = 0;
    SetPosition(position_ + 1);
}

void Sequencer::PreviousPosition() {
    rowStep_ = 0;
    SetPosition(position_ - 1);
}

void Sequencer::NextPattern() { SelectPattern(static_cast<int>(pattern_) + 1); }

void Sequencer::PreviousPattern() { SelectPattern(static_cast<int>(pattern_) - 1); }

void Sequencer::SelectPattern(int pattern) {
    rowStep_ = 0;
    pattern_ = static_cast<std::uint32_t>(std::clamp(pattern, 0, kMaxPatterns - 1));
    row_ = std::min<std::int32_t>(row_, CurrentPattern().Rows() - 1);
}

PlayPosition Sequencer::GetCurrentPlayPos() const {
    PlayPosition at;
    at.pattern = pattern_;
    at.position = position_;
    at.current = &CurrentPattern();
    at.row = std::min<std::int32_t>(row_, at.current->Rows());
    return at;
}

void Sequencer::SetStopAtEnd(bool on) {
    stopAtEnd_ = on;
    if (!on) ended_ = 0;
}

void Sequencer::SetChannelMuted(int channel, bool on) {
    if (channel >= 0 && channel < kTracks) channelMuted_[static_cast<std::size_t>(channel)] = on;
}

bool Sequencer::IsChannelMuted(int channel) const {
    return channel >= 0 && channel < kTracks && channelMuted_[static_cast<std::size_t>(channel)];
}

}  // namespace vonta
