// One Lua state, and the only road to it: methods of script classes never call the library, they use these operations.
//
// The operations that check an argument do not return when it is wrong: the error unwinds to the call of the running
// function. A state belongs to the thread that runs scripts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

struct lua_State;

namespace vonta {

using LuaFunction = int (*)(lua_State*);

// A row of a library table; a null row closes it. Laid out as the library's own.
struct LuaEntry {
    const char* name;
    LuaFunction function;
};

struct U128 {
    std::uint32_t words[4] = {};                     // least significant first
    bool operator==(const U128&) const = default;
};

class LuaVM final {
public:
    LuaVM();
    ~LuaVM();
    LuaVM(const LuaVM&) = delete;
    LuaVM& operator=(const LuaVM&) = delete;

    // In this order of slots.
    virtual void CheckType(int index, int type);
    virtual void* ToUserData(int index);
    virtual void* CheckUserData(int index, const char* className);   // null for an object of another class
    [[noreturn]] virtual void TypeError(int index, const char* className);
    virtual void* NewUserData(std::size_t size);
    virtual void GetMetaTable(const char* className);
    virtual void SetMetaTable(int index);
    virtual void NewTable();
    virtual int GetTop();
    virtual int NewMetaTable(const char* className);
    virtual void PushLString(const char* text, std::size_t length);
    virtual void PushValue(int index);
    virtual void SetTable(int index);
    virtual void PushCClosure(LuaFunction function, int upvalues);
    virtual void SetTop(int index);
    virtual void OpenLib(const char* libName, const LuaEntry* table, int upvalues);
    virtual void PushString(const char* text);
    virtual double CheckNumber(int index);
    virtual bool CheckBoolean(int index);            // a value that is false to Lua must be a boolean
    virtual const char* CheckString(int index);
    virtual void PushNumber(double value);
    virtual void PushBoolean(bool value);
    virtual int Type(int index);
    virtual void ToU128(U128& out, int index);       // of a string or a VTU128
    virtual void PushU128(const U128& value);        // makes a VTU128
    // The text, if not null, comes as the string "Param" of a dictionary.
    virtual bool ExecuteActionParam(const char* actionName, const char* text);
    virtual int TypeUserData();
    virtual int GlobalsIndex();
    virtual int TypeNumber();
    virtual int TypeString();
    virtual int TypeBoolean();

    [[noreturn, gnu::format(printf, 2, 3)]] void RaiseError(const char* format, ...);
    std::string_view CheckText(int index);           // as CheckString, with all bytes
    void PushText(std::string_view text) { PushLString(text.data(), text.size()); }
    void PushPointer(void* pointer);
    int UpvalueIndex(int number) { return GlobalsIndex() - number; }
    void CheckStack(int places);                     // room for so many more values, or an error
    // Memory that a new object holds outside the state: when much has come together, what is garbage is collected.
    void NoteMemory(std::size_t bytes);
    void Collect();                                  // all garbage
    lua_State* State() { return state_; }
    void Close();                                    // collects everything; the destructor does it too

private:
    static void* Allocate(void* self, void* block, std::size_t oldSize, std::size_t newSize);

    lua_State* state_;
    std::size_t used_ = 0, outside_ = 0;             // bytes in the state; outside of it since the last collection
};

// From the text "0x" and hexadecimal digits, of which the last 32 count; anything else is zero.
U128 ParseU128(std::string_view text);

}  // namespace vonta
