// A typed array of numbers. All arrays together are bounded, so that no script takes the machine's memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "script/binary/BinaryClasses.h"
#include "script/binary/DataTypes.h"
#include "script/binding/LuaVM.h"
#include "script/binding/ScriptObject.h"

namespace vonta {

constexpr std::size_t kMaxArrayBytes = std::size_t{1} << 30;   // of all arrays

class VTArray final : public ScriptObject {
public:
    ~VTArray() override;
    // Null if an array cannot hold the type, or if there is no room for so many elements. All are zero. A state that is
    // given makes room by collecting its garbage.
    static ScriptRef<VTArray> Make(int type, double size, LuaVM* vm = nullptr);

    int Type() const { return type_; }
    int Size() const { return size_; }               // elements
    double Get(int index) const { return ReadNumber(type_, At(index)); }   // the index must be inside, as in Set
    void Set(int index, double value) { WriteNumber(type_, value, At(index)); }
    std::span<std::uint8_t> Bytes() { return {data_.get(), ByteCount()}; }
    std::span<const std::uint8_t> Bytes() const { return {data_.get(), ByteCount()}; }
    int ElementSize() const { return kDataTypes[type_].size; }

private:
    struct Free {
        void operator()(std::uint8_t* bytes) const { std::free(bytes); }
    };

    VTArray(int type, int size, std::uint8_t* data) : ScriptObject(VTArrayClass()), size_(size), type_(type), data_(data) {}
    std::uint8_t* At(int index) const { return data_.get() + static_cast<std::size_t>(index) * static_cast<std::size_t>(ElementSize()); }
    std::size_t ByteCount() const { return static_cast<std::size_t>(size_) * static_cast<std::size_t>(ElementSize()); }

    int size_, type_;
    std::unique_ptr<std::uint8_t[], Free> data_;
};

class ScriptCall;
// Swaps the bytes of every element, with a warning for each that cannot be.
void ConvertEndian(ScriptCall& call, VTArray& array);

}  // namespace vonta
