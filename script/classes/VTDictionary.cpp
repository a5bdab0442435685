#include "script/classes/VTDictionary.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "script/binding/ScriptCall.h"

namespace vonta {
namespace {

constexpr std::size_t kItemBytes = 256;              // about, of an item or an empty dictionary

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? 0xEDB88320u : 0);
        table[i] = value;
    }
    return table;
}

// Those that hold others, and how many may come together before rings are looked for.
struct Holders {
    static constexpr std::size_t kLeastTrigger = 1000;

    std::mutex lock;
    std::set<VTDictionary*> all;
    std::size_t trigger = kLeastTrigger;
};

Holders& TheHolders() {
    static Holders holders;
    return holders;
}

VTDictionary* AsDictionary(ScriptObject* object) {
    return &object->Class() == &VTDictionaryClass() ? static_cast<VTDictionary*>(object) : nullptr;
}

// A long chain of dictionaries comes apart link by link, not by calls in calls.
void ReleaseInTurn(std::vector<ScriptRef<ScriptObject>> objects) {
    static thread_local std::vector<ScriptRef<ScriptObject>>* waiting = nullptr;
    if (waiting) {
        std::ranges::move(objects, std::back_inserter(*waiting));
        return;
    }
    waiting = &objects;
    while (!objects.empty()) {
        const ScriptRef<ScriptObject> next = std::move(objects.back());
        objects.pop_back();
    }
    waiting = nullptr;
}

template <class Value>
Value* Find(auto& items, std::string_view name) {
    const auto found = items.find(NameKey(name));
    return found == items.end() ? nullptr : &found->second.value;
}

}  // namespace

std::uint32_t NameKey(std::string_view name) {
    static constexpr auto kTable = MakeCrcTable();
    std::uint32_t value = 0xFFFFFFFFu;
    for (const char letter : name) value = kTable[(value ^ static_cast<unsigned char>(letter)) & 0xFF] ^ value >> 8;
    return value;
}

VTDictionary::VTDictionary() : ScriptObject(VTDictionaryClass()) {}

VTDictionary::~VTDictionary() {
    if (holdsDictionaries_) {
        Holders& holders = TheHolders();
        const std::lock_guard lock(holders.lock);
        holders.all.erase(this);
    }
    Clear();
}

void VTDictionary::Clear() {
    numbers_.clear();
    strings_.clear();
    std::vector<ScriptRef<ScriptObject>> objects;
    for (auto& [key, item] : objects_) objects.push_back(std::move(item.value));
    objects_.clear();
    if (!objects.empty()) ReleaseInTurn(std::move(objects));
}

void VTDictionary::SetNumber(std::string_view name, double value) {
    const std::uint32_t key = NameKey(name);
    numbers_.try_emplace(key, Item<double>{std::string(name), 0}).first->second.value = value;
    strings_.erase(key);
    objects_.erase(key);
}

void VTDictionary::SetString(std::string_view name, std::string_view text) {
    const std::uint32_t key = NameKey(name);
    strings_.try_emplace(key, Item<std::string>{std::string(name), {}}).first->second.value = text;
    numbers_.erase(key);
    objects_.erase(key);
}

void VTDictionary::SetObject(std::string_view name, ScriptObject* object) {
    const std::uint32_t key = NameKey(name);
    auto& place = objects_.try_emplace(key, Item<ScriptRef<ScriptObject>>{std::string(name), {}}).first->second.value;
    place = ScriptRef<ScriptObject>::Share(object);
    numbers_.erase(key);
    strings_.erase(key);
    if (!AsDictionary(object)) return;
    Holders& holders = TheHolders();
    std::unique_lock lock(holders.lock);
    holdsDictionaries_ = true;
    holders.all.insert(this);
    if (holders.all.size() < holders.trigger) return;
    lock.unlock();
    CollectDictionaries();
}

bool VTDictionary::GetNumber(std::string_view name, double& value) const {
    const double* const found = Find<const double>(numbers_, name);
    if (found) value = *found;
    return found;
}

bool VTDictionary::GetString(std::string_view name, std::string& text) const {
    const std::string* const found = Find<const std::string>(strings_, name);
    if (found) text = *found;
    return found;
}

bool VTDictionary::GetObject(std::string_view name, ScriptObject*& object) const {
    const auto* const found = Find<const ScriptRef<ScriptObject>>(objects_, name);
    if (found) object = found->Get();
    return found;
}

bool VTDictionary::Exists(std::string_view name) const {
    const std::uint32_t key = NameKey(name);
    return numbers_.contains(key) || strings_.contains(key) || objects_.contains(key);
}

bool VTDictionary::Remove(std::string_view name) {
    const std::uint32_t key = NameKey(name);
    return numbers_.erase(key) + strings_.erase(key) + objects_.erase(key) > 0;
}

int VTDictionary::GetCount() const { return static_cast<int>(numbers_.size() + strings_.size() + objects_.size()); }

const std::string* VTDictionary::GetItemName(int index) const {
    if (index < 0) return nullptr;
    auto left = static_cast<std::size_t>(index);
    const auto look = [&](const auto& items) -> const std::string* {
        if (left < items.size()) return &std::next(items.begin(), static_cast<std::ptrdiff_t>(left))->second.name;
        left -= items.size();
        return nullptr;
    };
    if (const std::string* name = look(numbers_)) return name;
    if (const std::string* name = look(strings_)) return name;
    return look(objects_);
}

