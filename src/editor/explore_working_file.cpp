#include "editor/explore_working_file.h"

#include <random>
#include <vector>

#include "editor/editor_state.h"
#include "forms/program.h"
#include "media/headless_media.h"
#include "store/program_store.h"

namespace fw {
namespace {

// The copy the explorer plays, beside the working file.
constexpr const char* kExploredCopy = "tmpexplore.ini";

// Time passes only as the explorer's program waits.
class StillClock : public Clock, public EventPump {
 public:
  double Now() override { return now_; }
  void Pump(Program&) override { now_ += 0.001; }

 private:
  double now_ = 10 * 3600;
};

// Every box is answered OK (a level gained); no file dialog opens, and
// nothing is started.
class NoOneAsks : public Dialogs, public Processes {
 public:
  int MsgBox(std::string_view, int, std::string_view) override { return 1; }
  std::optional<std::string> FileDialog(const FileDialogRequest&) override { return std::nullopt; }
  bool Start(const std::vector<std::string>&, int, const std::string&) override { return true; }
  void Open(std::string_view) override {}
};

// Draws of the explorer's own, so that the fights it tries leave the dice
// of the author's game alone. Each reseed differs, though the still clock
// gives the same seed many times over.
class OwnDraws : public Random {
 public:
  float Rnd() override { return static_cast<float>(generator_() >> 8) / 16777216.0f; }
  void Randomize(double seed) override {
    std::seed_seq seq{static_cast<std::uint32_t>(seed * 1000), ++reseeds_};
    generator_.seed(seq);
  }

 private:
  std::mt19937 generator_;
  std::uint32_t reseeds_ = 0;
};

// The program the explorer plays in, with every form of the author's.
struct ExplorerProgram {
  StillClock clock;
  NoOneAsks nobody;
  OwnDraws draws;
  HeadlessSequencer sequencer;
  HeadlessPlayers players;
  std::vector<FormDef> forms;
  std::unique_ptr<Program> program;

  explicit ExplorerProgram(Program& author) {
    FormSurface& s = author.surface();
    for (int i = 0; i < s.FormCount(); ++i) forms.push_back(s.Def(i));
    Services services{&clock, &clock, &nobody, &nobody, author.services().files, &draws, &sequencer, &players};
    AppInfo app{author.AppPath(), author.AppEXEName(), author.UserDir(), author.CurrentDir()};
    program = std::make_unique<Program>(services, std::move(app), forms);
  }
};

}  // namespace

std::optional<ExploreReport> ExploreWorkingFile(Program& p, const ExploreOptions& options) {
  if (!CopyProfileFile(p, kWorkingFile, kExploredCopy)) return std::nullopt;
  ExplorerProgram explorer(p);
  ExploreReport report = ExploreQuest(*explorer.program, kExploredCopy, options);
  Skip([&] { p.services().files->Remove(p.UserDir() + "/" + kExploredCopy); });
  return report;
}

}  // namespace fw
