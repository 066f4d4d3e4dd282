#include "platform/linked_runtime.h"

#include <elf.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <sstream>

#include "forms/failure.h"
#include "forms/regular_file.h"
#include "platform/program_search.h"
#include "platform/soundfont.h"

extern char** environ;

namespace fs = std::filesystem;

namespace fw {
namespace {

// What Qt loads by name at run time, below its plugin folder, in the order
// they are copied: the window on X11, Wayland or none, the picture formats
// quests use beyond those Qt reads itself, the icons drawn from SVG, and the
// sound and movie player. Those this machine lacks are passed over.
constexpr const char* kQtPlugins[] = {
    "platforms/libqxcb.so",
    "platforms/libqwayland-generic.so",
    "platforms/libqwayland-egl.so",
    "wayland-shell-integration/libxdg-shell.so",
    "platforms/libqoffscreen.so",
    "imageformats/libqjpeg.so",
    "imageformats/libqgif.so",
    "imageformats/libqsvg.so",
    "iconengines/libqsvgicon.so",
    "multimedia/libgstreamermediaplugin.so",
};

// What GStreamer, under Qt's sound and movie player, loads by name to play
// the media quests use (WAV, MP3, AVI with Motion JPEG) and to send them to
// the speakers: decoders, demuxers and the elements the player builds its
// pipelines of. A relocated GStreamer looks for them in lib/gstreamer-1.0/
// only, beside its own library. The libav decoders (MPEG-4 video) would
// more than double the folder and are left out. Its helper that scans
// plugins is not copied: a relocated GStreamer looks for it two folders
// above lib/, outside the game, and scans in its own process instead.
constexpr const char* kGStreamerPlugins[] = {
    "libgstcoreelements.so", "libgsttypefindfunctions.so", "libgstplayback.so",    "libgstapp.so",
    "libgstaudioconvert.so", "libgstaudioresample.so",     "libgstvolume.so",      "libgstvideoconvertscale.so",
    "libgstvideoconvert.so", "libgstvideoscale.so",        "libgstautodetect.so",  "libgstpulseaudio.so",
    "libgstalsa.so",         "libgstwavparse.so",          "libgstaudioparsers.so", "libgstid3demux.so",
    "libgstmpg123.so",       "libgstavi.so",               "libgstjpeg.so",        "libgstisomp4.so",
};

constexpr const char* kQtConf = "[Paths]\nPrefix=.\nPlugins=plugins\n";

// The file names the C library installs; a copy of one would fight the
// system's loader.
constexpr const char* kCLibraries[] = {"ld-linux", "libc.so",  "libm.so",    "libmvec.so",        "libpthread.so",
                                       "libdl.so", "librt.so", "libutil.so", "libresolv.so",      "libanl.so",
                                       "libnsl.so", "libBrokenLocale.so", "libthread_db.so", "libc_malloc_debug.so"};

// Libraries by name, first come first kept.
class LibrarySet {
 public:
  void Add(const std::vector<ResolvedLibrary>& found) {
    for (const ResolvedLibrary& lib : found)
      if (!IsCLibrary(lib.soname) && names_.insert(lib.soname).second) libraries_.push_back(lib);
  }
  const std::vector<ResolvedLibrary>& All() const { return libraries_; }
  // The folder of the library of that name, "" when it is not among them.
  std::string FolderOf(const std::string& soname) const {
    for (const ResolvedLibrary& lib : libraries_)
      if (lib.soname.starts_with(soname)) return fs::path(lib.path).parent_path();
    return {};
  }

