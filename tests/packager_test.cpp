// The packager's Compile with the runtime and the process start seen from
// outside: what lands in the game folder, in which order, and what starts.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "bad_input.h"
#include "forms/controls.h"
#include "forms/user_actions.h"
#include "packager/project_licence.h"
#include "packager/runtime_copy.h"
#include "platform/linked_runtime.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;

// A runtime that lists the files it is given and remembers what it adopted.
struct ListedRuntime : Runtime {
  std::vector<RuntimeFile> files;
  std::vector<RuntimeOrigin> origins;
  int asked = 0;
  std::vector<std::pair<std::string, std::string>> adopted;
  std::vector<RuntimeFile> Files() override {
    ++asked;
    return files;
  }
  std::vector<RuntimeOrigin> Origins() override { return origins; }
  void Adopt(const std::string& folder, const std::string& exeCopy) override { adopted.push_back({folder, exeCopy}); }
};

void Write(const fs::path& path, const std::string& text, fs::perms perms = fs::perms::owner_read | fs::perms::owner_write) {
  fs::create_directories(path.parent_path());
  std::ofstream(path) << text;
  fs::permissions(path, perms);
}

// The editor's quest, the packager's window filled in, and a running
// executable (a script of 64 KB) with a file of its own.
struct Packager {
  TempDir dir;
  HeadlessPlatform platform;
  ListedRuntime runtime;
  std::unique_ptr<Program> program;
  fs::path exe = dir.path / "bin" / "fablewright";

  Packager() {
    Write(exe, "#!/bin/sh\n" + std::string(64 << 10, '#') + "\n", fs::perms::owner_all);
    Write(dir.path / "bin" / "fablewright-qt.so", "module");
    Write(dir.path / "quest.fbw", "[Story Info]\r\nTitle=T\r\n");
    fs::create_directories(dir.path / "games");
    Services services = platform.services();
    services.runtime = &runtime;
    AppInfo app{dir.str() + "/bin", "fablewright", dir.str(), dir.str(), exe.string(),
                {(dir.path / "bin" / "fablewright-qt.so").string()}};
    program = std::make_unique<Program>(services, app, AllForms());
    FormSurface& s = program->surface();
    s.SetFileName(s.Id("createquest", "questfile"), dir.str() + "/quest.fbw");
    FormHandle(s, "FrmCompile").Show();
    TextBox(s, "FrmCompile", "Text1").SetText("Two Words");
    EXPECT_EQ(Act(*program, s.Id("FrmCompile", "Dir1"), UserAction::Type, dir.str() + "/games"), "");
  }
  fs::path game() const { return dir.path / "games" / "Two Words"; }
  void Compile(int runAnswer) {
    platform.dialogs.QueueAnswer(runAnswer);
    ASSERT_EQ(Act(*program, program->surface().Id("FrmCompile", "Command1"), UserAction::Click), "");
  }
};

