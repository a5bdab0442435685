#include <gtest/gtest.h>

#include <bit>
#include <lua.hpp>
#include <stdexcept>
#include <thread>

#include "script/binding/ScriptCall.h"
#include "script/host/Reporting.h"
#include "script/host/ScriptHost.h"
#include "script/host/ScriptInstance.h"
#include "tests/support/Await.h"
#include "tests/support/ScriptRig.h"

namespace vonta::test {
namespace {

using Lines = std::vector<std::string>;

// Which entry of the class's virtual table a member function is.
template <class Member>
std::size_t SlotOf(Member member) {
    struct Pointer { std::ptrdiff_t offset, adjustment; };
    static_assert(sizeof(member) == sizeof(Pointer));
    return static_cast<std::size_t>(std::bit_cast<Pointer>(member).offset - 1) / sizeof(void*);
}

TEST(LuaVm, OperationsStandInTheirSlots) {
    const std::size_t slots[] = {
        SlotOf(&LuaVM::CheckType), SlotOf(&LuaVM::ToUserData), SlotOf(&LuaVM::CheckUserData), SlotOf(&LuaVM::TypeError),
        SlotOf(&LuaVM::NewUserData), SlotOf(&LuaVM::GetMetaTable), SlotOf(&LuaVM::SetMetaTable),
        SlotOf(&LuaVM::NewTable),
        SlotOf(&LuaVM::GetTop), SlotOf(&LuaVM::NewMetaTable), SlotOf(&LuaVM::PushLString), SlotOf(&LuaVM::PushValue),
        SlotOf(&LuaVM::SetTable), SlotOf(&LuaVM::PushCClosure), SlotOf(&LuaVM::SetTop), SlotOf(&LuaVM::OpenLib),
        SlotOf(&LuaVM::PushString), SlotOf(&LuaVM::CheckNumber), SlotOf(&LuaVM::CheckBoolean),
        SlotOf(&LuaVM::CheckString),
        SlotOf(&LuaVM::PushNumber), SlotOf(&LuaVM::PushBoolean), SlotOf(&LuaVM::Type), SlotOf(&LuaVM::ToU128),
        SlotOf(&LuaVM::PushU128), SlotOf(&LuaVM::ExecuteActionParam), SlotOf(&LuaVM::TypeUserData),
        SlotOf(&LuaVM::GlobalsIndex), SlotOf(&LuaVM::TypeNumber), SlotOf(&LuaVM::TypeString),
        SlotOf(&LuaVM::TypeBoolean)};
    for (std::size_t slot = 0; slot < std::size(slots); ++slot) EXPECT_EQ(slots[slot], slot);
    // The destructor takes two.
    EXPECT_EQ(SlotOf(&ScriptObject::AddRef), 2u);
    EXPECT_EQ(SlotOf(&ScriptObject::Release), 3u);
    EXPECT_EQ(SlotOf(&ScriptClassDesc::Push), 0u);
    EXPECT_EQ(SlotOf(&ScriptClassDesc::IsType), 1u);
    EXPECT_EQ(SlotOf(&ScriptHost::RegisterClasses), 2u);
    EXPECT_EQ(SlotOf(&ScriptHost::GetInitText), 3u);
    EXPECT_EQ(SlotOf(&OutputSink::Print), 2u);
}

// A class of the rooms above, to look at the binding from inside.
class Probe final : public ScriptObject {
public:
    static inline int live = 0;
    static inline std::atomic<std::uint8_t> closed{0};   // ends the loop that Modal runs
    Probe();
    ~Probe() override { --live; }
};

// What CheckUserData says of the argument, and its metatable as a script would see it.
int Look(ScriptCall& call) {
    lua_State* const L = call.State();
    const int index = call.Index(0);
    Print("is a probe: %i", call.Vm().CheckUserData(index, "Probe") != nullptr);
    luaL_getmetafield(L, index, "__metatable");
    lua_getfield(L, -1, "GetType");
    Print("metatable has methods: %i", lua_isfunction(L, -1));
    return 0;
}

const ScriptClass& ProbeClass() {
    static const ScriptClass scriptClass(
        "Probe", {"", "", "probe = Probe()"},
        {"Probe", {}, "Probe", "", [](ScriptCall& call) { return call.GiveObject(MakeObject<Probe>()); }},
        {{"Look", {AnyObject("object")}, nullptr, "", Look},
         {"Throw", {}, nullptr, "", [](ScriptCall&) -> int { throw std::runtime_error("thrown"); }},
         {"Modal", {}, nullptr, "", [](ScriptCall&) { Scripting::Current()->Run(&Probe::closed); return 0; }},
         {"Close", {}, nullptr, "", [](ScriptCall&) { Probe::closed = 1; return 0; }}});
    return scriptClass;
}

Probe::Probe() : ScriptObject(ProbeClass()) { ++live; }

struct ProbeExtension final : ScriptExtension {
    void Register(lua_State* L) override { ProbeClass().Register(L); }
    std::string GetInitText() override { return ProbeClass().Text().init; }
};

TEST(Binding, ObjectsOfOtherRoomsAreBoundCheckedAndCollected) {
    const ProbeExtension extension;
    ScriptRig rig;
    EXPECT_TRUE(rig.Run("probe:Look(probe) probe:Look(vtApp) probe:Help()\n"
                        "for i = 1, 100 do another = Probe() end"));
    EXPECT_EQ(rig.Take(), (Lines{"is a probe: 1", "metatable has methods: 1", "is a probe: 0",
        "metatable has methods: 1",
                                 "    Help()", "    Look(object)", "    Throw()",
        "    Modal()", "    Close()"}));
    EXPECT_EQ(Probe::live, 0);
}

TEST(Binding, WrongObjectsAndWhatAMethodThrowsAreErrorsOfTheScript) {
    const ProbeExtension extension;
    ScriptRig rig;
    const struct {
        const char *call, *error;
    } kCases[] = {
        {"vtApp.Quit()", "bad argument #1 to 'Quit' (userdata expected, got no value)"},
        {"vtApp.Quit(vtDebug)", "VTApp expected, got userdata"},
        {"vtApp.Quit('text')", "userdata expected, got string"},
        {"vtDebug:ODS({})", "bad argument #1 to 'ODS' (string expected, got table)"},
        {"vtApp:RegisterAction('a', 'b', 'c', nil)", "boolean expected, got nil"},
        {"probe:Throw()", "thrown"},
        {"Nothing()", "attempt to call global 'Nothing' (a nil value)"},
        {"print('x')", "attempt to call global 'print' (a nil value)"},
    };
    for (const auto& test : kCases) {
        EXPECT_FALSE(rig.Run(std::string("function Do() ") + test.call + " end", "Do"));
        const Lines lines = rig.Take();
        ASSERT_EQ(lines.size(), 2u) << test.call;
        EXPECT_TRUE(lines[0].starts_with("ERROR: " + rig.directory.File("script.vtc") + ":")) << lines[0];
        EXPECT_NE(lines[0].find(test.error), std::string::npos) << lines[0];
        EXPECT_TRUE(lines[1].starts_with("WARNING: Error executing script function (Do)")) << lines[1];
    }
    EXPECT_EQ(Probe::live, 0);
}

TEST(Host, TellsOfFilesThatCannotBeRun) {
    ScriptRig rig;
    EXPECT_FALSE(ExecuteScriptFile(nullptr, "missing.vtc", "F", nullptr, true));
    EXPECT_EQ(rig.Take(), Lines{"WARNING: Can't open (missing.vtc) script file"});
    EXPECT_FALSE(ExecuteScriptFile(nullptr, ".", "F", nullptr, true));
    rig.Take();
    rig.directory.Write("wrong.vtc", "x = = 1");
    EXPECT_FALSE(ExecuteScriptFile(nullptr, "wrong.vtc", "F", nullptr, true));
    Lines lines = rig.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].starts_with("ERROR: wrong.vtc:")) << lines[0];
    EXPECT_EQ(lines[1], "WARNING: Can't init (wrong.vtc) script file");
    rig.directory.Write("compiled.vtc", "\033Lua\x51");
    EXPECT_FALSE(ExecuteScriptFile(nullptr, "compiled.vtc", "F", nullptr, true));
    EXPECT_NE(rig.Take().at(0).find("precompiled"), std::string::npos);
    EXPECT_TRUE(ExecuteScriptFile(nullptr, rig.directory.Write("a.vtc", "x = 1"), "F", nullptr, false));
    EXPECT_EQ(rig.Take(), Lines{});
}

