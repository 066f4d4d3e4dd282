#pragma once
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "forms/controls.h"
#include "store/profile_index.h"
#include "store/store_disk.h"

namespace fw {

class Program;

// The working file: the bare name every read and write of the editor passes,
// which the store places in the per-user folder.
inline constexpr const char* kWorkingFile = "tmpquest.ini";
// Held while an editor of this machine runs, beside the working file.
inline constexpr const char* kEditorLock = "tmpquest.lock";

// The editor's state, in the controls of createquest: handles only, so the
// surface stays the one store of every value.
struct EditorState {
  explicit EditorState(Program& p);

  ListBox pg;          // the page list: one entry per page, its text the section name
  Label filepath;      // the quest last loaded or saved in this run; "" for none
  FileDialog questfile;
  TextBox Text13;      // the number Add Page takes instead of the next one
  CheckBox Check9;     // Battle Page
  CommandButton Command7;

  // The selected entry's text, "" when nothing is selected: the section of
  // every page key.
  std::string SelectedPage() const { return pg.List(pg.ListIndex()); }
};

// What the editor keeps for the whole run beside its controls.
struct EditorModule {
  // The lock of the working file, held from the editor's first opening.
  std::unique_ptr<StoreDisk::Lock> lock;
  // Another editor of this machine held the lock when this one opened: this
  // one touches no working file.
  bool lockedOut = false;
  // The editor opened on work an earlier run left, at the author's word.
  bool recovered = false;
  // The working file's text while pg_Click reads a page: a write-back of the
  // value just read to the key it came from leaves the file as it is.
  std::shared_ptr<const ProfileIndex> pageRead;
};

// The working file's path for plain file operations: the per-user folder,
// a backslash and the name.
std::string DeriveWorkingPath(Program& p);

// The most entries the page list takes: a list box counts them in 16 bits,
// and Load rebuilds the list to no more than this.
inline constexpr int kMostPages = 32767;

// Rebuilds the page list to the working file's Number Of Pages, as Load
// does; throws Failure when the count is absent or no number.
void RebuildPageList(Program& p);

}  // namespace fw
