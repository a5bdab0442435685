// A shared library that may be missing: loaded at run time, and kept until the process ends.
#pragma once

#include <dlfcn.h>

namespace vonta {

class Library {
public:
    explicit Library(const char* fileName) : handle_(dlopen(fileName, RTLD_LAZY | RTLD_LOCAL)) {}

    // Points `function` at the library's function of that name. False, and null, if it is missing.
    template <class Function>
    bool Bind(Function*& function, const char* name) const {
        function = handle_ ? reinterpret_cast<Function*>(dlsym(handle_, name)) : nullptr;
        return function;
    }

private:
    void* handle_;
};

}  // namespace vonta
