// Calls random methods of all script classes with random arguments, each in a call of its own so that an error ends
// nothing but itself. Objects that come back are used in later calls.
#pragma once

#include <cstdint>
#include <iterator>
#include <lua.hpp>
#include <random>

#include "script/host/ScriptHost.h"
#include "script/host/ScriptInstance.h"
#include "tests/support/ScriptRig.h"

namespace vonta::test {

class RandomCaller {
public:
    struct Count { std::uint64_t calls = 0, errors = 0; };

    // What the host prints is dropped. The files that scripts may meet lie in the directory of the rig.
    explicit RandomCaller(std::uint32_t seed) : random_(seed) {
        rig_.directory.Write("a.vtc", "function Main(d) if d then d:Set('seen', 1) end end");
        rig_.directory.Write("named.vtc", "vtApp:RegisterScript('x', vtScript) vtApp:RegisterAction('x', 'x', 'Main', true)\n"
                                          "function Main(d) if d then d:Set('self', d) end end");
        rig_.directory.Write("bytes.bin", std::string(3000, 'x') + std::string(100, '\0'));
        rig_.scripting.Quit();                       // Run comes back at once
        rig_.Run("vtApp:RegisterScript('caller', vtScript)");
        rig_.scripting.FindScript("caller")->Use();  // another may take its name
        state_ = rig_.scripting.FindScript("caller")->Vm()->State();
        lua_newtable(state_);                        // the objects, at 1 of the stack
        for (const ClassList& list : {LibraryClasses(), ApplicationClasses()})
            classes_.insert(classes_.end(), list.begin(), list.end());
        // A song and a player to begin with.
        Constructor("VTDictionary");
        lua_rawgeti(state_, 1, 1);
        lua_getfield(state_, -1, "Set");
        lua_insert(state_, -2);                      // the player's settings
        lua_pushstring(state_, "OutputMode");
        lua_pushstring(state_, "NoSound");
        lua_pcall(state_, 3, 0, 0);
    }

    Count Run(std::uint64_t calls) {
        Count count;
        for (; count.calls < calls; ++count.calls) {
            count.errors += !CallOnce();
            if (count.calls % 1000 == 0) rig_.Take();
        }
        return count;
    }

private:
    static constexpr int kObjects = 400;

    int Below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

    void Constructor(const char* name) {
        lua_getglobal(state_, name);
        if (lua_pcall(state_, 0, 1, 0) == 0) Keep(lua_gettop(state_));
        lua_settop(state_, 1);
    }

    // In the place of a random one when there are many.
    void Keep(int index) {
        if (lua_type(state_, index) != LUA_TUSERDATA) return;
        const int count = static_cast<int>(lua_objlen(state_, 1));
        lua_pushvalue(state_, index);
        lua_rawseti(state_, 1, count < kObjects ? count + 1 : 1 + Below(kObjects));
    }

    void PushObject() { lua_rawgeti(state_, 1, 1 + Below(std::max(static_cast<int>(lua_objlen(state_, 1)), 1))); }

    // One of this class among a few picked at random, so that some calls get far.
    void PushObjectOf(const char* className) {
        for (int i = 0; i < 40; ++i) {
            PushObject();
            if (VmOf(state_).CheckUserData(-1, className)) return;
            lua_pop(state_, 1);
        }
        PushObject();
    }

    void PushRandom() {
        static constexpr double kNumbers[] = {
            0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 16, 31, 32, 63, 64, 65, 100, 127, 128, 129, 200, 255, 256, 257, 1000, -1, -2,
            -128, -129, 0.5, -0.5, 1.5, 32767, 65535, 65536, 2147483647, 2147483648.0, 4294967295.0, -2147483648.0, 1e10,
            1e18, 1e19, 1e300, -1e300};
        static constexpr const char* kTexts[] = {
            "", "x", "y", "caller", "Main", "a.vtc", "named.vtc", "bytes.bin", "out.bin", "song.vtm", ".", "./", "sub",
            "missing", "NoSound", "DirectSound", "WaveOut", "OutputMode", "Song", "Pattern", "SongPos", "SongBPM", "Param",
            "0x1F", "0xZZ", "12", "-7", "%s%n%s", "%i", "self", "a.b.c", "Text"};
        switch (Below(12)) {
            case 0: lua_pushnil(state_); break;
            case 1: lua_pushboolean(state_, Below(2)); break;
            case 2: lua_newtable(state_); break;
            case 3: lua_pushnumber(state_, Below(8) == 0 ? 0.0 / 0.0 : 1.0 / 0.0); break;
            case 4: lua_pushstring(state_, std::string(static_cast<std::size_t>(Below(3000)), 'z').c_str()); break;
            case 5: case 6: lua_pushstring(state_, kTexts[Below(static_cast<int>(std::size(kTexts)))]); break;
            default: lua_pushnumber(state_, kNumbers[Below(static_cast<int>(std::size(kNumbers)))]); break;
        }
    }

    // In its range, or just behind it.
    double NumberFor(const Parameter& parameter) {
        const int numbers = static_cast<int>(parameter.most - parameter.least) + 2;
        return parameter.message ? parameter.least + Below(numbers) : Below(70);
    }

    const MethodRow& AnyMethod(const ScriptClass& scriptClass) {
        return scriptClass.Methods()[static_cast<std::size_t>(Below(static_cast<int>(scriptClass.Methods().size())))];
    }

    void PushFor(const Parameter& parameter) {
        if (Below(6) == 0) return Below(2) ? PushRandom() : PushObject();
        switch (parameter.kind) {
            case Kind::Number: lua_pushnumber(state_, NumberFor(parameter)); break;
            case Kind::Truth: lua_pushboolean(state_, Below(2)); break;
            case Kind::Object: PushObjectOf(parameter.detail); break;
            case Kind::AnyObject: PushObject(); break;
            case Kind::Any: Below(2) ? PushRandom() : PushObject(); break;
            default: PushRandom();
        }
    }

    bool CallOnce() {
        const ScriptClass& scriptClass = *classes_[static_cast<std::size_t>(Below(static_cast<int>(classes_.size())))];
        const bool constructs = Below(4) == 0;
        const MethodRow& row = constructs ? scriptClass.Constructor() : AnyMethod(scriptClass);
        if (constructs) {
            lua_getglobal(state_, scriptClass.Name());
        } else {
            luaL_getmetatable(state_, scriptClass.Name());
            lua_getfield(state_, -1, "__index");
            lua_getfield(state_, -1, row.name);
            lua_replace(state_, 2);
            lua_settop(state_, 2);
            PushObjectOf(scriptClass.Name());
        }
        int room = static_cast<int>(row.parameters.size()) + Below(2) - Below(2) / 2;
        for (const Parameter& parameter : row.parameters)
            if (room-- > 0) PushFor(parameter);
        for (int extra = Below(8) == 0 ? Below(6) : 0; extra > 0; --extra) PushRandom();
        const bool done = lua_pcall(state_, lua_gettop(state_) - 2, LUA_MULTRET, 0) == 0;
        for (int i = 2; done && i <= lua_gettop(state_); ++i) Keep(i);
        lua_settop(state_, 1);
        return done;
    }

    std::mt19937 random_;
    ScriptRig rig_;
    lua_State* state_;
    ClassList classes_;
};

}  // namespace vonta::test
