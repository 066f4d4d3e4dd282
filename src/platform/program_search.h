#pragma once
#include <string>
#include <string_view>

namespace fw {

// The program a command's first word names: a word with a "/" is that file;
// a bare name is looked for in the absolute folders of the PATH only. An
// empty or relative entry (which would mean the current folder) is passed
// over, so a folder the user happens to stand in, such as a downloaded
// game's, can never supply a program of that name. "" when nothing runnable
// is found.
std::string FindProgram(std::string_view word);

}  // namespace fw
