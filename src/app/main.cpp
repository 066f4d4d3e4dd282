// The command line: one program, several jobs.
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "app/assembly.h"
#include "app/author_tools.h"
#include "app/command_args.h"
#include "app/modules.h"
#include "bindings/headless/script_runner.h"
#include "bindings/terminal/terminal_player.h"
#include "editor/createquest.h"
#include "play/autosave.h"
#include "play/start_quest.h"
#include "forms/codepage.h"
#include "forms/paths.h"
#include "forms/regular_file.h"
#include "packager/project_licence.h"
#include "store/ini_command.h"

namespace {

constexpr const char* kUsage =
    "Usage:\n"
    "  fablewright [QUEST.fbw | --continue] [--app-dir DIR] [--home DIR] [--seed N]\n"
    "      Opens the game window (on a desktop) or plays in the terminal (without one),\n"
    "      with the quest given already open, or (--continue) the last game as it was\n"
    "      saved automatically.\n"
    "      --seed N fixes the dice, so that a fight can be played again as it went.\n"
    "  fablewright play [QUEST.fbw | --continue] [--app-dir DIR] [--home DIR] [--silent] [--seed N]\n"
    "      Plays a quest in the terminal (or through a pipe): type an option's number.\n"
    "  fablewright edit [QUEST.fbw] [--app-dir DIR] [--home DIR]\n"
    "      Opens the quest editor (on a desktop), on a fresh quest or on the quest given.\n"
    "  fablewright script FILE [--app-dir DIR] [--home DIR] [--transcript]\n"
    "      Runs a test script against the program, headless, on a virtual clock.\n"
    "  fablewright ini get FILE SECTION KEY [--scrambled] [--home DIR]\n"
    "  fablewright ini set FILE SECTION KEY VALUE [--scrambled] [--home DIR]\n"
    "      Reads or writes one key of a quest, saved game or character file.\n"
    "  fablewright check QUEST.fbw|GAMEFOLDER [--format json]\n"
    "      Checks a quest for broken links, unreachable pages, dead ends, items, battles\n"
    "      and media (a game folder: its game.dat, then its quest); one finding a line,\n"
    "      exit code 1 on an error.\n"
    "  fablewright map QUEST.fbw -o MAP.svg|MAP.dot|MAP.png|MAP.pdf\n"
    "      Draws the quest's pages and the ways between them, laid out by Graphviz.\n"
    "  fablewright explore QUEST.fbw [--random N] [--seed S] [--max-states N] [--fights N]\n"
    "      Plays every state of a quest headless (or N random games): pages reached and\n"
    "      never reached, each ending's score range and shortest way, dead ends, and each\n"
    "      battle's odds, fought N times (1000) for the hit points the character arrives with.\n"
    "  fablewright --help | --version\n"
    "Folders:\n"
    "  --app-dir DIR  the program's own folder as the game sees it (App.Path): where a\n"
    "                 packaged game's game.dat and files are, and where the dialogs open\n"
    "                 when you may write there. Default: the folder of this program.\n"
    "  --home DIR     the per-user folder (the editor's working file and its backups, the\n"
    "                 saves/ folder). Default: $XDG_DATA_HOME/fablewright, else\n"
    "                 ~/.local/share/fablewright.\n";

// The running executable, as the kernel knows it.
std::filesystem::path SelfPath() {
  std::error_code ec;
  auto p = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::filesystem::path("fablewright") : p;
}

// A launch from the running executable, before the options change it.
fw::Launch DefaultLaunch() {
  std::filesystem::path self = SelfPath();
  fw::Launch launch;
  launch.appDir = self.parent_path().string();
  launch.exeName = self.stem().string();
  if (self.is_absolute()) launch.exe = self.string();
  launch.windowModule = fw::FindModule(launch.appDir, fw::kWindowModuleName);
  launch.soundModule = fw::FindModule(launch.appDir, fw::kSoundModuleName);
  launch.mapModule = fw::FindModule(launch.appDir, fw::kMapModuleName);
  return launch;
}

int Script(const std::vector<std::string>& args) {
  return fw::ScriptCommand(args, DefaultLaunch(), [](const fw::Launch& launch, const std::string& file,
                                                     const fw::ScriptOptions& options) {
    fw::Assembly assembly(launch);
    return fw::RunScript(file, options, assembly.Maker(), std::cout, std::cerr);
  });
}

// A seed: one to nine digits.
bool IsSeed(const std::string& s) {
  return !s.empty() && s.size() <= 9 && s.find_first_not_of("0123456789") == std::string::npos;
}

// Reads --seed N into the launch; gives false on anything else.
bool Seed(const std::vector<std::string>& args, std::size_t& i, fw::Launch& launch) {
  if (args[i] != "--seed" || i + 1 >= args.size() || !IsSeed(args[i + 1])) return false;
  launch.seed = static_cast<std::uint32_t>(std::stoul(args[++i]));
  return true;
}

// A quest named on the command line, as a full path; false, said why, when
// there is no such file or the game cannot hold its name (text inside is
// Windows-1252).
bool QuestFile(std::string& quest) {
  if (!std::filesystem::is_regular_file(quest)) {
    std::cerr << "fablewright: no quest file " << quest << "\n";
    return false;
  }
  // The game would show a file it may not read as an empty page; a name
  // typed on the command line deserves the reason.
  if (fw::Fd file{fw::OpenRegularFile(quest)}; file.fd < 0) {
    std::cerr << "fablewright: cannot read the quest file " << quest << ": " << std::strerror(errno) << "\n";
    return false;
  }
  if (fw::Utf8FromCp1252(fw::Cp1252FromUtf8(quest)) != quest) {
    std::cerr << "fablewright: cannot open " << quest << ": the game takes only Windows-1252 characters in a path\n";
    return false;
  }
  quest = std::filesystem::absolute(quest).lexically_normal().string();
  return true;
}

// The first step that opens the quest named on the command line, none for
// the picture menu.
std::function<void(fw::Program&)> OpenNamed(const std::string& quest, bool continuing = false) {
  if (continuing) return [](fw::Program& p) { fw::frmgame::mnucontinue_Click(p); };
  if (quest.empty()) return {};
  return [path = fw::Cp1252FromUtf8(quest)](fw::Program& p) { fw::OpenQuestNamed(p, path); };
}

int Play(const std::vector<std::string>& args) {
  std::string quest;
  bool continuing = false;
  fw::Launch launch = DefaultLaunch();
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (fw::ReadFolders(args, i, launch)) continue;
    if (args[i] == "--silent") {
      launch.sound = false;
    } else if (args[i] == "--continue" && quest.empty()) {
      continuing = true;
    } else if (Seed(args, i, launch)) {
    } else if (quest.empty() && !continuing && !args[i].starts_with("--")) {
      quest = args[i];
    } else {
      fw::RefuseArgument(args, i, "play");
      return 2;
    }
  }
  if (!quest.empty() && !QuestFile(quest)) return 1;
  if (!fw::MakeUserDir(launch)) return 2;
  fw::Assembly assembly(launch);
  return fw::PlayInTerminal({OpenNamed(quest, continuing)}, assembly.Maker(), 0, stdout);
}

