#include <algorithm>

#include "app/config/ConfigFile.h"
#include "app/config/KeyTable.h"
#include "formats/streams/Record.h"

namespace vonta {
namespace {

constexpr std::uint32_t kVersion = 1;                // written; all versions are read alike
constexpr std::uint32_t kMaxRecords = 65536;         // far beyond any use: a false count does not keep us reading

// The modifiers stand in another order than in KeyAction.
template <class Io, class Action>
void BindingRecord(Io& io, Action& action) {
    io.I32(action.key);
    io.U8(action.control);
    io.U8(action.shift);
    io.U8(action.alt);
    io.U8(action.repeat);
    io.U8(action.repeatEdit);
}

bool IsKey(std::int32_t key) { return key >= 0 && key < kKeyCodes; }

}  // namespace

void ReadKeyTable(FileStream& stream, KeyTable& table) {
    Reader in(stream);
    RecordReader io(in);
    in.Skip(4);                                      // version
    const std::uint32_t records = std::min(in.U32(), kMaxRecords);
    for (std::uint32_t i = 0; i < records; ++i) {
        const std::uint32_t index = in.U32();
        KeyAction action = index < table.size() ? table[index] : KeyAction{};
        BindingRecord(io, action);
        if (in.Truncated()) return;
        if (index < table.size() && IsKey(action.key)) table[index] = action;
    }
}

void WriteKeyTable(FileStream& stream, const KeyTable& table) {
    Writer out(stream);
    RecordWriter io(out);
    out.U32(kVersion);
    out.U32(kKeyActions);
    for (std::size_t i = 0; i < table.size(); ++i) {
        out.U32(static_cast<std::uint32_t>(i));
        BindingRecord(io, table[i]);
    }
}

bool LoadKeyTable(const std::string& path, KeyTable& table) {
    return ReadConfigFile(path, [&](FileStream& stream) { ReadKeyTable(stream, table); });
}

bool SaveKeyTable(const std::string& path, const KeyTable& table) {
    return WriteConfigFile(path, [&](FileStream& stream) { WriteKeyTable(stream, table); });
}

}  // namespace vonta
