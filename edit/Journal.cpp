#include "edit/Journal.h"

#include <algorithm>

#include "edit/Changes.h"

namespace vonta {
namespace {

std::size_t BytesOf(const Step& step) {
    std::size_t bytes = sizeof step;
    for (const auto& change : step.changes) bytes += change->Bytes();
    return bytes;
}

}  // namespace

bool Step::ReplacesSong() const {
    Touched touched;
    for (const auto& change : changes) change->Mark(touched);
    return touched.song;
}

void Journal::SetBudget(std::size_t bytes) {
    budget_ = bytes;
    KeepBudget();
}

void Journal::Begin(std::string_view name, const Place& place) {
    if (depth_++ > 0) return;
    open_ = {};
    open_.name = name;
    open_.place = place;
    open_.gesture = gesture_;
    cells_ = nullptr;
}

void Journal::End() {
    if (depth_ == 0 || --depth_ > 0) return;
    cells_ = nullptr;
    if (open_.changes.empty()) return;
    for (const auto& change : open_.changes) Note(*change);
    DropRedo();
    open_.before = current_;
    open_.after = current_ = ++lastState_;
    open_.bytes = BytesOf(open_);
    const bool joins = joinable_ && gesture_ != 0 && !undo_.empty() && undo_.back().gesture == gesture_ &&
                       undo_.back().name == open_.name;
    if (joins) {
        Join(undo_.back(), std::move(open_));
    } else {
        bytes_ += open_.bytes;
        undo_.push_back(std::move(open_));
    }
    open_ = {};
    joinable_ = true;
    KeepBudget();
}

void Journal::Join(Step& into, Step&& step) {
    for (auto& change : step.changes) {
        const auto covers = [&](const auto& former) { return former->Covers(*change); };
        if (std::ranges::any_of(into.changes, covers) || into.changes.back()->Append(*change)) continue;
        into.changes.push_back(std::move(change));
    }
    into.after = step.after;
    bytes_ -= into.bytes;
    into.bytes = BytesOf(into);
    bytes_ += into.bytes;
}

void Journal::Add(std::unique_ptr<Change> change) {
    cells_ = nullptr;
    open_.changes.push_back(std::move(change));
}

CellsChange& Journal::Cells() {
    if (!cells_) {
        auto cells = std::make_unique<CellsChange>();
        CellsChange* made = cells.get();
        Add(std::move(cells));
        cells_ = made;
    }
    return *cells_;
}

void Journal::Note(const Change& change) {
    change.Mark(touched_);
    partsTaken_ |= change.TakesParts();
}

void Journal::Swap(Step& step, Change::Way way) {
    if (way == Change::Way::Back)
        for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change) (*change)->Swap(player_, way);
    else
        for (const auto& change : step.changes) change->Swap(player_, way);
    for (const auto& change : step.changes) Note(*change);
    bytes_ -= step.bytes;
    step.bytes = BytesOf(step);
    bytes_ += step.bytes;
    joinable_ = false;
    KeepBudget();
}

const Step* Journal::Undo() {
    if (IsOpen() || undo_.empty()) return nullptr;
    redo_.push_back(std::move(undo_.back()));
    undo_.pop_back();
    Swap(redo_.back(), Change::Way::Back);
    current_ = redo_.back().before;
    return &redo_.back();
}

const Step* Journal::Redo() {
    if (IsOpen() || redo_.empty()) return nullptr;
    undo_.push_back(std::move(redo_.back()));
    redo_.pop_back();
    Swap(undo_.back(), Change::Way::Forth);
    current_ = undo_.back().after;
    return &undo_.back();
}

void Journal::Clear() {
    undo_.clear();
    redo_.clear();
    bytes_ = 0;
    joinable_ = false;
}

void Journal::DropRedo() {
    for (const Step& step : redo_) bytes_ -= step.bytes;
    redo_.clear();
}

// What was undone goes first, farthest from the present; then the oldest steps. The next of each stays.
void Journal::KeepBudget() {
    const auto drop = [&](std::deque<Step>& steps) {
        bytes_ -= steps.front().bytes;
        steps.pop_front();
    };
    while (bytes_ > budget_ && redo_.size() > 1) drop(redo_);
    while (bytes_ > budget_ && undo_.size() > 1) drop(undo_);
}

}  // namespace vonta
