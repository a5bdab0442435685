// The objects that scripts have of the document's parts.
#pragma once

#include <memory>

#include "script/binding/ScriptObject.h"
#include "script/song/Held.h"
#include "script/song/SongClasses.h"

namespace vonta {

class VTSong final : public ScriptObject {
public:
    explicit VTSong(std::shared_ptr<HeldSong> song) : ScriptObject(VTSongClass()), held(std::move(song)) {}
    const std::shared_ptr<HeldSong> held;
};

class VTPattern final : public ScriptObject {
public:
    VTPattern(std::shared_ptr<HeldSong> song, int number, Pattern* pattern)
        : ScriptObject(VTPatternClass()), held(std::move(song)), number_(number), pattern_(pattern) {}
    // Null once it has gone.
    Pattern* Find() const {
        const Song* const song = held->Find();
        return song && song->GetPattern(number_) == pattern_ ? pattern_ : nullptr;
    }
    const std::shared_ptr<HeldSong> held;

private:
    int number_;
    Pattern* pattern_;
};

class VTInstrument final : public ScriptObject {
public:
    explicit VTInstrument(std::shared_ptr<HeldInstrument> instrument)
        : ScriptObject(VTInstrumentClass()), held(std::move(instrument)) {}
    const std::shared_ptr<HeldInstrument> held;
};

class VTSample final : public ScriptObject {
public:
    explicit VTSample(std::shared_ptr<HeldSample> sample) : ScriptObject(VTSampleClass()), held(std::move(sample)) {}
    const std::shared_ptr<HeldSample> held;
};

// Of a method of Wrapper: what it wraps, or null, which has been warned of. For `Part& part` with a body see With.
template <class Wrapper, class Call, class Work>
int With(Call& call, const char* message, Work work) {
    Wrapper& wrapper = call.template Self<Wrapper>();
    if constexpr (requires { wrapper.Find(); }) {
        if (auto* const part = wrapper.Find()) return work(*part);
    } else {
        if (auto* const part = wrapper.held->Find()) return work(*part);
    }
    return call.Warn("%s", message);
}

constexpr const char* kSongGone = "This song does not exist";
constexpr const char* kPatternGone = "This pattern does not exist";
constexpr const char* kInstrumentGone = "This instrument does not exist";
constexpr const char* kSampleGone = "This sample does not exist";
constexpr const char* kBadIndex = "Index parameter out of range";

}  // namespace vonta
