#include "app/config/ConfigFile.h"

#include "platform/Debug.h"

namespace vonta {
namespace {

bool Fail(const std::string& path, const DiskStream& stream) {
    DebugOutput("*warning: %s: %s\n", path.c_str(), stream.Error().c_str());
    return false;
}

}  // namespace

bool ReadConfigFile(const std::string& path, const std::function<void(FileStream&)>& read) {
    DiskStream stream;
    if (!stream.Open(path, "rb")) return Fail(path, stream);
    read(stream);
    return true;
}

bool WriteConfigFile(const std::string& path, const std::function<void(FileStream&)>& write, std::string* error) {
    DiskStream stream;
    if (stream.Open(path, "wb")) write(stream);
    if (stream.Close()) return true;
    if (error) *error = path + ": " + stream.Error();
    return Fail(path, stream);
}

}  // namespace vonta
