// The steps that the user took, any number of them, each with a name and a place, to be taken back and done again.
//
// A step is open from Begin to End; what is added joins it. Steps of one gesture (a drag, a recorded take) and one name
// become one. A new step after an undo drops those that were undone. Over the budget the oldest are dropped, never the
// last. Interface thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "edit/Change.h"

namespace vonta {

class CellsChange;
class SndPlayer;

struct Step {
    std::string_view name;                       // of static text: "transpose block"
    Place place;
    std::uint32_t gesture = 0;
    std::uint64_t before = 0, after = 0;         // numbers of the states between which it leads
    std::vector<std::unique_ptr<Change>> changes;
    std::size_t bytes = 0;

    bool ReplacesSong() const;
};

class Journal {
public:
    static constexpr std::size_t kDefaultBudget = std::size_t{256} << 20;   // bytes
    static constexpr std::uint64_t kNever = 0;   // the number of no state

    explicit Journal(SndPlayer& player) : player_(player) {}
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void SetBudget(std::size_t bytes);
    std::size_t Bytes() const { return bytes_; }

    // Begin and End nest: only the outermost pair makes a step, of its name. One without changes leaves no step.
    void Begin(std::string_view name, const Place& place);
    void End();
    bool IsOpen() const { return depth_ > 0; }
    // Into the open step. The change has been made already.
    void Add(std::unique_ptr<Change> change);
    // The cells of the open step that were added last, to add to; a new one if something else was added since.
    CellsChange& Cells();

    // While not 0, steps of one name join; each gesture has a number of its own.
    void SetGesture(std::uint32_t gesture) { gesture_ = gesture; }
    std::uint32_t Gesture() const { return gesture_; }

    // The step that was taken back or done again, or null if there is none. Valid until the next call.
    const Step* Undo();
    const Step* Redo();
    const Step* NextUndo() const { return undo_.empty() ? nullptr : &undo_.back(); }
    const Step* NextRedo() const { return redo_.empty() ? nullptr : &redo_.back(); }
    std::size_t UndoCount() const { return undo_.size(); }
    std::size_t RedoCount() const { return redo_.size(); }
    void Clear();

    // Whether the song differs from what was last saved. A step back to that state makes it unchanged again.
    bool IsChanged() const { return current_ != saved_; }
    void MarkSaved() { saved_ = current_; }
    void MarkChanged() { saved_ = kNever; }
    std::uint64_t State() const { return current_; }             // a number of its own for every state of the song
    std::uint64_t& SavedMark() { return saved_; }                // for the change that exchanges songs

    // What steps, undo and redo have changed since the last call.
    Touched TakeTouched() { return std::exchange(touched_, {}); }
    const Touched& Pending() const { return touched_; }
    bool TakePartsTaken() { return std::exchange(partsTaken_, false); }

private:
    void Note(const Change& change);
    void Join(Step& into, Step&& step);
    void DropRedo();
    void KeepBudget();
    void Swap(Step& step, Change::Way way);

    SndPlayer& player_;
    std::deque<Step> undo_, redo_;               // the next one last
    Step open_;
    int depth_ = 0;
    CellsChange* cells_ = nullptr;         // of the open step, if added last
    std::uint32_t gesture_ = 0;
    bool joinable_ = false;                      // no undo or redo since the last step
    std::size_t bytes_ = 0, budget_ = kDefaultBudget;
    std::uint64_t current_ = 1, saved_ = 1, lastState_ = 1;
    Touched touched_;
    bool partsTaken_ = false;
};

}  // namespace vonta
