#pragma once
#include <string>
#include <string_view>

namespace fw {

// Text inside the program is Windows-1252, one byte per character. These two
// convert at the boundaries (files named on the command line, script files,
// the terminal, the window toolkit), which all speak UTF-8.

// Windows-1252 bytes to UTF-8. The five unassigned bytes map to the C1 code
// points of the same value, so every byte survives a round trip.
std::string Utf8FromCp1252(std::string_view text);

// UTF-8 to Windows-1252. A character outside the code page, or a malformed
// UTF-8 sequence, becomes "?".
std::string Cp1252FromUtf8(std::string_view text);

}  // namespace fw
