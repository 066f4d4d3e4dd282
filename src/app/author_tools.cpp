#include "app/author_tools.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "bindings/headless/headless_services.h"
#include "editor/quest_check.h"
#include "editor/quest_explore.h"
#include "editor/quest_graph.h"
#include "editor/quest_map.h"
#include "forms/codepage.h"
#include "forms/paths.h"
#include "forms/program.h"
#include "play/quest_paths.h"
#include "shell/forms.h"
#include "store/program_store.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

// A headless program standing in the quest's folder, so that media names
// resolve as they do for a game started there.
struct ToolProgram {
  HeadlessPlatform platform;
  std::unique_ptr<Program> program;
  std::string quest;  // program path of the quest

  explicit ToolProgram(const std::string& questUtf8) {
    std::error_code ec;
    std::string host = fs::absolute(questUtf8, ec).lexically_normal().string();
    std::string folder = fs::path(host).parent_path().string();
    program = std::make_unique<Program>(platform.services(), AppInfo{folder, "fablewright", folder, folder},
                                        AllForms());
    quest = Cp1252FromUtf8(host);
  }
  Program& p() { return *program; }
};

// The quest's title for a map, or its file name.
std::string Title(Program& p, const std::string& quest, const std::string& questUtf8) {
  std::string title = ReadINI(p, quest, "Story Info", "Title");
  return title.empty() ? Cp1252FromUtf8(fs::path(questUtf8).filename().string()) : title;
}

// Writes the whole file or nothing: a map is never left half-written.
bool WriteWhole(const std::string& path, const std::string& bytes) {
  std::string temp = path + ".tmp-" + std::to_string(::getpid());
  {
    std::ofstream file(temp, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
      std::error_code ec;
      fs::remove(temp, ec);
      return false;
    }
  }
  std::error_code ec;
  fs::rename(temp, path, ec);
  if (ec) fs::remove(temp, ec);
  return !ec;
}

// The explorer's message boxes (a level gained) are all answered OK, and it
// opens no file dialog.
class AnswerEveryBox : public Dialogs {
 public:
  int MsgBox(std::string_view, int, std::string_view) override { return 1; }
  std::optional<std::string> FileDialog(const FileDialogRequest&) override { return std::nullopt; }
};

// A number of one to nine digits.
bool Count(const std::string& s) {
  return !s.empty() && s.size() <= 9 && s.find_first_not_of("0123456789") == std::string::npos;
}

// One line of a terminal, drawn over itself: "[#####-----]  50%  1000 of 2000".
std::string ProgressBar(std::size_t done, std::size_t total) {
  constexpr std::size_t kWidth = 30;
  std::size_t filled = total ? std::min(kWidth, done * kWidth / total) : 0;
  std::size_t percent = total ? std::min<std::size_t>(100, done * 100 / total) : 0;
  return "\rexploring [" + std::string(filled, '#') + std::string(kWidth - filled, '-') + "] " +
         std::to_string(percent) + "%  " + std::to_string(done) + " of " + std::to_string(total);
}

// A game folder: its game.dat, then the quest it names.
int CheckGameFolder(const std::string& folder, const std::string& format, std::ostream& out, std::ostream& err) {
  std::string dat = (fs::path(folder) / "game.dat").string();
  std::error_code ec;
  if (!fs::is_regular_file(dat, ec)) {
    err << "fablewright: " << folder << " holds no game.dat\n";
    return 2;
  }
  ToolProgram tool(dat);
  std::string programFolder = Cp1252FromUtf8(tool.p().AppPath());
  GameDatCheck game = CheckGameDat(tool.p(), programFolder);
  std::vector<FileFindings> files = {{dat, game.findings}};
  if (!game.quest.empty()) {
    std::string shown = (fs::path(folder) / HostPath(game.questName)).string();
    if (auto findings = CheckQuest(tool.p(), game.quest)) {
      files.push_back({shown, std::move(*findings)});
    } else {
      files[0].findings.push_back({"loaddat", Finding::Level::Error,
                                   "QuestFile \"" + game.questName +
                                       "\" is not in the game folder: the game starts on a blank page"});
    }
  }
  bool error = false;
  for (const FileFindings& f : files) error = error || HasError(f.findings);
  if (format == "json") {
    out << FindingsJson(files);
  } else {
    for (const FileFindings& f : files) out << FindingsText(f.file, f.findings);
  }
  return error ? 1 : 0;
}

// The explorer's scratch folder in the system's temporary folder, made here
// and removed with the object.
struct Scratch {
  fs::path path;
  Scratch() {
    std::error_code ec;
    path = fs::temp_directory_path(ec) / ("fablewright-explore-" + std::to_string(::getpid()));
    fs::create_directories(path, ec);
  }
  ~Scratch() { Remove(); }
  void Remove() {
    std::error_code ec;
    fs::remove_all(path, ec);
  }
};

// While it lives, an interrupt (SIGINT) or a request to end (SIGTERM) is
// noted instead of ending the program at once, so that a run can stop and
// tidy up first; then it passes the signal on.
class StopOnSignals {
 public:
  StopOnSignals() {
    caught_ = 0;
    struct sigaction note {};
    note.sa_handler = [](int signal) { caught_ = signal; };
    sigemptyset(&note.sa_mask);
    // A signal the program was started to ignore stays ignored.
    for (std::size_t i = 0; i < std::size(kSignals); ++i)
      if (sigaction(kSignals[i], nullptr, &old_[i]) == 0 && old_[i].sa_handler != SIG_IGN)
        sigaction(kSignals[i], &note, nullptr);
  }
  ~StopOnSignals() { Restore(); }
  int caught() const { return caught_; }
  void Restore() {
    if (restored_) return;
    restored_ = true;
    for (std::size_t i = 0; i < std::size(kSignals); ++i) sigaction(kSignals[i], &old_[i], nullptr);
  }