TEST(Host, AnErrorOfTheTopLevelIsKeptForTheFrontEndAndStopsNothing) {
    ScriptRig rig;
    const std::string file = rig.directory.Write("a.vtc", "function F() vtDebug:ODS('F') end\nx = nil + 1");
    const ScriptResult result = RunScriptFile(nullptr, file, "F", nullptr, true);
    EXPECT_TRUE(result.done && result.hadFunction);
    EXPECT_NE(result.topLevelError.find("arithmetic"), std::string::npos);
    EXPECT_EQ(rig.Take(), Lines{"F"});
}

TEST(Host, AScriptsPathIsItsNameUpToTheLastSlash) {
    ScriptRig rig;
    std::filesystem::create_directory("sub");
    for (const std::string name : {"a.vtc", "sub/a.vtc", "./a.vtc", "b\\a.vtc"}) {
        rig.directory.Write(name, "vtDebug:ODS(vtScript:GetPath())");
        EXPECT_TRUE(ExecuteScriptFile(nullptr, name, "", nullptr, false));
        const std::size_t slash = name.rfind('/');
        EXPECT_EQ(rig.Take(), Lines{slash == std::string::npos ? "" : name.substr(0, slash + 1)});
    }
}

TEST(Host, StatesShareNothingButDictionaries) {
    ScriptRig rig;
    EXPECT_TRUE(rig.Run("mine = 5\nvtApp:CreateDictionary('ours')\nvtApp:GetDictionary('ours'):Set('x', 7)"));
    rig.Take();
    EXPECT_EQ(rig.Value("mine == nil"), "true");
    EXPECT_EQ(rig.Value("vtApp:GetDictionary('ours'):Get('x')"), "7");
}

