// The .vtc files beside this one, each a script whose lines "-- expect: text" tell in order what the host must print;
// the examples of the documentation; and the documentation itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "script/Reference.h"
#include "script/host/ScriptHost.h"
#include "tests/support/RandomCaller.h"
#include "tests/support/ScriptRig.h"

namespace vonta::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kExpect = "-- expect: ";

std::string TextOf(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> Expected(const std::string& script) {
    std::vector<std::string> texts;
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);)
        if (const std::size_t at = line.find(kExpect); at != line.npos)
            texts.push_back(line.substr(at + std::strlen(kExpect)));
    return texts;
}

// Of what the host tells, a part is enough; of what a script prints, the beginning.
bool Meets(const std::string& line, const std::string& text) {
    if (line.starts_with(text)) return true;
    const bool told = line.starts_with("WARNING: ") || line.starts_with("ERROR: ") || line.starts_with("top level: ");
    return told && line.find(text) != line.npos;
}

std::vector<fs::path> AllScripts() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(VONTA_SCRIPTS))
        if (entry.path().extension() == ".vtc") files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

std::vector<const ScriptClass*> AllClasses() {
    std::vector<const ScriptClass*> all = LibraryClasses();
    const ClassList more = ApplicationClasses();
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::string FileStem(const testing::TestParamInfo<fs::path>& info) { return info.param.stem().string(); }

class ScriptFiles : public testing::TestWithParam<fs::path> {};

TEST_P(ScriptFiles, PrintWhatTheyExpect) {
    ScriptRig rig;
    const std::string text = TextOf(GetParam());
    const ScriptResult result = RunScriptFile(nullptr, rig.directory.Write("script.vtc", text), "", nullptr, false);
    std::vector<std::string> lines = rig.Take();
    if (!result.topLevelError.empty()) lines.push_back("top level: " + result.topLevelError);
    const std::vector<std::string> expected = Expected(text);
    for (std::size_t i = 0; i < std::max(lines.size(), expected.size()); ++i) {
        const std::string line = i < lines.size() ? lines[i] : "(nothing)";
        const std::string wanted = i < expected.size() ? expected[i] : "(nothing)";
        ASSERT_TRUE(Meets(line, wanted)) << "line " << i + 1 << " is\n  " << line << "\nand not\n  " << wanted;
    }
}

INSTANTIATE_TEST_SUITE_P(All, ScriptFiles, testing::ValuesIn(AllScripts()), FileStem);

TEST(ClassTables, AreWhole) {
    const char* const order[] = {"VTScript", "VTFile", "VTFileUtils", "VTStruct", "VTStructDef", "VTArray",
        "VTBinUtils", "VTDictionary", "VTU128", "VTPlayer", "VTSong", "VTPattern", "VTInstrument", "VTSample", "VTApp", "VTDebug",
        "VTSystem"};
    const auto classes = AllClasses();
    ASSERT_EQ(classes.size(), std::size(order));
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const ScriptClass& scriptClass = *classes[i];
        EXPECT_STREQ(scriptClass.Name(), order[i]);
        EXPECT_STREQ(scriptClass.Methods()[0].name, "Help");
        EXPECT_STREQ(scriptClass.Methods()[1].name, "GetType");
        std::set<std::string> names;
        for (const MethodRow& row : scriptClass.Methods()) {
            EXPECT_TRUE(names.insert(row.name).second) << row.name;
            EXPECT_LE(row.parameters.size(), static_cast<std::size_t>(kMaxParameters));
            EXPECT_STRNE(row.about, "") << row.name;
        }
    }
}

// Each warning that a table knows is met by a script; a few cannot be by any.
TEST(ClassTables, EveryMessageIsTested) {
    const std::set<std::string> unreachable = {"Array type invalid, possible bug in script implementation"};
    std::string all;
    for (const fs::path& file : AllScripts())
        for (const std::string& text : Expected(TextOf(file))) all += text + "\n";
    const auto check = [&](const std::string& where, const char* message) {
        std::string pattern = std::regex_replace(std::string(message), std::regex(R"([.()+*?\[\]])"), R"(\$&)");
        pattern = std::regex_replace(pattern, std::regex("%[is]"), "[^\n]*");
        if (unreachable.contains(message)) return;
        EXPECT_TRUE(std::regex_search(all, std::regex(pattern))) << where << ": " << message;
    };
    for (const ScriptClass* scriptClass : AllClasses()) {
        std::vector<MethodRow> rows = scriptClass->Methods();
        rows.push_back(scriptClass->Constructor());
        for (const MethodRow& row : rows) {
            const std::string where = std::string(scriptClass->Name()) + ":" + row.name;
            for (const char* message : row.messages) check(where, message);
            for (const Parameter& parameter : row.parameters)
                if (parameter.message) check(where, parameter.message);
        }
    }
}

TEST(Documentation, IsMadeFromTheTables) {
    EXPECT_TRUE(TextOf(VONTA_DOCS "/scripting.md") == MakeScriptReference())
        << "build/debug/bin/script_reference > docs/scripting.md makes it anew";
}

TEST(Documentation, ExamplesOfClassesRun) {
    ScriptRig rig;
    for (const ScriptClass* scriptClass : AllClasses()) {
        const std::string file = rig.directory.Write("example.vtc", scriptClass->Text().example);
        EXPECT_EQ(RunScriptFile(nullptr, file, "", nullptr, false).topLevelError, "") << scriptClass->Name();
        for (const std::string& line : rig.Take())
            EXPECT_FALSE(line.starts_with("ERROR: " + file) || line.starts_with("WARNING: " + file)) << line;
    }
}

TEST(RandomCalls, BreakNothing) {
    for (std::uint32_t seed = 1; seed <= 3; ++seed) {
        const RandomCaller::Count count = RandomCaller(seed).Run(4000);
        EXPECT_LT(count.errors, count.calls);
    }
}

}  // namespace
}  // namespace vonta::test