 private:
  static constexpr int kSignals[] = {SIGINT, SIGTERM};
  // A signal handler has only a global to tell the program through.
  static inline volatile std::sig_atomic_t caught_ = 0;
  struct sigaction old_[std::size(kSignals)] {};
  bool restored_ = false;
};

}  // namespace

int RunCheckCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::string quest, format = "text";
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--format" && i + 1 < args.size() && (args[i + 1] == "json" || args[i + 1] == "text")) {
      format = args[++i];
    } else if (quest.empty() && !args[i].starts_with("--")) {
      quest = args[i];
    } else {
      err << "fablewright: unknown argument for check: " << args[i] << "\n";
      return 2;
    }
  }
  if (quest.empty()) {
    err << "fablewright: check needs a QUEST file\n";
    return 2;
  }
  std::error_code ec;
  if (fs::is_directory(quest, ec)) return CheckGameFolder(quest, format, out, err);
  ToolProgram tool(quest);
  std::optional<std::vector<Finding>> findings = CheckQuest(tool.p(), tool.quest);
  if (!findings) {
    err << "fablewright: cannot read the quest " << quest << "\n";
    return 2;
  }
  out << (format == "json" ? FindingsJson(quest, *findings) : FindingsText(quest, *findings));
  return HasError(*findings) ? 1 : 0;
}

int RunMapCommand(const std::vector<std::string>& args, GraphLayout& layout, std::ostream& out, std::ostream& err) {
  std::string quest, output;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "-o" && i + 1 < args.size()) output = args[++i];
    else if (quest.empty() && !args[i].starts_with("-")) quest = args[i];
    else {
      err << "fablewright: unknown argument for map: " << args[i] << "\n";
      return 2;
    }
  }
  std::string format = fs::path(output).extension().string();
  if (!format.empty()) format.erase(0, 1);
  if (quest.empty() || output.empty() || (format != "svg" && format != "dot" && format != "png" && format != "pdf")) {
    err << "fablewright: map needs a QUEST file and -o MAP.svg, .dot, .png or .pdf\n";
    return 2;
  }
  ToolProgram tool(quest);
  std::shared_ptr<const ProfileImage> image = ReadINIImage(tool.p(), tool.quest);
  if (!image) {
    err << "fablewright: cannot read the quest " << quest << "\n";
    return 2;
  }
  QuestGraph graph = BuildQuestGraph(image);
  std::string bytes, error;
  if (!RenderQuestMap(layout, graph, Title(tool.p(), tool.quest, quest), format, bytes, error)) {
    err << "fablewright: " << error << "\n";
    return 1;
  }
  if (!WriteWhole(output, bytes)) {
    err << "fablewright: cannot write " << output << "\n";
    return 1;
  }
  out << "Map of " << graph.pages.size() << " pages written to " << output << "\n";
  return 0;
}

int RunExploreCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::string quest;
  ExploreOptions options;
  for (std::size_t i = 0; i < args.size(); ++i) {
    bool value = i + 1 < args.size() && Count(args[i + 1]);
    if (args[i] == "--random" && value) options.randomGames = std::stoi(args[++i]);
    else if (args[i] == "--seed" && value) options.seed = static_cast<std::uint32_t>(std::stoul(args[++i]));
    else if (args[i] == "--max-states" && value) options.maxStates = std::stoul(args[++i]);
    else if (args[i] == "--fights" && value) options.fights = std::stoi(args[++i]);
    else if (quest.empty() && !args[i].starts_with("-")) quest = args[i];
    else {
      err << "fablewright: unknown argument for explore: " << args[i] << "\n";
      return 2;
    }
  }
  if (quest.empty()) {
    err << "fablewright: explore needs a QUEST file\n";
    return 2;
  }
  // A won fight may raise a level, which the game writes into the quest:
  // the explorer plays a copy, so the author's file is never written. The
  // copy's folder goes at the end, and at an interrupt too.
  StopOnSignals signals;
  Scratch scratch;
  std::error_code ec;
  fs::path copy = scratch.path / fs::path(quest).filename();
  if (!fs::is_regular_file(quest, ec) || !fs::copy_file(quest, copy, fs::copy_options::overwrite_existing, ec)) {
    err << "fablewright: cannot read the quest " << quest << "\n";
    return 2;
  }
  ToolProgram tool(copy.string());
  std::shared_ptr<const ProfileImage> image = ReadINIImage(tool.p(), tool.quest);
  if (!image || BuildQuestGraph(image).first < 0) {
    err << "fablewright: " << quest << " holds no pages: every game starts at page 1, which it does not have\n";
    return 1;
  }
  AnswerEveryBox boxes;
  Services services = tool.platform.services();
  services.dialogs = &boxes;
  std::string folder = scratch.path.string();
  tool.program = std::make_unique<Program>(services, AppInfo{folder, "fablewright", folder, folder}, AllForms());
  tool.platform.random.FixSeed(options.seed);
  bool terminal = ::isatty(2);
  if (terminal) options.progress = [&](std::size_t done, std::size_t total) { err << ProgressBar(done, total) << std::flush; };
  options.stopped = [&] { return signals.caught() != 0; };
  ExploreReport report = ExploreQuest(tool.p(), tool.quest, options);
  if (terminal) err << "\r\033[K" << std::flush;
  if (int signal = signals.caught()) {
    scratch.Remove();
    signals.Restore();
    std::raise(signal);  // ends the program as the signal would have
  }
  out << ExploreReportText(report);
  return 0;
}

}  // namespace fw