TEST(Packager, RuntimeFilesGoIntoTheirFoldersInOrderAndAMissingOneIsSkipped) {
  Packager t;
  Write(t.dir.path / "sys" / "liba.so.1", "a");
  Write(t.dir.path / "sys" / "libqoffscreen.so", "p");
  Write(t.dir.path / "sys" / "font.sf2", "f");
  Write(t.dir.path / "sys" / "libq.so", "q");
  Write(t.dir.path / "doc" / "liba1" / "copyright", "Qt's terms");
  Write(t.dir.path / "doc" / "libtim" / "copyright", "font terms");
  Write(t.dir.path / "doc" / "libtim2" / "copyright", "other font terms");
  t.runtime.files = {{t.dir.str() + "/sys/liba.so.1", "lib/liba.so.1"},
                     {t.dir.str() + "/sys/missing.so", "lib/missing.so"},
                     {t.dir.str() + "/sys/libqoffscreen.so", "plugins/platforms/libqoffscreen.so"},
                     {t.dir.str() + "/sys/font.sf2", "soundfont.sf2"},
                     {t.dir.str() + "/sys/font.sf2", "other.sf2"},
                     {t.dir.str() + "/sys/libq.so", "lib/libq.so"}};
  // Two packages of one source with one text between them (the runtime
  // names the first one's file for both), two of another with two texts.
  const std::string doc = t.dir.str() + "/doc/";
  t.runtime.origins = {{"lib/liba.so.1", "liba1", "qt", "6.4-1", doc + "liba1/copyright"},
                       {"lib/missing.so", "liba1", "qt", "6.4-1", doc + "liba1/copyright"},
                       {"plugins/platforms/libqoffscreen.so", "liba2", "qt", "6.4-1", doc + "liba1/copyright"},
                       {"soundfont.sf2", "libtim", "tim", "1:2", doc + "libtim/copyright"},
                       {"other.sf2", "libtim2", "tim", "1:2", doc + "libtim2/copyright"},
                       {"lib/libq.so", "", "", "", ""}};
  t.Compile(7);
  EXPECT_EQ(testing::FileBytes(t.game() / "lib" / "liba.so.1"), "a");
  EXPECT_FALSE(fs::exists(t.game() / "lib" / "missing.so"));
  EXPECT_EQ(testing::FileBytes(t.game() / "plugins" / "platforms" / "libqoffscreen.so"), "p");
  EXPECT_EQ(testing::FileBytes(t.game() / "soundfont.sf2"), "f");
  // licenses/: the program's own, and one copyright file a text for the files
  // that came, named by their source while its packages agree.
  const fs::path licenses = t.game() / "licenses";
  EXPECT_EQ(testing::FileBytes(licenses / "LICENSE"), ProjectLicence());
  EXPECT_EQ(testing::FileBytes(licenses / "qt.copyright"), "Qt's terms");
  EXPECT_EQ(testing::FileBytes(licenses / "libtim.copyright"), "font terms");
  EXPECT_EQ(testing::FileBytes(licenses / "libtim2.copyright"), "other font terms");
  std::vector<RuntimeOrigin> copied = t.runtime.origins;
  copied.erase(copied.begin() + 1);
  EXPECT_EQ(testing::FileBytes(licenses / "README.txt"), LicensesReadme(copied));
  std::string readme = testing::FileBytes(licenses / "README.txt");
  EXPECT_NE(readme.find("\nlib/liba.so.1: liba1, source qt 6.4-1, licence in qt.copyright\n"), std::string::npos);
  EXPECT_NE(readme.find("\nplugins/platforms/libqoffscreen.so: liba2, source qt 6.4-1, licence in qt.copyright\n"),
            std::string::npos);
  EXPECT_NE(readme.find("\nsoundfont.sf2: libtim, source tim 1:2, licence in libtim.copyright\n"), std::string::npos);
  EXPECT_NE(readme.find("\nlib/libq.so: in no Debian package where the game was made\n"), std::string::npos);
  EXPECT_EQ(readme.find("missing.so"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(licenses), {}), 5);
  // The copy runs as the program itself did, and its own files stand beside it.
  struct stat st {};
  ASSERT_EQ(::stat((t.game() / "Two Words").c_str(), &st), 0);
  EXPECT_TRUE(st.st_mode & S_IXUSR);
  EXPECT_EQ(testing::FileBytes(t.game() / "fablewright-qt.so"), "module");
  ASSERT_EQ(t.runtime.adopted.size(), 1u);
  EXPECT_EQ(fs::path(t.runtime.adopted[0].first).lexically_normal(), fs::path(t.game().string() + "/"));
  EXPECT_EQ(t.runtime.adopted[0].second, (t.game() / "Two Words").string());
}

TEST(Packager, WithCheck1ClearTheRuntimeIsNotAskedButTheProgramsOwnFilesStillCome) {
  Packager t;
  t.runtime.files = {{t.exe.string(), "lib/libx.so"}};
  CheckBox(t.program->surface(), "FrmCompile", "Check1").SetValue(0);
  t.Compile(7);
  EXPECT_EQ(t.runtime.asked, 0);
  EXPECT_TRUE(t.runtime.adopted.empty());
  EXPECT_FALSE(fs::exists(t.game() / "lib"));
  // The copy of the program carries its licence all the same, alone.
  EXPECT_EQ(testing::FileBytes(t.game() / "licenses" / "LICENSE"), ProjectLicence());
  EXPECT_EQ(std::distance(fs::directory_iterator(t.game() / "licenses"), {}), 1);
  EXPECT_TRUE(fs::exists(t.game() / "fablewright-qt.so"));
  EXPECT_TRUE(fs::exists(t.game() / "Two Words.fbw"));
}

