#include "app/author_tools.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "bindings/headless/headless_services.h"
#include "editor/quest_check.h"
#include "editor/quest_explore.h"
#include "editor/quest_map.h"
#include "forms/codepage.h"
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
  // the explorer plays a copy, so the author's file is never written.
  std::error_code ec;
  fs::path scratch = fs::temp_directory_path(ec) / ("fablewright-explore-" + std::to_string(::getpid()));
  fs::create_directories(scratch, ec);
  fs::path copy = scratch / fs::path(quest).filename();
  if (!fs::is_regular_file(quest, ec) || !fs::copy_file(quest, copy, fs::copy_options::overwrite_existing, ec)) {
    err << "fablewright: cannot read the quest " << quest << "\n";
    fs::remove_all(scratch, ec);
    return 2;
  }
  ToolProgram tool(copy.string());
  AnswerEveryBox boxes;
  Services services = tool.platform.services();
  services.dialogs = &boxes;
  std::string folder = scratch.string();
  tool.program = std::make_unique<Program>(services, AppInfo{folder, "fablewright", folder, folder}, AllForms());
  tool.platform.random.FixSeed(options.seed);
  bool terminal = ::isatty(2);
  if (terminal) options.progress = [&](std::size_t done, std::size_t total) { err << ProgressBar(done, total) << std::flush; };
  ExploreReport report = ExploreQuest(tool.p(), tool.quest, options);
  if (terminal) err << "\r\033[K" << std::flush;
  fs::remove_all(scratch, ec);
  out << ExploreReportText(report);
  return 0;
}

}  // namespace fw
