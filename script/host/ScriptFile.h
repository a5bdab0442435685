// The file that a script is read from. It may be a pipe.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace vonta {

class ScriptFile {
public:
    // Null if it cannot be opened, or is a directory.
    static std::unique_ptr<ScriptFile> Open(const std::string& name, const char* mode);
    ~ScriptFile() { Close(); }
    ScriptFile(const ScriptFile&) = delete;
    ScriptFile& operator=(const ScriptFile&) = delete;

    void Close();
    std::size_t Read(void* buffer, std::size_t size, std::size_t count);   // whole items; 0 at the end or when closed
    const std::string& GetName() const { return name_; }

private:
    ScriptFile(std::string name, std::FILE* file) : name_(std::move(name)), file_(file) {}

    std::string name_;
    std::FILE* file_;
};

}  // namespace vonta