TEST(Host, OnlyScriptsWithANameStayAliveAndAnotherMayTakeIt) {
    ScriptRig rig;
    const std::string counter = "count = 0\nfunction Count() count = count + 1 vtDebug:ODS(count) end\n";
    const std::string named = counter + "vtApp:RegisterScript('counter', vtScript)\n"
                                        "vtApp:RegisterAction('count', 'counter', 'Count', true)";
    rig.Run(counter);
    EXPECT_EQ(FindInstance(1), nullptr);
    rig.Run(named);
    rig.Take();
    EXPECT_TRUE(ExecuteActionNow("count", nullptr, nullptr) && ExecuteActionNow("count", nullptr, nullptr));
    EXPECT_EQ(rig.Take(), (Lines{"1", "2"}));
    rig.Run(named);
    rig.Take();
    EXPECT_TRUE(ExecuteActionNow("count", nullptr, nullptr));
    EXPECT_EQ(rig.Take(), Lines{"1"});
}

TEST(Host, AScriptThatLosesItsNameWhileItRunsEndsInPeace) {
    ScriptRig rig;
    const std::string usurper = rig.directory.Write("usurper.vtc", "vtApp:RegisterScript('king', vtScript)\n"
        "vtApp:RegisterAction('rule', 'king', 'Rule', true)\nfunction Rule() vtDebug:ODS('new') end");
    rig.Run("vtApp:RegisterScript('king', vtScript)\nvtApp:RegisterAction('rule', 'king', 'Rule', true)\n"
            "function Rule() vtApp:ExecuteScript('usurper.vtc', '')\nlocal t = {} for i = 1, 1000 do t[i] = VTDictionary() end\n"
            "vtApp:ExecuteAction('rule') vtDebug:ODS('old') end");
    rig.Take();
    EXPECT_TRUE(ExecuteActionNow("rule", nullptr, nullptr));
    const Lines lines = rig.Take();
    ASSERT_EQ(lines.size(), 3u);                     // the first tells of the function "" that is not there
    EXPECT_EQ(lines[1], "new");
    EXPECT_EQ(lines[2], "old");
}

TEST(Host, AHookThatRunsWhileALostScriptFailsDoesNotTakeItAway) {
    ScriptRig rig;
    rig.directory.Write("usurper.vtc", "vtApp:RegisterScript('king', vtScript)\nvtApp:RegisterAction('hook', 'king', 'Hook')\n"
                                       "vtDebug:SetODSHook('hook')\nfunction Hook() end");
    EXPECT_FALSE(rig.Run("vtApp:RegisterScript('king', vtScript)\n"
                         "function F() vtApp:ExecuteScript('usurper.vtc', '') Nothing() end", "F"));
}

