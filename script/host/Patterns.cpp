#include "script/host/Patterns.h"

#include <lua.hpp>

#include "script/binding/LuaVM.h"

namespace vonta {
namespace {

constexpr const char* kPatternFunctions[] = {"find", "match", "gmatch", "gfind", "gsub"};
constexpr int kPatternArgument = 2;

int CheckedCall(lua_State* L) {
    if (lua_type(L, kPatternArgument) == LUA_TSTRING && lua_objlen(L, kPatternArgument) > kMaxPatternLength)
        return luaL_argerror(L, kPatternArgument, "pattern too long");
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_insert(L, 1);
    lua_call(L, lua_gettop(L) - 1, LUA_MULTRET);
    return lua_gettop(L);
}

}  // namespace

void GuardPatterns(LuaVM& vm) {
    lua_State* const L = vm.State();
    lua_getglobal(L, "string");
    for (const char* name : kPatternFunctions) {
        lua_getfield(L, -1, name);
        lua_pushcclosure(L, CheckedCall, 1);
        lua_setfield(L, -2, name);
    }
    lua_pop(L, 1);
}

}  // namespace vonta
