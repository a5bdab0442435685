#include "script/binding/LuaVM.h"

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <lua.hpp>
#include <new>

#include "script/binary/VTU128.h"
#include "script/classes/VTDictionary.h"
#include "script/host/Actions.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxBytes = std::size_t{512} << 20;    // of all states together
constexpr std::size_t kCollectAfter = std::size_t{64} << 20;

std::atomic<std::size_t> g_bytes{0};

int HexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

}  // namespace

LuaVM::LuaVM() : state_(lua_open()) {
    if (!state_) throw std::bad_alloc();
    used_ = static_cast<std::size_t>(lua_gc(state_, LUA_GCCOUNT, 0)) * 1024 +
            static_cast<std::size_t>(lua_gc(state_, LUA_GCCOUNTB, 0));
    g_bytes += used_;
    lua_setallocf(state_, Allocate, this);
}

LuaVM::~LuaVM() { Close(); }

void LuaVM::Close() {
    if (!state_) return;
    lua_close(state_);
    state_ = nullptr;
    g_bytes -= used_;
}

// A script may ask for any amount: beyond the bound Lua gets none, which ends the script with an error.
void* LuaVM::Allocate(void* self, void* block, std::size_t oldSize, std::size_t newSize) {
    LuaVM& vm = *static_cast<LuaVM*>(self);
    if (newSize > oldSize && g_bytes + (newSize - oldSize) > kMaxBytes) return nullptr;
    void* result = nullptr;
    if (newSize == 0) std::free(block);
    else if (result = std::realloc(block, newSize); !result) return nullptr;
    vm.used_ += newSize - oldSize;
    g_bytes += newSize - oldSize;
    return result;
}

void LuaVM::CheckType(int index, int type) { luaL_checktype(state_, index, type); }

void* LuaVM::ToUserData(int index) { return lua_touserdata(state_, index); }

// The library's own raises the error itself; here the caller does.
void* LuaVM::CheckUserData(int index, const char* className) {
    void* const box = lua_touserdata(state_, index);
    if (!box || !lua_getmetatable(state_, index)) return nullptr;
    lua_getfield(state_, LUA_REGISTRYINDEX, className);
    const bool same = lua_rawequal(state_, -1, -2);
    lua_pop(state_, 2);
    return same ? box : nullptr;
}

void LuaVM::TypeError(int index, const char* className) {
    luaL_typerror(state_, index, className);
    std::abort();                                    // it has thrown
}

void* LuaVM::NewUserData(std::size_t size) { return lua_newuserdata(state_, size); }
void LuaVM::GetMetaTable(const char* className) { luaL_getmetatable(state_, className); }
void LuaVM::SetMetaTable(int index) { lua_setmetatable(state_, index); }
void LuaVM::NewTable() { lua_newtable(state_); }
int LuaVM::GetTop() { return lua_gettop(state_); }
int LuaVM::NewMetaTable(const char* className) { return luaL_newmetatable(state_, className); }
void LuaVM::PushLString(const char* text, std::size_t length) { lua_pushlstring(state_, text, length); }
void LuaVM::PushValue(int index) { lua_pushvalue(state_, index); }
void LuaVM::SetTable(int index) { lua_settable(state_, index); }
void LuaVM::PushCClosure(LuaFunction function, int upvalues) { lua_pushcclosure(state_, function, upvalues); }
void LuaVM::SetTop(int index) { lua_settop(state_, index); }

void LuaVM::OpenLib(const char* libName, const LuaEntry* table, int upvalues) {
    static_assert(sizeof(LuaEntry) == sizeof(luaL_Reg));
    luaL_openlib(state_, libName, reinterpret_cast<const luaL_Reg*>(table), upvalues);
}

void LuaVM::PushString(const char* text) { lua_pushstring(state_, text); }
double LuaVM::CheckNumber(int index) { return luaL_checknumber(state_, index); }

bool LuaVM::CheckBoolean(int index) {
    const bool value = lua_toboolean(state_, index);
    if (!value) luaL_checktype(state_, index, LUA_TBOOLEAN);
    return value;
}

const char* LuaVM::CheckString(int index) { return luaL_checklstring(state_, index, nullptr); }

std::string_view LuaVM::CheckText(int index) {
    std::size_t length = 0;
    const char* const text = luaL_checklstring(state_, index, &length);
    return {text, length};
}

void LuaVM::PushNumber(double value) { lua_pushnumber(state_, value); }
void LuaVM::PushBoolean(bool value) { lua_pushboolean(state_, value); }
int LuaVM::Type(int index) { return lua_type(state_, index); }

void LuaVM::ToU128(U128& out, int index) {
    if (Type(index) == TypeUserData()) {
        VTU128& object = CheckObject<VTU128>(*this, VTU128Class(), index);
        out = object.value;
    } else {
        out = ParseU128(CheckString(index));
    }
}

void LuaVM::PushU128(const U128& value) {
    ScriptRef<VTU128> object(new VTU128);
    object->value = value;
    PushObject(state_, std::move(object));
}

bool LuaVM::ExecuteActionParam(const char* actionName, const char* text) {
    ScriptRef<VTDictionary> dictionary;
    if (text) {
        dictionary = ScriptRef<VTDictionary>(new VTDictionary);
        dictionary->SetString("Param", text);
    }
    return ExecuteActionNow(actionName, dictionary.Get(), nullptr);
}

int LuaVM::TypeUserData() { return LUA_TUSERDATA; }
int LuaVM::GlobalsIndex() { return LUA_GLOBALSINDEX; }
int LuaVM::TypeNumber() { return LUA_TNUMBER; }
int LuaVM::TypeString() { return LUA_TSTRING; }
int LuaVM::TypeBoolean() { return LUA_TBOOLEAN; }

void LuaVM::RaiseError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    lua_pushvfstring(state_, format, arguments);
    va_end(arguments);
    lua_error(state_);
    std::abort();                                    // it has thrown
}

void LuaVM::PushPointer(void* pointer) { lua_pushlightuserdata(state_, pointer); }

void LuaVM::CheckStack(int places) { luaL_checkstack(state_, places, "too many values"); }

// Lua sees an object of the host as a few bytes, whatever it holds: left alone it would let any number of them lie.
void LuaVM::NoteMemory(std::size_t bytes) {
    outside_ += bytes;
    if (outside_ >= kCollectAfter) Collect();
}

void LuaVM::Collect() {
    outside_ = 0;
    lua_gc(state_, LUA_GCCOLLECT, 0);
}

U128 ParseU128(std::string_view text) {
    U128 value;
    if (text.size() <= 2 || text[0] != '0' || text[1] != 'x') return value;
    text.remove_prefix(2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int digit = HexDigit(text[i]);
        if (digit < 0) break;
        const std::size_t place = text.size() - 1 - i;   // from the right
        if (place < 32) value.words[place / 8] |= static_cast<std::uint32_t>(digit) << (place % 8 * 4);
    }
    return value;
}

}  // namespace vonta