TEST(Host, AScriptWithoutANameLivesOnlyWhileSomebodyElseHoldsIt) {
    ScriptRig rig;
    const std::string keeper = "vtApp:CreateDictionary('d') vtApp:GetDictionary('d'):Set('script', vtScript)\n";
    rig.Run(keeper + "vtApp:RegisterScript('n', vtScript)");
    rig.Run("vtApp:RegisterScript('n', vtScript)");
    rig.Take();
    rig.Run("vtApp:RegisterScript('again', vtApp:GetDictionary('d'):Get('script'))");   // the first is still there
    EXPECT_EQ(rig.Take(), Lines{});
    rig.Run("vtApp:RegisterScript('again', vtScript)\nvtApp:GetDictionary('d'):Remove('script')");
    EXPECT_NE(rig.scripting.FindScript("again"), nullptr);
}

TEST(Host, NothingThatAScriptDoesRunsOutOfStackOrMemory) {
    ScriptRig rig;
    rig.directory.Write("self.vtc", "function F() vtApp:ExecuteScript('self.vtc', 'F') end");
    rig.directory.Write("gsub.vtc", "function F() string.gsub('x', 'x', function() vtApp:ExecuteScript('gsub.vtc', 'F') end) end");
    const char* const kScripts[] = {
        "function F() return F() + 1 end",
        "function F() vtApp:ExecuteScript('self.vtc', 'F') end",
        "function F() vtApp:ExecuteScript('gsub.vtc', 'F') end",
        "function G() string.gsub('x', 'x', G) end function F() G() end",
        "vtApp:RegisterScript('s', vtScript) vtApp:RegisterAction('f', 's', 'F', true) function F() vtApp:ExecuteAction('f') end",
        "function F() string.find(string.rep('a', 100000), string.rep('a?', 100000)) end",
        "function F() local s = 'x' while true do s = s .. s end end",
        "function F() local t = {} for i = 1, 100 do t[i] = VTArray(VT_DOUBLE, 1e8) end end",
    };
    for (const char* script : kScripts) {
        rig.Run(script, "F");
        bool told = false;
        for (const std::string& line : rig.Take())
            told = told || line.starts_with("ERROR: ") || line.find("Can't open") != line.npos;
        EXPECT_TRUE(told) << script;
    }
}

std::atomic<bool> g_stop{false};

TEST(HostThread, AStopEndsEndlessLoops) {
    for (const char* script : {"function F() while true do end end", "function F() vtApp:Run() end",
                               "function F() while true do VTDictionary() end end",
                               "vtApp:RegisterScript('s', vtScript) vtApp:RegisterAction('f', 's', 'G')\n"
                               "function G() while true do end end function F() while true do vtApp:ExecuteAction('f') end end"}) {
        g_stop = false;
        ScriptRig rig([] { return g_stop.load(); });
        std::thread user([] {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            g_stop = true;
        });
        const auto start = std::chrono::steady_clock::now();
        rig.Run(script, "F");
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << script;
        user.join();
    }
}

TEST(HostThread, ActionsOfOtherThreadsRunInTheMainLoopAndAreWaitedFor) {
    ScriptRig rig;
    rig.Run("total = 0\nvtApp:RegisterScript('s', vtScript) vtApp:RegisterAction('add', 's', 'Add')\n"
            "vtApp:RegisterAction('end', 's', 'End')\nfunction Add(d) total = total + d:Get('n') d:Set('seen', total) end\n"
            "function End() vtDebug:ODS(total) vtApp:Quit() end");
    rig.Take();
    std::atomic<int> unanswered{0}, left{4};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 1; i <= 50; ++i) {
                const auto values = MakeObject<VTDictionary>();
                values->SetNumber("n", i);
                EXPECT_TRUE(ExecuteActionNow("add", values.Get(), nullptr));
                double seen = 0;
                if (!values->GetNumber("seen", seen)) ++unanswered;
            }
            EXPECT_TRUE(ExecuteActionNow("not there", nullptr, nullptr));    // whatever the action did
            if (--left == 0) ExecuteActionNow("end", nullptr, nullptr);
        });
    rig.scripting.Run();
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(unanswered, 0);
    EXPECT_EQ(rig.Take().back(), "5100");
}

