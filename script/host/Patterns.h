// Keeps the patterns of the string library short: it works them off by calls of itself, one for each item, and a long
// one would run out of the process's stack.
#pragma once

namespace vonta {

class LuaVM;

constexpr int kMaxPatternLength = 4096;              // bytes

void GuardPatterns(LuaVM& vm);                       // after the string library has been opened

}  // namespace vonta
