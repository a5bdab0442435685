#include "platform/LibJack.h"

#include <optional>

#include "platform/Library.h"

namespace vonta {
namespace {

std::optional<LibJack> Open() {
    const Library library("libjack.so.0");
    LibJack jack{};
    const bool whole = library.Bind(jack.clientOpen, "jack_client_open") &&
                       library.Bind(jack.clientClose, "jack_client_close") &&
                       library.Bind(jack.activate, "jack_activate") &&
                       library.Bind(jack.deactivate, "jack_deactivate") &&
                       library.Bind(jack.connect, "jack_connect") &&
                       library.Bind(jack.free, "jack_free") &&
                       library.Bind(jack.getBufferSize, "jack_get_buffer_size") &&
                       library.Bind(jack.getPorts, "jack_get_ports") &&
                       library.Bind(jack.getSampleRate, "jack_get_sample_rate") &&
                       library.Bind(jack.onShutdown, "jack_on_shutdown") &&
                       library.Bind(jack.portGetBuffer, "jack_port_get_buffer") &&
                       library.Bind(jack.portName, "jack_port_name") &&
                       library.Bind(jack.portRegister, "jack_port_register") &&
                       library.Bind(jack.setBufferSizeCallback, "jack_set_buffer_size_callback") &&
                       library.Bind(jack.setProcessCallback, "jack_set_process_callback") &&
                       library.Bind(jack.setSampleRateCallback, "jack_set_sample_rate_callback") &&
                       library.Bind(jack.setThreadInitCallback, "jack_set_thread_init_callback") &&
                       library.Bind(jack.setXrunCallback, "jack_set_xrun_callback") &&
                       library.Bind(jack.setErrorFunction, "jack_set_error_function") &&
                       library.Bind(jack.setInfoFunction, "jack_set_info_function");
    if (!whole) return std::nullopt;
    jack.setErrorFunction([](const char*) {});
    jack.setInfoFunction([](const char*) {});
    return jack;
}

}  // namespace

const LibJack* LibJack::Get() {
    static const std::optional<LibJack> library = Open();
    return library ? &*library : nullptr;
}

}  // namespace vonta