// The editor's window straight away, over the game window, on the quest
// given as Load would open it.
int Edit(const std::vector<std::string>& args, int argc, char** argv) {
  fw::Launch launch = DefaultLaunch();
  std::string quest;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (fw::ReadFolders(args, i, launch)) continue;
    if (quest.empty() && !args[i].starts_with("--")) {
      quest = args[i];
    } else {
      fw::RefuseArgument(args, i, "edit");
      return 2;
    }
  }
  if (!quest.empty() && !std::filesystem::is_regular_file(quest)) {
    std::cerr << "fablewright: no quest file " << quest << "\n";
    return 1;
  }
  if (!fw::DisplayAvailable()) {
    std::cerr << "fablewright: the editor needs a display; a script reaches it with "
                 "\"click FrmGame.mnucreatequest\"\n";
    return 1;
  }
  if (!quest.empty()) quest = fw::Cp1252FromUtf8(std::filesystem::absolute(quest).lexically_normal().string());
  if (!fw::MakeUserDir(launch)) return 2;
  fw::Assembly assembly(launch);
  std::optional<int> code = fw::RunWindows(launch.windowModule, assembly.Maker(), argc, argv,
                                           [&quest](fw::Program& p) {
                                             if (quest.empty()) fw::OpenEditor(p);
                                             else fw::OpenEditorOn(p, quest);
                                           },
                                           std::cerr);
  return code.value_or(1);
}

// The program's own job: its windows on a desktop, the terminal player
// where there is no display; a quest given (a file manager's double click)
// opens in either.
int Run(const std::vector<std::string>& args, int argc, char** argv) {
  fw::Launch launch = DefaultLaunch();
  std::string quest;
  bool continuing = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (fw::ReadFolders(args, i, launch) || Seed(args, i, launch)) continue;
    if (args[i] == "--continue" && quest.empty()) {
      continuing = true;
    } else if (quest.empty() && !continuing && !args[i].starts_with("--")) {
      quest = args[i];
    } else {
      fw::RefuseArgument(args, i, "");
      return 2;
    }
  }
  if (!quest.empty() && !QuestFile(quest)) return 1;
  if (!fw::MakeUserDir(launch)) return 2;
  fw::Assembly assembly(launch);
  if (fw::DisplayAvailable()) {
    std::optional<int> code =
        fw::RunWindows(launch.windowModule, assembly.Maker(), argc, argv, OpenNamed(quest, continuing), std::cerr);
    if (code) return *code;
    std::cerr << "fablewright: playing in the terminal instead\n";
  } else {
    std::cerr << "fablewright: no display; playing in the terminal instead\n";
  }
  return fw::PlayInTerminal({OpenNamed(quest, continuing)}, assembly.Maker(), 0, stdout);
}

}  // namespace

int main(int argc, char** argv) {
  // Over a file-size limit a write fails and is reported like any other
  // failed write, instead of the signal killing the program mid-game.
  std::signal(SIGXFSZ, SIG_IGN);
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty() || args[0] == "--app-dir" || args[0] == "--home" || args[0] == "--seed" || args[0] == "--continue")
    return Run(args, argc, argv);
  const std::string& command = args[0];
  std::vector<std::string> rest(args.begin() + 1, args.end());
  if (command == "--help" || command == "-h") {
    std::cout << kUsage;
    return 0;
  }
  if (command == "--version") {
    std::cout << "fablewright " << FABLEWRIGHT_VERSION << "\n"
              << fw::ProjectCopyright() << "\n"
              << "MIT licence: free to use, copy, change and pass on, with no warranty.\n";
    return 0;
  }
  if (command == "script") return Script(rest);
  if (command == "play") return Play(rest);
  if (command == "edit") return Edit(rest, argc, argv);
  if (command == "check") return fw::RunCheckCommand(rest, std::cout, std::cerr);
  if (command == "explore") return fw::RunExploreCommand(rest, std::cout, std::cerr);
  if (command == "map") {
    std::unique_ptr<fw::GraphLayout> layout = fw::GraphvizOnFirstUse(DefaultLaunch().mapModule);
    return fw::RunMapCommand(rest, *layout, std::cout, std::cerr);
  }
  if (command == "ini") return fw::RunIniCommand(rest, std::cout, std::cerr);
  return Run(args, argc, argv);
}
