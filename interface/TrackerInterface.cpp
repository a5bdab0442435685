#include "interface/TrackerInterface.h"

#include "interface/screens/DiskOpScreen.h"
#include "interface/screens/QuestionScreen.h"
#include "interface/screens/Screens.h"
#include "platform/Clock.h"

namespace vonta {

TrackerInterface::TrackerInterface(InterfaceHost& host, TrackerState& state, Video& video, Input& input,
                                   ResourcePacks& packs)
    : host_(host), state_(state), video_(video), input_(input), packs_(packs), skin_(video, packs),
      regions_(video, skin_) {
    SetClock(Milliseconds);
    m_noteVoice.fill(kNoVoice);
    heldNotes_.fill(-1);
    for (int slot = 0; slot < kScreens; ++slot) m_screens[static_cast<std::size_t>(slot)] = CreateScreen(*this, slot);
    ResetGroup(1);
    ResetGroup(2);
}

void TrackerInterface::SetClock(std::function<std::uint32_t()> milliseconds) {
    clock_ = std::move(milliseconds);
    m_nKeyLast = m_nMouseLast = Now();
}

TrackerInterface::~TrackerInterface() = default;

DiskOpScreen& TrackerInterface::DiskOp() { return static_cast<DiskOpScreen&>(GetScreen(kScreenDiskOp)); }
QuestionScreen& TrackerInterface::Question() { return static_cast<QuestionScreen&>(GetScreen(kScreenQuestion)); }

}  // namespace vonta
