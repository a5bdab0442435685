// What the program says to people: errors in one form, and text of files made harmless.
#pragma once

#include <string>
#include <string_view>

namespace vonta {

enum class Layout { Replace, Keep };                 // of tabs and line feeds

// Text from a file or an argument as a terminal may have it: control characters become '?', bytes that are not UTF-8
// and characters that change the direction of writing become U+FFFD.
std::string Printable(std::string_view text, Layout layout = Layout::Replace);

extern const char* const kProgramTitle;              // with the version: of the window, and of --version
extern const char* const kCircleText;                // of a mixdown that would never have ended

// "vonta: SUBJECT: REASON" on the error output.
void Complain(std::string_view subject, std::string_view reason);
void Complain(std::string_view reason);

// "1:47" or "1:02:03"; with tenths "1:47.6".
std::string ClockText(double seconds);
std::string ClockTextTenths(double seconds);

}  // namespace vonta
