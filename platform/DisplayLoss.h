// The display that goes while the program runs: its server dies, another client destroys the window or cuts us off.
#pragma once

namespace vonta {

// `tell` is called when the display is lost, on whichever thread meets it, perhaps more than once and in the middle of
// a call to the window; it only takes note. Where the system's library cannot go on, that thread stays in the call for
// good. Null: nobody wants to know.
void TellOfDisplayLoss(void (*tell)());

}  // namespace vonta
