#include "interface/view/TrackerState.h"

#include <algorithm>

namespace vonta {

bool Selection::Holds(int channel, int row) const {
    return m_bSelection && channel >= Left() && channel < Left() + Width() && row >= Top() && row < Top() + Height();
}

int Selection::Left() const { return std::min(m_nSelChannelA, m_nSelChannelB); }
int Selection::Top() const { return std::min(m_nSelRowA, m_nSelRowB); }
int Selection::Width() const { return std::abs(m_nSelChannelA - m_nSelChannelB) + 1; }
int Selection::Height() const { return std::abs(m_nSelRowA - m_nSelRowB) + 1; }

TrackerState::TrackerState(SndPlayer& player, Config& config, Environment& environment)
    : player_(player), config_(config), environment_(environment) {
    TakeFrame();
}

}  // namespace vonta
