#include "song/Pattern.h"

#include <algorithm>

#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr Cell kEmptyCell{};

Cell LoadCell(const Cell& cell) {
    return {Load(cell.note), Load(cell.instrument), Load(cell.volume), Load(cell.effect), Load(cell.param)};
}

void StoreCell(Cell& cell, const Cell& value) {
    Store(cell.note, value.note);
    Store(cell.instrument, value.instrument);
    Store(cell.volume, value.volume);
    Store(cell.effect, value.effect);
    Store(cell.param, value.param);
}

void EmptyCells(Track& track, std::int32_t first, std::int32_t end) {
    for (auto row = first; row < end; ++row) StoreCell(track.cells[static_cast<std::size_t>(row)], kEmptyCell);
}

}  // namespace

void Track::SetRows(std::int32_t newRows) {
    if (newRows <= 0) return;
    newRows = std::min(newRows, kMaxRows);
    // Rows past the end are always empty, so a longer track finds them so. The dropped ones are emptied before they
    // go: a player that still counts on them meets silence, not remains.
    EmptyCells(*this, newRows, rows);
    Store(rows, newRows);
}

void Track::Clear() { EmptyCells(*this, 0, rows); }

std::int32_t Pattern::Rows() const { return Load(rows); }

void Pattern::SetNumRows(std::int32_t newRows) {
    if (newRows <= 0) return;
    for (Track& track : tracks) track.SetRows(newRows);
    Store(rows, std::min(newRows, kMaxRows));
}

Cell Pattern::Read(std::int32_t row, int track) const {
    if (row < 0 || row >= Rows() || track < 0 || track >= kTracks) return kEmptyCell;
    return LoadCell(tracks[static_cast<std::size_t>(track)].cells[static_cast<std::size_t>(row)]);
}

void Pattern::Write(std::int32_t row, int track, const Cell& cell) {
    if (row < 0 || row >= Rows() || track < 0 || track >= kTracks) return;
    StoreCell(tracks[static_cast<std::size_t>(track)].cells[static_cast<std::size_t>(row)], cell);
}

void Pattern::Clear() {
    for (Track& track : tracks) track.Clear();
}

void Pattern::CopyTo(Pattern& target) const {
    const std::int32_t shared = std::min(Rows(), target.Rows());
    for (int track = 0; track < kTracks; ++track)
        for (std::int32_t row = 0; row < shared; ++row) target.Write(row, track, Read(row, track));
}

}  // namespace vonta
