#include "script/binary/VTU128.h"

#include <array>
#include <cstdio>

#include "script/binding/ScriptCall.h"

namespace vonta {
namespace {

int Construct(ScriptCall& call) { return call.GiveObject(MakeObject<VTU128>()); }

int Nothing(ScriptCall&) { return 0; }

int GetAsString(ScriptCall& call) {
    const auto& words = call.Self<VTU128>().value.words;
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "0x%08X%08X%08X%08X", words[3], words[2], words[1], words[0]);
    return call.GiveText(text.data());
}

}  // namespace

const ScriptClass& VTU128Class() {
    static const ScriptClass scriptClass(
        "VTU128", {"A value of 128 bits.", "vtDebug:ODS(VTU128():GetAsString())\n"},
        {"VTU128", {}, "VTU128", "The value 0.", Construct},
        {
            {"Get", {}, nullptr, "Does nothing.", Nothing},
            {"Set", {}, nullptr, "Does nothing.", Nothing},
            {"GetAsString", {}, "string", "\"0x\" and 32 hexadecimal digits.", GetAsString},
        });
    return scriptClass;
}

}  // namespace vonta
