// One value of the song, found anew whenever it is needed: objects come and go under a step.
#pragma once

#include <functional>
#include <string>

#include "edit/Place.h"

namespace vonta {

template <class T>
struct Field {
    std::function<T*(Song& song)> find;          // null while its object is not there
    Part part;                                   // what it belongs to
};

template <class T>
Field<T> SongField(T Song::* member) {
    return {[member](Song& song) { return &(song.*member); }, {}};
}

template <class T>
Field<T> InstrumentField(int slot, T Instrument::* member) {
    return {[=](Song& song) -> T* {
                Instrument* instrument = song.GetInstrument(slot);
                return instrument ? &(instrument->*member) : nullptr;
            },
            {Part::Kind::Instrument, static_cast<std::uint8_t>(slot)}};
}

template <class T>
Field<T> SampleField(int slot, int sample, T Sample::* member) {
    return {[=](Song& song) -> T* {
                Instrument* instrument = song.GetInstrument(slot);
                Sample* object = instrument ? instrument->GetSample(sample) : nullptr;
                return object ? &(object->*member) : nullptr;
            },
            {Part::Kind::Instrument, static_cast<std::uint8_t>(slot)}};
}

// Loop points and types stand with the wave in memory, but with the instrument for whoever keeps a copy.
template <class T>
Field<T> DataField(int slot, int sample, T SampleData::* member) {
    return {[=](Song& song) -> T* {
                Instrument* instrument = song.GetInstrument(slot);
                Sample* object = instrument ? instrument->GetSample(sample) : nullptr;
                return object ? &(object->data.get()->*member) : nullptr;
            },
            {Part::Kind::Instrument, static_cast<std::uint8_t>(slot)}};
}

// A part of another field: an element of an array, a member of a struct. inner: T*(Outer&), null outside.
template <class T, class Outer, class Inner>
Field<T> Inside(Field<Outer> outer, Inner inner) {
    return {[find = std::move(outer.find), inner](Song& song) -> T* {
                Outer* found = find(song);
                return found ? inner(*found) : nullptr;
            },
            outer.part};
}

}  // namespace vonta
