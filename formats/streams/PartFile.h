// The unfinished file of a save: it stands beside its target under a name of its own, locked for as long as its owner
// lives, and takes the target's name when it is whole.
#pragma once

#include <string>

namespace vonta {

class PartFile {
public:
    PartFile() = default;
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;
    ~PartFile() { Remove(); }

    // A new file in the directory; its descriptor, which is the caller's to close, or -1 with errno. What saves of
    // processes that are gone left there is removed first.
    int Create(const std::string& directory);
    bool IsOpen() const { return !path_.empty(); }
    bool MoveTo(const std::string& target);          // false with errno; then it is still there
    void Remove();                                   // while its descriptor is open; nothing if it was moved

    // Removes the part files of all saves that are under way, and lets no other begin: for a process that ends now,
    // whatever its threads are at. What was put in place before stays whole.
    static void RemoveAllForGood();

private:
    void Forget();

    std::string path_;
};

}  // namespace vonta