// The queue's lock is held while an action of it runs: the loop that this one runs takes what waits all the same.
TEST(HostThread, ALoopThatAnActionRunsServesTheOthersThatWait) {
    const ProbeExtension extension;
    ScriptRig rig;
    rig.Run("vtApp:RegisterScript('s', vtScript)\n"
            "vtApp:RegisterAction('modal', 's', 'Modal') vtApp:RegisterAction('close', 's', 'Close')\n"
            "function Modal() probe:Modal() vtDebug:ODS('modal has ended') end\n"
            "function Close() probe:Close() vtDebug:ODS('closed') end");
    Probe::closed = 0;
    std::vector<std::thread> threads;
    for (const char* action : {"modal", "close"}) {
        threads.emplace_back([action] { EXPECT_TRUE(ExecuteActionNow(action, nullptr, nullptr)); });
        EXPECT_TRUE(Await([&] { return rig.scripting.Queue().Count() == threads.size(); }));
    }
    rig.scripting.Run(&Probe::closed);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(rig.Take(), (Lines{"closed", "modal has ended"}));
}

TEST(HostThread, WhoStillWaitsWhenTheHostEndsIsLetGo) {
    std::thread waiting;
    {
        ScriptRig rig;
        waiting = std::thread([&] { rig.scripting.Queue().CallAndWait("nobody", nullptr); });
        EXPECT_TRUE(Await([&] { return rig.scripting.Queue().Count() == 1; }));
    }
    waiting.join();
}

TEST(HostThread, LinesOfOtherThreadsReachTheHook) {
    ScriptRig rig;
    rig.Run("vtApp:RegisterScript('s', vtScript) vtApp:RegisterAction('hook', 's', 'Hook')\nvtDebug:SetODSHook('hook')\n"
            "function Hook(d) vtDebug:ODS('heard ' .. d:Get('Text')) if d:Get('Text') == 'end' then vtApp:Quit() end end");
    std::thread other([] { Print("end"); });
    rig.scripting.Run();
    other.join();
    EXPECT_EQ(rig.Take().back(), "heard end");
}

TEST(Dictionaries, RingsOfThemAreGivenBack) {
    ScriptRig rig;
    const ProbeExtension extension;
    rig.Run("for i = 1, 3000 do local a, b = VTDictionary(), VTDictionary() a:Set('b', b) b:Set('a', a) a:Set('a', a)\n"
            "a:Set('probe', Probe()) end\nkept = VTDictionary() kept:Set('kept', kept) kept:Set('probe', Probe())");
    EXPECT_LT(Probe::live, 2000);
    CollectDictionaries();
    EXPECT_EQ(Probe::live, 0);
}

TEST(Dictionaries, ALongChainComesApartWithoutNestedCalls) {
    ScriptRig rig;
    EXPECT_TRUE(rig.Run("local d = VTDictionary() for i = 1, 100000 do local n = VTDictionary() n:Set('next', d) d = n end"));
}

TEST(Dictionaries, KeysAreTheCrcOfNames) {
    EXPECT_EQ(NameKey(""), 0xFFFFFFFFu);
    EXPECT_EQ(NameKey("123456789"), ~0xCBF43926u);
}

TEST(Actions, AParameterComesAsTheTextParam) {
    ScriptRig rig;
    const ProbeExtension extension;
    rig.Run("vtApp:RegisterScript('s', vtScript) vtApp:RegisterAction('say', 's', 'Say')\n"
            "function Say(d) if d then vtDebug:ODS(d:Get('Param')) else vtDebug:ODS('nothing') end end");
    rig.Take();
    LuaVM& vm = *rig.scripting.FindScript("s")->Vm();
    EXPECT_TRUE(vm.ExecuteActionParam("say", "x"));
    EXPECT_TRUE(vm.ExecuteActionParam("say", nullptr));
    EXPECT_FALSE(vm.ExecuteActionParam("nothing", nullptr));
    EXPECT_EQ(rig.Take(), (Lines{"x", "nothing", "Action(nothing) not registered, can't be executed"}));
}

TEST(Numbers128, AreReadFromTextsDigitByDigit) {
    using Word = std::uint32_t;
    const auto value = [](Word w3, Word w2, Word w1, Word w0) { return U128{{w0, w1, w2, w3}}; };
    EXPECT_EQ(ParseU128("0x1"), value(0, 0, 0, 1));
    EXPECT_EQ(ParseU128("0xAbCdEf0123456789"), value(0, 0, 0xABCDEF01, 0x23456789));
    EXPECT_EQ(ParseU128("0x9" + std::string(32, 'F')), value(~0u, ~0u, ~0u, ~0u));   // the last 32 digits
    EXPECT_EQ(ParseU128("0x12x4"), value(0, 0, 0, 0x1200));                          // what was read keeps its place
    for (const char* text : {"", "0x", "12", "0X12"}) EXPECT_EQ(ParseU128(text), U128{});
}

}  // namespace
}  // namespace vonta::test
