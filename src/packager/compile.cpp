#include "packager/compile.h"

#include <string>

#include "forms/codepage.h"
#include "forms/controls.h"
#include "forms/failure.h"
#include "forms/program.h"
#include "packager/game_parts.h"
#include "packager/runtime_copy.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmCompile";

constexpr const char* kNameWithSeparator =
    "The game name can't hold / or \\, because it is also the name of the game's folder. Please type another name.";
constexpr const char* kNameOfDots =
    "The game name can't be . or .., because it is also the name of the game's folder. Please type another name.";
constexpr const char* kNameOutsideText =
    "The game name can't hold ? nor letters that Western European text has no place for (such as Japanese ones, "
    "which come in as ?), because two such names would make the same folder. Please type another name.";
constexpr const char* kNameWithBlankEnds =
    "The game name can't begin or end with a blank, nor hold a tab or a line break, because game.dat could not "
    "name the game's quest file. Please type another name.";

// Why a name can't be a game's, "" when it can. The name is the folder's and
// every file's in it, and game.dat names the quest by it. A character that
// the program's text has no place for arrives as "?", so "?" stands for all
// of them.
std::string RefusalOf(const std::string& name) {
  if (name.find_first_of("/\\") != std::string::npos) return kNameWithSeparator;
  if (name == "." || name == "..") return kNameOfDots;
  if (name.find('?') != std::string::npos) return kNameOutsideText;
  for (char c : name)
    if (static_cast<unsigned char>(c) < 0x20) return kNameWithBlankEnds;
  if (name.front() == ' ' || name.back() == ' ') return kNameWithBlankEnds;
  return "";
}

// The game folder: the parent folder and the game's name, with a separator
// behind. Dir1 holds a folder of this file system, so the parts are joined
// with its own separator, and the closing box shows the folder as the user
// finds it.
std::string GameFolder(const std::string& parent, const std::string& name) {
  std::string folder = parent;
  if (folder.empty() || folder.back() != '/') folder += '/';
  return folder + name + '/';
}

// A host file copied into the game folder.
void CopyHostFile(Program& p, const std::string& from, const std::string& to) {
  p.services().files->Copy(from, p.HostFile(to));
}

// The running executable: the file itself where the kernel names it, else
// where App.Path and App.EXEName say.
std::string RunningExecutable(Program& p) {
  if (!p.App().exe.empty()) return p.App().exe;
  return p.HostFile(p.AppPath() + "\\" + p.AppEXEName());
}

// The descriptor, all four keys in the order a new file lists them, each
// write a step of its own.
void WriteGameDat(Program& p, const std::string& folder, const std::string& name) {
  FormSurface& s = p.surface();
  auto write = [&](const char* section, const char* key, const std::string& value) {
    Skip([&] { WriteINI(p, folder + "game.dat", section, key, value); });
  };
  write("Image", "Background", FileDialog(s, kForm, "pic1").FileTitle());
  write("Image", "MenuButton", FileDialog(s, kForm, "Pic2").FileTitle());
  write("loaddat", "QuestFile", name + ".fbw");
  write("Game Data", "Title", name);
}

void CopyPicture(Program& p, const char* dialog, const std::string& folder) {
  FileDialog picker(p.surface(), kForm, dialog);
  if (picker.FileTitle().empty()) return;
  Skip([&] { p.FileCopy(picker.FileName(), folder + picker.FileTitle()); });
}

// The steps that make the game, each skipped on error; what a game cannot
// run without is kept in `parts` with what its step met.
void MakeGame(Program& p, const std::string& folder, const std::string& name, GameParts& parts) {
  FormSurface& s = p.surface();
  parts.MakeFolder([&] { p.MkDir(folder.substr(0, folder.size() - 1)); });
  // The copy keeps no extension: on this system a program is known by its
  // run bit, which the copy keeps.
  parts.Make(name, [&] { CopyHostFile(p, RunningExecutable(p), folder + name); });
  for (const std::string& own : p.App().ownFiles) {
    std::string file = Cp1252FromUtf8(own.substr(own.find_last_of('/') + 1));
    parts.Make(file, [&] { CopyHostFile(p, own, folder + file); });
  }
  parts.Make(name + ".fbw",
             [&] { p.FileCopy(FileDialog(s, "createquest", "questfile").FileName(), folder + name + ".fbw"); });
  CopyPicture(p, "pic1", folder);
  CopyPicture(p, "Pic2", folder);
  WriteGameDat(p, folder, name);
  if (!parts.FolderMade()) return;
  if (CheckBox(s, kForm, "Check1").Value() == 1)
    CopyRuntime(p, folder, folder + name);
  else
    CopyLicenses(p, folder, {});  // the copy of the program carries its licence all the same
}

}  // namespace

void CompileGame(Program& p) {
  FormSurface& s = p.surface();
  const std::string name = TextBox(s, kForm, "Text1").Text();
  const std::string parent = DirListBox(s, kForm, "Dir1").Path();
  if (name.empty()) {
    p.MsgBox("You must enter a game name!", 0);
    return;
  }
  if (parent.empty()) {
    p.MsgBox("You must select a directory path!", 0);
    return;
  }
  if (std::string refusal = RefusalOf(name); !refusal.empty()) {
    p.MsgBox(refusal, 0);
    return;
  }
  const std::string folder = GameFolder(parent, name);
  GameParts parts(p, folder);
  MakeGame(p, folder, name, parts);
  Skip([&] { DirListBox(s, kForm, "Dir1").Refresh(); });
  // The closing boxes say the game is made: only once it is.
  if (std::string failed = parts.Failures(name + ".fbw"); !failed.empty()) {
    p.MsgBox("The game could not be made in " + folder + ": " + failed, 16);
    return;
  }
  p.MsgBox("You game should be compiled within the directoy:" + folder, 0);
  if (p.MsgBox("Run compiled program now?", 4, "Question:") != 6) return;
  Skip([&] { p.ChDir(folder); });
  Skip([&] { p.Shell({folder + name}, 2); });
}

}  // namespace fw
