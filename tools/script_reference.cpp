// Writes docs/scripting.md anew after a change of a class's table: script_reference > docs/scripting.md.
#include <cstdio>

#include "script/Reference.h"

int main() { std::fputs(vonta::MakeScriptReference().c_str(), stdout); }
