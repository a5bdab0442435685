#include "script/host/Watch.h"

#include <lua.hpp>

namespace vonta {
namespace {

constexpr int kInstructions = 10000;                 // between two questions: far below a millisecond

StopQuestion g_question = nullptr;

void Ask(lua_State* L, lua_Debug*) {
    if (StopAsked()) luaL_error(L, "interrupted");
}

}  // namespace

std::atomic<bool> g_inMethod{false};

void SetStopQuestion(StopQuestion question) { g_question = question; }

bool StopAsked() { return g_question && g_question(); }

void WatchState(lua_State* L) { lua_sethook(L, Ask, LUA_MASKCOUNT, kInstructions); }

}  // namespace vonta