// A name with quotes and blanks is the program's whole path, never a
// command line to split.
TEST(Packager, YesStartsTheCopyAsItsOwnProcessInTheGameFolder) {
  Packager t;
  TextBox(t.program->surface(), "FrmCompile", "Text1").SetText("Say \"Hi\" Now");
  const std::string game = t.dir.str() + "/games/Say \"Hi\" Now";
  t.Compile(6);
  ASSERT_EQ(t.platform.processes.started.size(), 1u);
  EXPECT_EQ(t.platform.processes.started[0], (std::vector<std::string>{game + "/Say \"Hi\" Now"}));
  EXPECT_EQ(t.platform.processes.windowStyles[0], 2);
  EXPECT_EQ(fs::path(t.platform.processes.folders[0]).lexically_normal(), fs::path(game + "/"));
  EXPECT_EQ(fs::path(t.program->CurrentDir()).lexically_normal(), fs::path(game + "/"));
}

// Where the game folder does not get all a game needs, one box says what
// failed and why, in place of the two closing boxes. Each case runs in a
// child: as "nobody" where permissions count, with a mount of its own where
// the disk fills.
TEST(Packager, AGameNotMadeWholeIsOneBoxThatSaysWhatFailedAndWhy) {
  struct Case {
    const char* name;
    bool asNobody;
    std::function<bool(const fs::path& games, const fs::path& bin)> prepare;  // false: not possible here
    std::string said;
  };
  const Case cases[] = {
      {"a read-only parent folder", true,
       [](const fs::path& games, const fs::path&) {
         fs::permissions(games, fs::perms::owner_read | fs::perms::owner_exec);
         return true;
       },
       ": its folder could not be made (permission denied)."},
      {"a module the program lacks", true,
       [](const fs::path&, const fs::path& bin) { return fs::remove(bin / "fablewright-qt.so"); },
       ": its source file is missing.\r\nNot made: fablewright-qt.so."},
      {"a full disk", false,
       [](const fs::path& games, const fs::path&) {
         if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
             ::mount("tmpfs", games.c_str(), "tmpfs", 0, "size=256k") != 0)
           return false;
         std::ofstream filler(games / "filler", std::ios::binary);
         std::string block(4096, 'x');
         while (filler.write(block.data(), block.size()).flush()) {
         }
         return true;
       },
       ": no space left on the disk."},
      {"a file-size limit", false,
       [](const fs::path&, const fs::path&) {
         ::signal(SIGXFSZ, SIG_IGN);
         rlimit limit{16, 16};
         return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
       },
       ": the file is larger than the disk allows."},
  };
  for (const Case& c : cases) {
    Packager t;
    testing::GiveToChild(t.dir.path);
    testing::ChildRun run = testing::InChild(
        [&] {
          if (!c.prepare(t.dir.path / "games", t.dir.path / "bin")) return std::string("not possible here");
          t.platform.dialogs.unchecked().clear();
          t.Compile(6);
          std::string said;
          for (const ShownBox& box : t.platform.dialogs.unchecked()) said += box.prompt + "|";
          return said;
        },
        60, c.asNobody);
    ASSERT_TRUE(run.finished) << c.name << ": " << run.how;
    if (run.said == "not possible here") continue;
    const std::string start = "The game could not be made in " + t.game().string() + "/";
    EXPECT_TRUE(run.said.starts_with(start)) << c.name << ": " << run.said;
    EXPECT_NE(run.said.find(c.said), std::string::npos) << c.name << ": " << run.said;
    EXPECT_EQ(std::count(run.said.begin(), run.said.end(), '|'), 1) << c.name << ": " << run.said;
  }
}

