#include "script/host/ScriptHost.h"

#include <algorithm>

#include "script/binary/BinaryClasses.h"
#include "script/classes/HostClasses.h"
#include "script/song/SongClasses.h"

namespace vonta {
namespace {

ClassList g_windowClasses;

std::vector<ScriptExtension*>& Extensions() {
    static std::vector<ScriptExtension*> extensions;
    return extensions;
}

class TheApplicationHost final : public ScriptHost {
public:
    void RegisterClasses(lua_State* L) override {
        for (const ScriptClass* scriptClass : ApplicationClasses()) scriptClass->Register(L);
        for (ScriptExtension* extension : Extensions()) extension->Register(L);
    }

    void GetInitText(std::string& text) override {
        for (const ScriptClass* scriptClass : ApplicationClasses()) AppendInitText(text, *scriptClass);
        for (ScriptExtension* extension : Extensions()) text += extension->GetInitText() + "\n";
    }
};

}  // namespace

ScriptExtension::ScriptExtension() { Extensions().push_back(this); }

ScriptExtension::~ScriptExtension() { std::erase(Extensions(), this); }

const ClassList& LibraryClasses() {
    static const ClassList classes{&VTScriptClass(), &VTFileClass(),     &VTFileUtilsClass(),
                                   &VTStructClass(), &VTStructDefClass(), &VTArrayClass(),
                                   &VTBinUtilsClass(), &VTDictionaryClass(), &VTU128Class()};
    return classes;
}

const ClassList& LibraryTexts() {
    static const ClassList classes{&VTFileClass(),     &VTFileUtilsClass(), &VTStructClass(),
                                   &VTArrayClass(),    &VTStructDefClass(), &VTBinUtilsClass(),
                                   &VTDictionaryClass(), &VTU128Class()};
    return classes;
}

ClassList ApplicationClasses() {
    ClassList classes{&VTPlayerClass(),     &VTSongClass(),   &VTPatternClass(),
                      &VTInstrumentClass(), &VTSampleClass(), &VTAppClass()};
    classes.insert(classes.end(), g_windowClasses.begin(), g_windowClasses.end());
    classes.push_back(&VTDebugClass());
    classes.push_back(&VTSystemClass());
    return classes;
}

void SetWindowClasses(ClassList classes) { g_windowClasses = std::move(classes); }

ScriptHost& ApplicationHost() {
    static TheApplicationHost host;
    return host;
}

void AppendInitText(std::string& text, const ScriptClass& scriptClass) {
    text += scriptClass.Text().init;
    text += '\n';
}

}  // namespace vonta
