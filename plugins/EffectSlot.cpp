#include "plugins/EffectSlot.h"

#include "platform/Shared.h"

namespace vonta {

void EffectSlot::SetActive(std::uint8_t value) { Store(on, value); }

}  // namespace vonta
