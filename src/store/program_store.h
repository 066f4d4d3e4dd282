#pragma once
#include <functional>
#include <memory>
#include <optional>
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
// The file's text indexed by section, kept while the file is unchanged; null
// when it cannot be read.
std::shared_ptr<const ProfileIndex> ReadINIIndex(Program& p, std::string_view path);
// While a tool plays a file that nothing else changes, its reads may come
// from one image of it in memory instead of the disk at every read; a write
// through these functions still goes to the disk, and the image follows it.
// False when the file cannot be read.
bool ServeFromImage(Program& p, std::string_view path);
void StopServingFromImage(Program& p);
// Several keys as one change; false when the file could not be written.
bool WriteINIKeys(Program& p, std::string_view path, std::span<const QuestStore::Entry> entries);

// The whole text of a profile file; nullopt when it cannot be read.
std::optional<std::string> ReadINIText(Program& p, std::string_view path);
// Puts a whole text back into a profile file (one read by ReadINIText), as
// safely as WriteINI writes; false when it could not be written.
bool WriteINIText(Program& p, std::string_view path, std::string_view text);
// Told of a profile file just before a write through these functions may
// change it, with the path as the caller named it; one watcher a program,
// none to stop.
using WriteWatch = std::function<void(Program& p, std::string_view path)>;
void WatchINIWrites(Program& p, WriteWatch watch);
// The host path of the file the store reads for a profile path (UTF-8).
std::string INIHostPath(Program& p, std::string_view path);
// Whether two paths name the same profile file as the store sees them.
bool SameINIFile(Program& p, std::string_view a, std::string_view b);
// Takes a section out of a profile file, as safely as WriteINI writes.
bool DeleteINISection(Program& p, std::string_view path, std::string_view section);
// Replaces `to` with a whole copy of `from`, or leaves it as it was.
bool CopyProfileFile(Program& p, std::string_view from, std::string_view to);

// Where the copies of replaced quests are kept, in the per-user folder, and
// how many of each quest.
inline constexpr const char* kBackupsFolder = "backups";
inline constexpr std::size_t kBackupsKept = 10;
// Keeps the file as it is now among the backups, named by its name and stamp.
bool KeepBackup(Program& p, std::string_view path, std::string_view stamp);
// The host path of the backups folder.
std::string BackupsFolder(Program& p);

// Replaces a file of the per-user folder (a picture the program made) with
// the bytes, whole or not at all; false when it could not be written.
bool WriteUserFile(Program& p, std::string_view name, std::string_view bytes);
// The same for a file anywhere, named by its host path.
bool WriteWholeFile(const std::string& hostPath, std::string_view bytes);

// An exclusive lock on a file of the per-user folder, for as long as `lock`
// lives: 0, EWOULDBLOCK while another program holds it, or another errno value.
int TryLockUserFile(Program& p, std::string_view name, std::unique_ptr<StoreDisk::Lock>& lock);

}  // namespace fw
