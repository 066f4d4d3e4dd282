#pragma once
#include <string>
#include <string_view>

namespace fw {

// Paths inside the program are Windows-1252 text joined with backslashes, as
// quests written on Windows hold them. These helpers turn them into paths of
// this file system.

// A stored path as the file system wants it: backslashes become "/", and the
// text becomes UTF-8.
std::string HostPath(std::string_view path);

// True when the path names a folder (a "/", a "\" or a drive letter): only a
// bare file name lacks one.
bool HasDirectoryPart(std::string_view path);

// The one per-user folder that stands for the Windows directory:
// $XDG_DATA_HOME/fablewright, else ~/.local/share/fablewright, in UTF-8.
// Created when missing.
std::string DefaultUserDir();

// The user's home folder ($HOME), "" when it is not known.
std::string HomeDir();

}  // namespace fw