// Counts the references that dictionaries have on each other. One with more than those is held from outside, and so is
// what can be reached from it; the others are emptied, which lets them go.
void CollectDictionaries() {
    Holders& holders = TheHolders();
    std::vector<ScriptRef<VTDictionary>> all;
    {
        const std::lock_guard lock(holders.lock);
        for (VTDictionary* dictionary : holders.all) all.push_back(ScriptRef<VTDictionary>::Share(dictionary));
    }
    const auto forEachHeld = [](VTDictionary& holder, auto visit) {
        for (auto& [key, item] : holder.objects_)
            if (VTDictionary* const held = AsDictionary(item.value.Get())) visit(*held);
    };
    std::map<VTDictionary*, int> inner;
    for (const auto& holder : all) forEachHeld(*holder, [&](VTDictionary& held) { ++inner[&held]; });
    std::vector<VTDictionary*> reached;
    std::set<VTDictionary*> live;
    for (const auto& holder : all)
        if (holder->References() > inner[holder.Get()] + 1) reached.push_back(holder.Get());
    while (!reached.empty()) {
        VTDictionary* const next = reached.back();
        reached.pop_back();
        if (live.insert(next).second) forEachHeld(*next, [&](VTDictionary& held) { reached.push_back(&held); });
    }
    for (const auto& holder : all)
        if (!live.contains(holder.Get())) holder->Clear();
    all.clear();
    const std::lock_guard lock(holders.lock);
    holders.trigger = std::max(2 * holders.all.size(), Holders::kLeastTrigger);
}

namespace {

constexpr const char* kNotFound = "Data with the ID(%s) not found";
constexpr const char* kNotSupported = "DataType not supported by VTDictionary";
constexpr const char* kNotRemoved = "Error removing data(%s) from dictionary";
constexpr const char* kNoIndex = "Error accessing to the data item with index (%i), possible out of range";

VTDictionary& Self(ScriptCall& call) { return call.Self<VTDictionary>(); }

int Construct(ScriptCall& call) {
    call.Vm().NoteMemory(kItemBytes);
    return call.GiveObject(MakeObject<VTDictionary>());
}

int Get(ScriptCall& call) {
    double number;
    std::string text;
    ScriptObject* object;
    if (Self(call).GetNumber(call.Text(0), number)) return call.GiveNumber(number);
    if (Self(call).GetString(call.Text(0), text)) return call.GiveText(text);
    if (!Self(call).GetObject(call.Text(0), object)) return call.Warn(kNotFound, call.Text(0));
    return call.GiveObject(ScriptRef<ScriptObject>::Share(object));
}

int Set(ScriptCall& call) {
    LuaVM& vm = call.Vm();
    const int index = call.Index(1), type = vm.Type(index);
    if (type == vm.TypeNumber()) {
        Self(call).SetNumber(call.Text(0), vm.CheckNumber(index));
    } else if (type == vm.TypeString()) {
        const std::string_view text = vm.CheckString(index);
        vm.NoteMemory(text.size());
        Self(call).SetString(call.Text(0), text);
    } else {
        ScriptObject* const object = type == vm.TypeUserData() ? CheckAnyObject(vm, index) : nullptr;
        if (!object) return call.Warn(kNotSupported);
        Self(call).SetObject(call.Text(0), object);
    }
    vm.NoteMemory(kItemBytes);
    return 0;
}

int Exist(ScriptCall& call) { return call.GiveTruth(Self(call).Exists(call.Text(0))); }

int Remove(ScriptCall& call) {
    return Self(call).Remove(call.Text(0)) ? 0 : call.Warn(kNotRemoved, call.Text(0));
}

int GetNumItems(ScriptCall& call) { return call.GiveNumber(Self(call).GetCount()); }

int GetItemName(ScriptCall& call) {
    const std::string* const name = Self(call).GetItemName(call.Integer(0));
    return name ? call.GiveText(*name) : call.Warn(kNoIndex, call.Integer(0));
}

int GetItemType(ScriptCall& call) {
    double number;
    std::string text;
    ScriptObject* object;
    if (Self(call).GetNumber(call.Text(0), number)) return call.GiveText("Number");
    if (Self(call).GetString(call.Text(0), text)) return call.GiveText("String");
    if (Self(call).GetObject(call.Text(0), object)) return call.GiveText("VTObject");
    return call.Warn(kNotFound, call.Text(0));
}

constexpr const char* kExample = R"(song = VTDictionary()
song:Set("title", "Night drive")
song:Set("bpm", 132)
for i = 0, song:GetNumItems() - 1 do
    local name = song:GetItemName(i)
    vtDebug:ODS(name .. " is a " .. song:GetItemType(name) .. ": " .. song:Get(name))
end
)";

}  // namespace

const ScriptClass& VTDictionaryClass() {
    static const ScriptClass scriptClass(
        "VTDictionary",
        {"Numbers, texts and objects by name. Scripts and actions are given their arguments in one. An index counts "
         "numbers first, then texts, then objects, and may change when an item is added.",
         kExample},
        {"VTDictionary", {}, "VTDictionary", "An empty one.", Construct},
        {
            {"Get", {Text("name")}, "number, string or object", "What is stored under the name.", Get, {kNotFound}},
            {"Set", {Text("name"), Any("value", "number, string or object")}, nullptr,
             "Stores it in the place of whatever had the name.", Set, {kNotSupported}},
            {"Exist", {Text("name")}, "boolean", "Whether something has the name.", Exist},
            {"Remove", {Text("name")}, nullptr, "Takes it out.", Remove, {kNotRemoved}},
            {"GetNumItems", {}, "number", "How many items there are.", GetNumItems},
            {"GetItemName", {Number("index")}, "string", "The name of an item, counted from 0.", GetItemName, {kNoIndex}},
            {"GetItemType", {Text("name")}, "string", "\"Number\", \"String\" or \"VTObject\".", GetItemType, {kNotFound}},
        });
    return scriptClass;
}

}  // namespace vonta
