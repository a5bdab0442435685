// Catches hardware faults (bad memory access, bus error, illegal instruction, integer division by zero, stack
// overflow) and aborts of a piece of work and hands control back to its caller, so that the song can be saved.
#pragma once

namespace vonta {

// Runs `work(argument)` under the guard. True if it ended by itself, false if a fault cut it short; nothing that
// `work` held is released then. Guards nest per thread. Allocates nothing, and costs no system call but at a thread's
// first use. A fault outside any guard goes on to the handler that was there before.
bool RunGuarded(void (*work)(void*), void* argument);

// Installs the process-wide handlers and, on the calling thread, a stack to handle a stack overflow on. Called by
// RunGuarded itself on a thread's first use.
void InstallFaultHandlers();

// What a fault outside any guard does before it goes on, on the thread that has it: a library's own thread may have
// failed. It may do what a signal handler may, and need not return. Null: nothing.
void SetLastResort(void (*hook)());

}  // namespace vonta
