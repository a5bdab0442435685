// docs/scripting.md, made from the tables of the classes.
#pragma once

#include <string>

namespace vonta {

std::string MakeScriptReference();

}  // namespace vonta