 private:
  std::set<std::string> names_;
  std::vector<ResolvedLibrary> libraries_;
};

std::vector<ResolvedLibrary> LibrariesOf(const std::string& file) {
  std::optional<std::string> out = RunAndRead({"ldd", file});
  return out ? ParseLdd(*out) : std::vector<ResolvedLibrary>{};
}

bool IsFile(const std::string& path) {
  std::error_code ec;
  return fs::is_regular_file(path, ec);
}

// The run path a file of the folder holds, "" when none or not a library.
std::string RunPathOf(const std::string& file) { return ElfRunPath(file).value_or(""); }

// Sets the run path and checks it took: patchelf leaves the file as it was
// when it cannot.
void SetRunPath(const std::string& file, const std::string& runPath, bool forEveryLoad) {
  std::vector<std::string> argv = {"patchelf", "--set-rpath", runPath, file};
  if (forEveryLoad) argv.insert(argv.begin() + 1, "--force-rpath");
  if (!RunAndRead(argv)) throw Failure("File not found");
  if (RunPathOf(file) != runPath) throw Failure("Path/File access error");
}

// The plugins of the list that the folder holds, as files to copy below
// `to`; their own libraries join the set.
void AddPlugins(const std::string& folder, std::span<const char* const> names, const std::string& to,
                LibrarySet& libraries, std::vector<RuntimeFile>& plugins) {
  if (folder.empty()) return;
  for (const char* name : names) {
    std::string path = folder + "/" + name;
    if (!IsFile(path)) continue;
    plugins.push_back({path, to + name});
    libraries.Add(LibrariesOf(path));
  }
}

// Points each file of the folder at a run path; none when there is no folder.
void SetRunPaths(const std::string& folder, const std::string& runPath) {
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(folder, ec))
    if (entry.is_regular_file()) SetRunPath(entry.path().string(), runPath, true);
}

// Reads a value of the file at an offset; false past its end.
template <class T>
bool ReadAt(int fd, std::uint64_t offset, T& value) {
  return ::pread(fd, &value, sizeof value, static_cast<off_t>(offset)) == static_cast<ssize_t>(sizeof value);
}

// What dpkg-query says of each package: its source and the source's version.
struct PackageSource {
  std::string source, version;
};

std::map<std::string, PackageSource> SourcesOf(const std::set<std::string>& packages) {
  std::map<std::string, PackageSource> sources;
  if (packages.empty()) return sources;
  std::vector<std::string> argv = {"dpkg-query", "-W", "-f=${binary:Package}\t${source:Package}\t${source:Version}\n"};
  argv.insert(argv.end(), packages.begin(), packages.end());
  std::istringstream lines(RunAndRead(argv).value_or(""));
  for (std::string line; std::getline(lines, line);) {
    std::size_t a = line.find('\t'), b = line.find('\t', a == std::string::npos ? a : a + 1);
    if (b == std::string::npos) continue;
    PackageSource found{line.substr(a + 1, b - a - 1), line.substr(b + 1)};
    std::string name = line.substr(0, a);
    sources[name] = found;
    sources[name.substr(0, name.find(':'))] = found;  // as dpkg -S named it, with or without its architecture
  }
  return sources;
}

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// A package's copyright file, or the one of a package of the same source
// already named that says the same (Qt's libraries all carry one text).
std::string CopyrightOf(const std::string& package, const std::string& source,
                        std::map<std::string, std::vector<std::string>>& bySource) {
  std::string path = "/usr/share/doc/" + package.substr(0, package.find(':')) + "/copyright";
  if (!IsFile(path)) return "";
  std::vector<std::string>& named = bySource[source];
  std::string text = FileText(path);
  for (const std::string& other : named)
    if (FileText(other) == text) return other;
  named.push_back(path);
  return path;
}

}  // namespace

