#include "platform/RtMidiClient.h"

#include <algorithm>

#include "platform/Library.h"
#include "platform/ShortMessage.h"

namespace vonta {
namespace {

constexpr unsigned kQueueSize = 100;               // of RtMidi's own input queue, which a callback leaves idle

struct RtMidi {
    decltype(&rtmidi_in_create) createIn;
    decltype(&rtmidi_in_free) freeIn;
    decltype(&rtmidi_in_set_callback) setCallback;
    decltype(&rtmidi_out_create) createOut;
    decltype(&rtmidi_out_free) freeOut;
    decltype(&rtmidi_out_send_message) sendMessage;
    decltype(&rtmidi_open_port) openPort;
    decltype(&rtmidi_close_port) closePort;
    decltype(&rtmidi_get_port_count) getPortCount;
    decltype(&rtmidi_get_port_name) getPortName;
    bool usable;

    RtMidi() {
        const Library library("librtmidi.so.6");
        usable = library.Bind(createIn, "rtmidi_in_create") && library.Bind(freeIn, "rtmidi_in_free") &&
                 library.Bind(setCallback, "rtmidi_in_set_callback") &&
                 library.Bind(createOut, "rtmidi_out_create") && library.Bind(freeOut, "rtmidi_out_free") &&
                 library.Bind(sendMessage, "rtmidi_out_send_message") &&
                 library.Bind(openPort, "rtmidi_open_port") && library.Bind(closePort, "rtmidi_close_port") &&
                 library.Bind(getPortCount, "rtmidi_get_port_count") &&
                 library.Bind(getPortName, "rtmidi_get_port_name");
    }
};

const RtMidi& Calls() {
    static const RtMidi library;
    return library;
}

// Empty if the port has gone meanwhile.
std::string NameOfPort(RtMidiPtr handle, unsigned port) {
    int size = 0;                                  // with the final zero
    Calls().getPortName(handle, port, nullptr, &size);
    std::string name(static_cast<std::size_t>(std::max(size, 1)), '\0');
    size = static_cast<int>(name.size());
    Calls().getPortName(handle, port, name.data(), &size);
    name.resize(name.find('\0') == std::string::npos ? name.size() : name.find('\0'));
    return name;
}

}  // namespace

RtMidiClient::RtMidiClient(RtMidiApi api, Direction direction) : direction_(direction) {
    if (!Calls().usable) return;
    handle_ = direction == Direction::In ? Calls().createIn(api, kName, kQueueSize) : Calls().createOut(api, kName);
}

RtMidiClient::~RtMidiClient() {
    if (!handle_) return;
    // Closed first, because RtMidi frees what an input's callback uses before it stops calling it.
    if (handle_->ptr) Calls().closePort(handle_);
    (direction_ == Direction::In ? Calls().freeIn : Calls().freeOut)(handle_);
}

std::vector<std::string> RtMidiClient::PortNames() {
    std::vector<std::string> names;
    if (!handle_ || !handle_->ptr) return names;
    const unsigned count = Calls().getPortCount(handle_);
    for (unsigned port = 0; port < count; ++port) names.push_back(NameOfPort(handle_, port));
    return names;
}

bool RtMidiClient::Open(const std::string& portName, const std::string& ownName) {
    const std::vector<std::string> names = PortNames();
    const auto found = std::find(names.begin(), names.end(), portName);
    if (found == names.end()) return false;
    Calls().openPort(handle_, static_cast<unsigned>(found - names.begin()), ownName.c_str());
    return handle_->ok;
}

void RtMidiClient::SetCallback(RtMidiCCallback callback, void* userData) {
    if (handle_ && handle_->ptr) Calls().setCallback(handle_, callback, userData);
}

void RtMidiClient::Send(std::uint32_t message) {
    const ShortMessageBytes unpacked = UnpackShortMessage(message);
    if (handle_ && handle_->ptr && unpacked.size)
        Calls().sendMessage(handle_, unpacked.bytes.data(), static_cast<int>(unpacked.size));
}

}  // namespace vonta
