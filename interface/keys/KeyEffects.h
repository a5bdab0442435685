// What each of the 210 key actions does, and in which order a key is tried against them.
#pragma once

namespace vonta {

class TrackerInterface;

// Performs the first action that the key means with the modifiers of the moment and that is not refused. Its number, or
// -1 if none took the key.
int PerformKeyAction(TrackerInterface& ui, int key);

}  // namespace vonta
