#pragma once
#include <string>
#include <string_view>

#include "forms/services.h"

namespace fw {

class Program;

// Where a file dialog opens. The logic sets InitDir to App.Path, and scripts
// read it so; but the program's own folder is no place for a player's files
// once the program is installed. So a dialog that InitDir sends to App.Path
// opens there only while the user may write there (a packaged game's folder,
// a build tree); otherwise saved games and characters go to the per-user
// saves folder, and quest files (and the media beside them) to the folder the
// last quest came from, else the home folder. Another InitDir is taken as it
// stands; none leaves the dialog where the desktop puts it ("").
// Gives a host path (UTF-8).
std::string DialogFolder(Program& p, const FileDialogRequest& request);

// The per-user folder of saved games and character files, made on first use:
// "saves" in the per-user folder ($XDG_DATA_HOME/fablewright, or --home).
// Gives a host path.
std::string SavesFolder(Program& p);

// Whether the folder (a host path) is the user's to write files into: they
// may write there, and it is none of the system's folders for installed
// programs (/usr, /bin, /sbin, /opt, /snap), where even a user allowed to
// write (root) should not put a game's files.
bool UsersToWrite(Program& p, const std::string& folder);

// Takes note of a quest file the user picked in a dialog (a program path),
// so that the next quest dialog opens beside it.
void RememberQuestFolder(Program& p, std::string_view path);

}  // namespace fw
