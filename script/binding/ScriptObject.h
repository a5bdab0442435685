// What a script can hold: a counted native object of some class. A userdata is a pointer to one, or null for the
// classes that have no native state.
//
// An object is born with one reference, which goes over to the userdata that it is pushed as. Counting is safe from
// any thread; all else belongs to the thread that runs scripts.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

struct lua_State;

namespace vonta {

class ScriptObject;

// One static object per class.
class ScriptClassDesc {
public:
    // Wraps the object in a new userdata and leaves it on the stack. The caller's reference goes over to it.
    virtual void Push(lua_State* L, ScriptObject* object) const = 0;
    virtual bool IsType(const char* name) const = 0;

protected:
    ~ScriptClassDesc() = default;
};

class ScriptObject {
public:
    explicit ScriptObject(const ScriptClassDesc& description) : class_(&description) {}
    ScriptObject(const ScriptObject&) = delete;
    ScriptObject& operator=(const ScriptObject&) = delete;
    virtual ~ScriptObject() = default;
    virtual void AddRef() { ++references_; }
    virtual void Release() {
        if (--references_ == 0) delete this;
    }

    const ScriptClassDesc& Class() const { return *class_; }
    std::int32_t References() const { return references_; }

private:
    std::atomic<std::int32_t> references_{1};
    const ScriptClassDesc* class_;
};

// Holds one reference.
template <class T>
class ScriptRef {
public:
    ScriptRef() = default;
    explicit ScriptRef(T* taken) : object_(taken) {}  // takes over the reference
    static ScriptRef Share(T* object) {
        if (object) object->AddRef();
        return ScriptRef(object);
    }
    ScriptRef(const ScriptRef& other) : ScriptRef(Share(other.object_)) {}
    ScriptRef(ScriptRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class Derived>
    ScriptRef(ScriptRef<Derived>&& other) : object_(other.Detach()) {}
    ScriptRef& operator=(ScriptRef other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ScriptRef() { if (object_) object_->Release(); }

    T* Get() const { return object_; }
    T* Detach() { return std::exchange(object_, nullptr); }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_ = nullptr;
};

template <class T, class... Arguments>
ScriptRef<T> MakeObject(Arguments&&... arguments) {
    return ScriptRef<T>(new T(std::forward<Arguments>(arguments)...));
}

// Pushes it through its class.
template <class T>
void PushObject(lua_State* L, ScriptRef<T> object) {
    const ScriptClassDesc& description = object->Class();
    description.Push(L, object.Detach());
}

}  // namespace vonta
