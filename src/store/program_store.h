#pragma once
#include <span>
#include <string>
#include <string_view>

#include "store/profile.h"

namespace fw {

class Program;

// The profile files as a program's handlers name them: a bare file name lies
// in the per-user folder, and a relative path with a folder part is taken
// from the program's current folder.
std::string ReadINI(Program& p, std::string_view path, std::string_view section, std::string_view key);
void WriteINI(Program& p, std::string_view path, std::string_view section, std::string_view key,
              std::string_view value);
// The whole profile file as one image, null when it cannot be read.
std::shared_ptr<const ProfileImage> ReadINIImage(Program& p, std::string_view path);
// Several keys as one change; false when the file could not be written.
bool WriteINIKeys(Program& p, std::string_view path, std::span<const QuestStore::Entry> entries);

}  // namespace fw
