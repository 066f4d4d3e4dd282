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
// While a tool plays a file that nothing else changes, its reads may come
// from one image of it in memory instead of the disk at every read; a write
// through these functions still goes to the disk, and the image follows it.
// False when the file cannot be read.
bool ServeFromImage(Program& p, std::string_view path);
void StopServingFromImage(Program& p);
// Several keys as one change; false when the file could not be written.
bool WriteINIKeys(Program& p, std::string_view path, std::span<const QuestStore::Entry> entries);

}  // namespace fw