TEST(Packager, OpenDirectoryOpensTheParentFolderAndTheListReachesOnlyRealFolders) {
  Packager t;
  FormSurface& s = t.program->surface();
  ASSERT_EQ(Act(*t.program, s.Id("FrmCompile", "Command3"), UserAction::Click), "");
  EXPECT_EQ(t.platform.processes.opened, (std::vector<std::string>{t.dir.str() + "/games"}));
  ControlId dir1 = s.Id("FrmCompile", "Dir1");
  EXPECT_EQ(Act(*t.program, dir1, UserAction::Type, t.dir.str() + "/nowhere"),
            "has no folder " + t.dir.str() + "/nowhere");
  EXPECT_EQ(FormatValue(s.Get(dir1, Prop::Path)), t.dir.str() + "/games");
}

TEST(LinkedRuntime, LddLinesGiveEachFoundLibraryWithItsFile) {
  std::string out =
      "\tlinux-vdso.so.1 (0x00007ffd)\n"
      "\tlibQt6Core.so.6 => /lib/x86_64-linux-gnu/libQt6Core.so.6 (0x00007f05)\n"
      "\tlibgone.so.2 => not found\n"
      "\tlibc.so.6 => /lib/x86_64-linux-gnu/libc.so.6 (0x00007f05)\n"
      "\t/lib64/ld-linux-x86-64.so.2 (0x00007f05)\n"
      "\tlibsp ace.so => /opt/my libs/libsp ace.so (0x1)";
  std::vector<ResolvedLibrary> libs = ParseLdd(out);
  ASSERT_EQ(libs.size(), 3u);
  EXPECT_EQ(libs[0].soname, "libQt6Core.so.6");
  EXPECT_EQ(libs[0].path, "/lib/x86_64-linux-gnu/libQt6Core.so.6");
  EXPECT_EQ(libs[2].path, "/opt/my libs/libsp ace.so");
  EXPECT_TRUE(IsCLibrary("libc.so.6"));
  EXPECT_TRUE(IsCLibrary("libm.so.6"));
  EXPECT_TRUE(IsCLibrary("ld-linux-x86-64.so.2"));
  EXPECT_FALSE(IsCLibrary("libcap.so.2"));
  EXPECT_FALSE(IsCLibrary("libmd.so.0"));
  EXPECT_FALSE(IsCLibrary("libstdc++.so.6"));
  // dpkg -S: the first owner of each path, diversions and errors passed over.
  std::map<std::string, std::string> owners = ParseDpkgSearch(
      "libqt6core6:amd64: /usr/lib/x86_64-linux-gnu/libQt6Core.so.6\n"
      "diversion by dash from: /bin/sh\n"
      "libc6:amd64, libc6-dbg:amd64: /lib/x86_64-linux-gnu/libc.so.6\n"
      "dpkg-query: no path found matching pattern /opt/x.so\n");
  EXPECT_EQ(owners, (std::map<std::string, std::string>{
                        {"/usr/lib/x86_64-linux-gnu/libQt6Core.so.6", "libqt6core6:amd64"},
                        {"/lib/x86_64-linux-gnu/libc.so.6", "libc6:amd64"}}));
  EXPECT_EQ(PackagePaths("/lib/x86_64-linux-gnu/nothing.so.1"),
            (std::vector<std::string>{"/lib/x86_64-linux-gnu/nothing.so.1", "/usr/lib/x86_64-linux-gnu/nothing.so.1"}));
}

