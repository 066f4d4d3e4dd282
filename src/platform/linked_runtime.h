#pragma once
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "forms/services.h"

namespace fw {

// The output of a program run to its end (its standard output), nullopt when
// it could not be started. argv[0] is looked for on the PATH.
std::optional<std::string> RunAndRead(const std::vector<std::string>& argv);

// One library as the dynamic loader resolves it: its name and its file.
struct ResolvedLibrary {
  std::string soname, path;
};

// The run path an ELF file holds (its DT_RUNPATH, else its DT_RPATH), ""
// when it has none; nullopt when it is no 64-bit ELF file that can be read.
std::optional<std::string> ElfRunPath(const std::string& path);

// The libraries ldd's output names with their files, in its order; those it
// cannot find are left out.
std::vector<ResolvedLibrary> ParseLdd(const std::string& output);

// The owners dpkg -S names, by path: "pkg[:arch][, other]: /path" lines, the
// first package of each; its other lines (diversions, errors) are passed over.
std::map<std::string, std::string> ParseDpkgSearch(const std::string& output);

// The places Debian's package database may know a file by: the path, its
// real path, and each of them across the merged /usr (/lib and /usr/lib are
// one folder here, but a package lists only the one it installed into).
std::vector<std::string> PackagePaths(const std::string& path);

// Whether the library is part of the C library, which every Linux machine
// has and a copy must never replace (it belongs with the system's loader).
bool IsCLibrary(const std::string& soname);

// The runtime of this program on Linux, worked out from the executable (and
// the program's own files beside it) with the dynamic loader, plus what Qt
// loads at run time, which no loader can see: the platform, image format,
// icon and multimedia plugins, and the General MIDI soundfont. A game folder
// holds them as
//   lib/        every shared library but the C library's own
//   plugins/    Qt's plugins, by kind (platforms/, imageformats/, ...)
//   qt.conf     sends Qt to plugins/
//   soundfont.sf2
// and the executable's copy finds lib/ through its run path, $ORIGIN/lib,
// set with patchelf. Nothing depends on the folder the game is started from.
class LinkedRuntime : public Runtime {
 public:
  LinkedRuntime(std::string exe, std::vector<std::string> ownFiles)
      : exe_(std::move(exe)), ownFiles_(std::move(ownFiles)) {}
  std::vector<RuntimeFile> Files() override;
  // From Debian's package database (dpkg -S for the owners of all the files
  // at once, then dpkg-query for their sources), once a run.
  std::vector<RuntimeOrigin> Origins() override;
  void Adopt(const std::string& folder, const std::string& exeCopy) override;

 private:
  std::string exe_;
  std::vector<std::string> ownFiles_;
  std::optional<std::vector<RuntimeFile>> files_;  // worked out once a run
  std::optional<std::vector<RuntimeOrigin>> origins_;
};

}  // namespace fw
