// Values by name: numbers, texts and objects of scripts, each name in one of the three.
//
// A name is known by its CRC-32: two names that share one share an item, which keeps the name that came first. Items are
// counted numbers first, then texts, then objects, each in the order of these keys.
//
// Dictionaries can hold each other, and themselves: what only such a ring holds is found and given back by
// CollectDictionaries, which runs by itself as they grow in number.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "script/binding/ScriptObject.h"
#include "script/classes/HostClasses.h"

namespace vonta {

class VTDictionary final : public ScriptObject {
public:
    VTDictionary();
    ~VTDictionary() override;

    void SetNumber(std::string_view name, double value);
    void SetString(std::string_view name, std::string_view text);
    void SetObject(std::string_view name, ScriptObject* object);         // takes a reference of its own
    bool GetNumber(std::string_view name, double& value) const;          // false if there is none, as the next two
    bool GetString(std::string_view name, std::string& text) const;
    bool GetObject(std::string_view name, ScriptObject*& object) const;  // without a reference
    bool Exists(std::string_view name) const;
    bool Remove(std::string_view name);                                  // false if it is not there
    int GetCount() const;
    const std::string* GetItemName(int index) const;                     // null outside

private:
    friend void CollectDictionaries();

    template <class Value>
    struct Item {
        std::string name;
        Value value;
    };
    template <class Value>
    using Items = std::map<std::uint32_t, Item<Value>>;

    void Clear();

    Items<double> numbers_;
    Items<std::string> strings_;
    Items<ScriptRef<ScriptObject>> objects_;
    bool holdsDictionaries_ = false;
};

// Gives back dictionaries that nothing holds but each other. The thread that runs scripts.
void CollectDictionaries();

// Reflected, polynomial 0xEDB88320, from 0xFFFFFFFF, not inverted at the end.
std::uint32_t NameKey(std::string_view name);

}  // namespace vonta