// The list worked out from this build's own executable and the modules it
// loads: Qt and FluidSynth come in through them.
TEST(LinkedRuntime, TheProgramsRuntimeHoldsQtItsPluginsAndNoCLibrary) {
  const fs::path bin = fs::path(FABLEWRIGHT_BIN).parent_path();
  LinkedRuntime runtime(FABLEWRIGHT_BIN,
                        {(bin / "fablewright-window.so").string(), (bin / "fablewright-sound.so").string()});
  std::vector<RuntimeFile> files = runtime.Files();
  auto at = [&](const std::string& to) {
    for (std::size_t i = 0; i < files.size(); ++i)
      if (files[i].to == to) return static_cast<long>(i);
    return -1L;
  };
  EXPECT_GE(at("lib/libQt6Widgets.so.6"), 0);
  EXPECT_GE(at("lib/libfluidsynth.so.3"), 0);
  EXPECT_GT(at("plugins/platforms/libqoffscreen.so"), at("lib/libQt6Widgets.so.6"));
  // The X11 plugin's own libraries come along, though the executable needs none of them.
  EXPECT_GE(at("lib/libQt6XcbQpa.so.6"), 0);
  // GStreamer, which Qt's player loads, with the plugins that read a WAV file.
  EXPECT_GE(at("lib/libgstreamer-1.0.so.0"), 0);
  EXPECT_GE(at("lib/gstreamer-1.0/libgstwavparse.so"), 0);
  EXPECT_GE(at("lib/gstreamer-1.0/libgstcoreelements.so"), 0);
  // The MP3 decoder, with GStreamer's MP3 plugin; the terminal opens it by name for lengths.
  EXPECT_GE(at("lib/libmpg123.so.0"), 0);
  EXPECT_EQ(at("lib/libc.so.6"), -1);
  for (const RuntimeFile& f : files) EXPECT_TRUE(fs::is_regular_file(f.from)) << f.from;
}

// What Adopt leaves in a game folder: each file pointed where it finds lib/.
TEST(LinkedRuntime, AdoptPointsTheCopyItsModulesPluginsAndWanderingLibrariesAtLib) {
  if (!RunAndRead({"patchelf", "--version"})) GTEST_SKIP() << "patchelf is not installed";
  TempDir dir;
  const fs::path elf = "/lib/x86_64-linux-gnu/libz.so.1";
  if (!fs::exists(elf)) GTEST_SKIP() << "no " << elf << " to stand for the files";
  fs::path game = dir.path / "Game";
  for (const char* file : {"Game", "module.so", "lib/libz.so.1", "lib/libwander.so", "plugins/platforms/libq.so",
                           "lib/gstreamer-1.0/libgstq.so"}) {
    fs::create_directories((game / file).parent_path());
    fs::copy_file(elf, game / file);
  }
  auto runPath = [](const fs::path& file) {
    std::string out = RunAndRead({"patchelf", "--print-rpath", file.string()}).value_or("?");
    return out.substr(0, out.find('\n'));
  };
  RunAndRead({"patchelf", "--set-rpath", "/usr/lib/somewhere", (game / "lib/libwander.so").string()});
  ASSERT_EQ(runPath(game / "lib/libwander.so"), "/usr/lib/somewhere");

  LinkedRuntime runtime(elf.string(), {(dir.path / "build" / "module.so").string()});
  runtime.Adopt(game.string(), (game / "Game").string());
  EXPECT_EQ(runPath(game / "Game"), "$ORIGIN/lib");
  EXPECT_EQ(runPath(game / "module.so"), "$ORIGIN/lib");
  EXPECT_EQ(runPath(game / "lib/libwander.so"), "$ORIGIN");
  EXPECT_EQ(runPath(game / "lib/libz.so.1"), "");
  EXPECT_EQ(runPath(game / "plugins/platforms/libq.so"), "$ORIGIN/../../lib");
  EXPECT_EQ(runPath(game / "lib/gstreamer-1.0/libgstq.so"), "$ORIGIN/..");
  EXPECT_EQ(testing::FileBytes(game / "qt.conf"), "[Paths]\nPrefix=.\nPlugins=plugins\n");
  // The run path as this program reads it, against patchelf's reading.
  for (const char* file : {"Game", "lib/libwander.so", "lib/libz.so.1", "lib/gstreamer-1.0/libgstq.so"})
    EXPECT_EQ(ElfRunPath((game / file).string()), runPath(game / file)) << file;
  EXPECT_EQ(ElfRunPath((game / "qt.conf").string()), std::nullopt);
}

}  // namespace
}  // namespace fw