// The dynamic section's run path, read as the loader reads it: the string
// that DT_RUNPATH (else DT_RPATH) points to in the string table, found
// through the segment that loads it. Only 64-bit little-endian files, which
// is every file a game folder on this machine holds.
std::optional<std::string> ElfRunPath(const std::string& path) {
  Fd file{OpenRegularFile(path)};
  Elf64_Ehdr header;
  if (file.fd < 0 || !ReadAt(file.fd, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
      header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_ident[EI_DATA] != ELFDATA2LSB)
    return std::nullopt;
  std::vector<Elf64_Phdr> segments(header.e_phnum);
  for (std::size_t i = 0; i < segments.size(); ++i)
    if (!ReadAt(file.fd, header.e_phoff + i * sizeof(Elf64_Phdr), segments[i])) return std::nullopt;
  auto fileOffset = [&](std::uint64_t address) -> std::optional<std::uint64_t> {
    for (const Elf64_Phdr& s : segments)
      if (s.p_type == PT_LOAD && address >= s.p_vaddr && address < s.p_vaddr + s.p_filesz)
        return address - s.p_vaddr + s.p_offset;
    return std::nullopt;
  };
  std::uint64_t strtab = 0, rpath = 0, runpath = 0;
  bool hasRpath = false, hasRunpath = false;
  for (const Elf64_Phdr& s : segments) {
    if (s.p_type != PT_DYNAMIC) continue;
    for (std::uint64_t at = s.p_offset; at + sizeof(Elf64_Dyn) <= s.p_offset + s.p_filesz; at += sizeof(Elf64_Dyn)) {
      Elf64_Dyn entry;
      if (!ReadAt(file.fd, at, entry) || entry.d_tag == DT_NULL) break;
      if (entry.d_tag == DT_STRTAB) strtab = entry.d_un.d_ptr;
      if (entry.d_tag == DT_RPATH) hasRpath = true, rpath = entry.d_un.d_val;
      if (entry.d_tag == DT_RUNPATH) hasRunpath = true, runpath = entry.d_un.d_val;
    }
  }
  if (!hasRpath && !hasRunpath) return std::string();
  std::optional<std::uint64_t> table = fileOffset(strtab);
  if (!table) return std::nullopt;
  // No run path is longer than a path may be; a string that runs on is no run path.
  std::string text;
  for (std::uint64_t at = *table + (hasRunpath ? runpath : rpath);; ++at) {
    char c;
    if (text.size() > PATH_MAX || !ReadAt(file.fd, at, c)) return std::nullopt;
    if (c == '\0') return text;
    text += c;
  }
}

std::optional<std::string> RunAndRead(const std::vector<std::string>& argv) {
  if (argv.empty()) return std::nullopt;
  std::string program = FindProgram(argv[0]);
  if (program.empty()) return std::nullopt;
  int pipeFds[2];
  if (::pipe2(pipeFds, O_CLOEXEC) != 0) return std::nullopt;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipeFds[1], 1);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  std::vector<char*> args;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  pid_t pid;
  bool started = posix_spawn(&pid, program.c_str(), &actions, nullptr, args.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  ::close(pipeFds[1]);
  std::string out;
  if (started) ReadToEnd(pipeFds[0], out);
  ::close(pipeFds[0]);
  // The program may reap children by itself (it ignores SIGCHLD), so a
  // failed wait says nothing; the end of the output is the end of the run.
  if (started) ::waitpid(pid, nullptr, 0);
  if (!started) return std::nullopt;
  return out;
}

std::vector<ResolvedLibrary> ParseLdd(const std::string& output) {
  std::vector<ResolvedLibrary> found;
  std::size_t start = 0;
  while (start < output.size()) {
    std::size_t end = output.find('\n', start);
    if (end == std::string::npos) end = output.size();
    std::string line = output.substr(start, end - start);
    start = end + 1;
    std::size_t arrow = line.find(" => /");
    if (arrow == std::string::npos) continue;
    std::size_t name = line.find_first_not_of(" \t");
    std::size_t address = line.rfind(" (0x");
    if (address == std::string::npos || address < arrow) address = line.size();
    found.push_back({line.substr(name, arrow - name), line.substr(arrow + 4, address - arrow - 4)});
  }
  return found;
}

std::map<std::string, std::string> ParseDpkgSearch(const std::string& output) {
  std::map<std::string, std::string> owners;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    std::size_t colon = line.find(": /");
    if (colon == std::string::npos || line.starts_with("diversion by ")) continue;
    std::string packages = line.substr(0, colon);
    owners.emplace(line.substr(colon + 2), packages.substr(0, packages.find(',')));
  }
  return owners;
}

std::vector<std::string> PackagePaths(const std::string& path) {
  std::vector<std::string> paths = {path};
  std::error_code ec;
  fs::path real = fs::canonical(path, ec);
  if (!ec && real != path) paths.push_back(real.string());
  for (std::size_t i = 0, n = paths.size(); i < n; ++i) {
    const std::string& p = paths[i];
    if (p.starts_with("/usr/lib/") || p.starts_with("/usr/bin/")) paths.push_back(p.substr(4));
    else if (p.starts_with("/lib/") || p.starts_with("/lib64/") || p.starts_with("/bin/")) paths.push_back("/usr" + p);
  }
  return paths;
}

bool IsCLibrary(const std::string& soname) {
  for (const char* prefix : kCLibraries)
    if (soname.starts_with(prefix)) return true;
  return false;
}

