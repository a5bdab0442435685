// Single fields that one thread stores and another reads without a lock: cells, volumes, mutes, positions.
// Relaxed order: the reader may see the value one block later, never half of it.
#pragma once

#include <atomic>
#include <type_traits>

namespace vonta {

// Fields of the document, which are plain data to loaders and savers.
template <class T>
T Load(const T& field) {
    return std::atomic_ref<T>(const_cast<T&>(field)).load(std::memory_order_relaxed);
}

template <class T>
void Store(T& field, std::type_identity_t<T> value) {
    std::atomic_ref<T>(field).store(value, std::memory_order_relaxed);
}

// A field that is shared from the day it is made.
template <class T>
class Relaxed {
public:
    Relaxed(T value = {}) : value_(value) {}
    operator T() const { return value_.load(std::memory_order_relaxed); }
    Relaxed& operator=(T value) {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }

private:
    std::atomic<T> value_;
};

}  // namespace vonta
