#include "packager/compile.h"

#include <string>

#include "forms/codepage.h"
#include "forms/controls.h"
#include "forms/failure.h"
#include "forms/program.h"
#include "packager/runtime_copy.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmCompile";

// The game folder: the parent folder and the game's name, with a separator
// behind. Dir1 holds a folder of this file system, so the parts are joined
// with its own separator, and the closing box shows the folder as the user
// finds it.
std::string GameFolder(const std::string& parent, const std::string& name) {
  std::string folder = parent;
  if (folder.empty() || folder.back() != '/') folder += '/';
  return folder + name + '/';
}

// A name that holds a separator, or walks up, names no folder of its own in
// the parent: every file step of it fails, and nothing lands beside the
// parent or above it.
bool NamesAFolder(const std::string& name) {
  return name.find_first_of("/\\") == std::string::npos && name != "." && name != "..";
}

// Where a file of the game goes; fails when the name makes no folder.
std::string InGame(const std::string& folder, const std::string& name, const std::string& file) {
  if (!NamesAFolder(name)) throw Failure("Path not found");
  return folder + file;
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
    Skip([&] { WriteINI(p, InGame(folder, name, "game.dat"), section, key, value); });
  };
  write("Image", "Background", FileDialog(s, kForm, "pic1").FileTitle());
  write("Image", "MenuButton", FileDialog(s, kForm, "Pic2").FileTitle());
  write("loaddat", "QuestFile", name + ".fbw");
  write("Game Data", "Title", name);
}

void CopyPicture(Program& p, const char* dialog, const std::string& folder, const std::string& name) {
  FileDialog picker(p.surface(), kForm, dialog);
  if (picker.FileTitle().empty()) return;
  Skip([&] { p.FileCopy(picker.FileName(), InGame(folder, name, picker.FileTitle())); });
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
  const std::string folder = GameFolder(parent, name);
  Skip([&] {
    if (!NamesAFolder(name)) throw Failure("Path not found");
    p.MkDir(folder.substr(0, folder.size() - 1));
  });
  // The copy keeps no extension: on this system a program is known by its
  // run bit, which the copy keeps.
  Skip([&] { CopyHostFile(p, RunningExecutable(p), InGame(folder, name, name)); });
  for (const std::string& own : p.App().ownFiles) {
    std::string file = own.substr(own.find_last_of('/') + 1);
    Skip([&] { CopyHostFile(p, own, InGame(folder, name, Cp1252FromUtf8(file))); });
  }
  Skip([&] { p.FileCopy(FileDialog(s, "createquest", "questfile").FileName(), InGame(folder, name, name + ".fbw")); });
  CopyPicture(p, "pic1", folder, name);
  CopyPicture(p, "Pic2", folder, name);
  WriteGameDat(p, folder, name);
  if (CheckBox(s, kForm, "Check1").Value() == 1 && NamesAFolder(name))
    CopyRuntime(p, folder, folder + name);
  else if (NamesAFolder(name))
    CopyLicenses(p, folder, {});  // the copy of the program carries its licence all the same
  Skip([&] { DirListBox(s, kForm, "Dir1").Refresh(); });
  p.MsgBox("You game should be compiled within the directoy:" + folder, 0);
  if (p.MsgBox("Run compiled program now?", 4, "Question:") != 6) return;
  Skip([&] { p.ChDir(folder); });
  Skip([&] { p.Shell("\"" + folder + name + "\"", 2); });
}

}  // namespace fw