std::vector<RuntimeFile> LinkedRuntime::Files() {
  if (files_) return *files_;
  LibrarySet libraries;
  libraries.Add(LibrariesOf(exe_));
  for (const std::string& own : ownFiles_) libraries.Add(LibrariesOf(own));
  // Qt's multimedia plugin brings GStreamer, so its plugins come second.
  std::vector<RuntimeFile> plugins;
  std::string qtPlugins = libraries.FolderOf("libQt6Core.so");
  AddPlugins(qtPlugins.empty() ? "" : qtPlugins + "/qt6/plugins", kQtPlugins, "plugins/", libraries, plugins);
  std::string gstPlugins = libraries.FolderOf("libgstreamer-1.0.so");
  AddPlugins(gstPlugins.empty() ? "" : gstPlugins + "/gstreamer-1.0", kGStreamerPlugins, "lib/gstreamer-1.0/",
             libraries, plugins);
  std::vector<RuntimeFile> files;
  for (const ResolvedLibrary& lib : libraries.All()) files.push_back({lib.path, "lib/" + lib.soname});
  files.insert(files.end(), plugins.begin(), plugins.end());
  std::string soundfont = FindSoundfont(fs::path(exe_).parent_path());
  if (!soundfont.empty()) files.push_back({soundfont, kGameSoundfont});
  files_ = files;
  return files;
}

std::vector<RuntimeOrigin> LinkedRuntime::Origins() {
  if (origins_) return *origins_;
  std::vector<RuntimeFile> files = Files();
  std::vector<std::string> argv = {"dpkg", "-S"};
  for (const RuntimeFile& f : files)
    for (const std::string& path : PackagePaths(f.from)) argv.push_back(path);
  std::map<std::string, std::string> owners = ParseDpkgSearch(files.empty() ? "" : RunAndRead(argv).value_or(""));
  std::vector<std::string> packageOf;
  std::set<std::string> packages;
  for (const RuntimeFile& f : files) {
    std::string package;
    for (const std::string& path : PackagePaths(f.from))
      if (auto owner = owners.find(path); package.empty() && owner != owners.end()) package = owner->second;
    packageOf.push_back(package);
    if (!package.empty()) packages.insert(package);
  }
  std::map<std::string, PackageSource> sources = SourcesOf(packages);
  std::map<std::string, std::vector<std::string>> copyrights;
  std::vector<RuntimeOrigin> origins;
  for (std::size_t i = 0; i < files.size(); ++i) {
    RuntimeOrigin origin{files[i].to, packageOf[i], "", "", ""};
    if (!origin.package.empty()) {
      const PackageSource& source = sources[origin.package];
      origin.source = source.source.empty() ? origin.package : source.source;
      origin.version = source.version;
      origin.copyright = CopyrightOf(origin.package, origin.source, copyrights);
    }
    origins.push_back(origin);
  }
  origins_ = origins;
  return origins;
}

// The executable's run path reaches every library loaded on its behalf (a
// DT_RPATH, not a DT_RUNPATH, which would reach only its own direct needs).
// A library that brings a run path of its own searches there instead, so it
// is pointed at its own folder. A plugin gets a DT_RPATH to lib/ as well,
// which reaches the libraries its own libraries need, so that it resolves
// there whoever loads it.
void LinkedRuntime::Adopt(const std::string& folder, const std::string& exeCopy) {
  {
    std::ofstream conf(folder + "/qt.conf", std::ios::binary | std::ios::trunc);
    conf << kQtConf;
    if (!conf.flush()) throw Failure("Path/File access error");
  }
  SetRunPath(exeCopy, "$ORIGIN/lib", true);
  // A module of the program's own, beside the copy, finds lib/ the same way.
  for (const std::string& own : ownFiles_) {
    std::string copy = folder + "/" + fs::path(own).filename().string();
    if (IsFile(copy)) SetRunPath(copy, "$ORIGIN/lib", true);
  }
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(folder + "/lib", ec)) {
    std::string lib = entry.path().string();
    if (entry.is_regular_file() && !RunPathOf(lib).empty()) SetRunPath(lib, "$ORIGIN", false);
  }
  for (const auto& kind : fs::directory_iterator(folder + "/plugins", ec))
    SetRunPaths(kind.path().string(), "$ORIGIN/../../lib");
  SetRunPaths(folder + "/lib/gstreamer-1.0", "$ORIGIN/..");
}

}  // namespace fw
