// The functions of the JACK library that the program uses. The library is looked up at run time: without it, and
// without a server, the program starts all the same.
#pragma once

#include <jack/jack.h>

namespace vonta {

struct LibJack {
    decltype(&jack_client_open) clientOpen;
    decltype(&jack_client_close) clientClose;
    decltype(&jack_activate) activate;
    decltype(&jack_deactivate) deactivate;
    decltype(&jack_connect) connect;
    decltype(&jack_free) free;
    decltype(&jack_get_buffer_size) getBufferSize;
    decltype(&jack_get_ports) getPorts;
    decltype(&jack_get_sample_rate) getSampleRate;
    decltype(&jack_on_shutdown) onShutdown;
    decltype(&jack_port_get_buffer) portGetBuffer;
    decltype(&jack_port_name) portName;
    decltype(&jack_port_register) portRegister;
    decltype(&jack_set_buffer_size_callback) setBufferSizeCallback;
    decltype(&jack_set_process_callback) setProcessCallback;
    decltype(&jack_set_sample_rate_callback) setSampleRateCallback;
    decltype(&jack_set_thread_init_callback) setThreadInitCallback;
    decltype(&jack_set_xrun_callback) setXrunCallback;
    decltype(&jack_set_error_function) setErrorFunction;
    decltype(&jack_set_info_function) setInfoFunction;

    // Null if the library is missing or too old. It is told to keep what it has to say off the user's terminal.
    static const LibJack* Get();
};

}  // namespace vonta
