#include "script/host/ScriptFile.h"

#include <filesystem>
#include <utility>

namespace vonta {

std::unique_ptr<ScriptFile> ScriptFile::Open(const std::string& name, const char* mode) {
    std::error_code failed;
    if (std::filesystem::is_directory(name, failed)) return nullptr;
    std::FILE* const file = std::fopen(name.c_str(), mode);
    return file ? std::unique_ptr<ScriptFile>(new ScriptFile(name, file)) : nullptr;
}

void ScriptFile::Close() {
    if (std::FILE* const file = std::exchange(file_, nullptr)) std::fclose(file);
}

std::size_t ScriptFile::Read(void* buffer, std::size_t size, std::size_t count) {
    return file_ ? std::fread(buffer, size, count, file_) : 0;
}

}  // namespace vonta
