#include "bindings/web/web_page.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "bindings/web/web_bridge.h"
#include "bindings/web/web_windows.h"
#include "forms/codepage.h"
#include "play/transcript_echo.h"

namespace fw {
namespace {

// A frame: the loop runs the program's timers at most 60 times a second, as
// often as a player can see a change.
constexpr double kFrameMs = 16;
// The longest sleep of an idle page: any event of the player's wakes it sooner.
constexpr double kIdleMs = 60000;

std::vector<std::string> Fields(const std::string& text) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  for (std::size_t tab; (tab = text.find('\t', start)) != std::string::npos; start = tab + 1)
    fields.push_back(text.substr(start, tab - start));
  fields.push_back(text.substr(start));
  return fields;
}

bool IsAnswer(const std::vector<std::string>& f) { return f[0] == "answer" || f[0] == "file"; }

// Passes the surface's changes on to the page, and the transcript's growth
// to the screen reader's live region.
class PageObserver : public SurfaceObserver {
 public:
  PageObserver(WebWindows& windows, Program& program)
      : windows_(windows), echo_(program, [](const std::string& text) { web::Announce(text); }) {}
  void ControlChanged(ControlId id, Prop prop) override {
    windows_.ControlChanged(id, prop);
    echo_.ControlChanged(id, prop);
  }
  void FormChanged(int form, Prop prop) override { windows_.FormChanged(form, prop); }
  void FormLoaded(int form) override { windows_.FormLoaded(form); }
  void FormUnloaded(int form) override { windows_.FormUnloaded(form); }

 private:
  WebWindows& windows_;
  TranscriptEcho echo_;
};

}  // namespace

std::optional<std::vector<std::string>> PageEvents::Run(double ms) {
  // The first wait lets the browser run; after it, only what is queued.
  for (double wait = ms; auto text = web::WaitEvent(wait); wait = -1) {
    std::vector<std::string> fields = Fields(*text);
    if (IsAnswer(fields)) return fields;
    windows_->Dispatch(fields);
    if (program_->Over()) break;
  }
  return std::nullopt;
}

void PageEvents::Frame() {
  program_->RunEvent([this] { program_->RunDue(); });
  windows_->SendReach();
}

std::vector<std::string> PageEvents::Answer() {
  while (!program_->Over()) {
    Frame();
    if (auto answer = Run(Idle())) return *answer;
  }
  return {"cancel"};
}

double PageEvents::Idle() const {
  double wake = program_->NextWake();
  if (wake == std::numeric_limits<double>::infinity()) return kIdleMs;
  constexpr double kDayMs = 24 * 3600 * 1000.0;
  double ms = std::ceil((wake - program_->Now()) * 1000.0);
  if (ms < -kDayMs / 2) ms += kDayMs;  // due after midnight, when the clock starts again at 0
  return std::clamp(ms, kFrameMs, kIdleMs);
}

int PageDialogs::MsgBox(std::string_view prompt, int style, std::string_view title) {
  web::Json j;
  j.Open('{').Field("prompt", Utf8FromCp1252(prompt)).Field("title", Utf8FromCp1252(title)).Field("style", style);
  web::ShowMessageBox(j.Close('{').Text());
  std::vector<std::string> answer = events_.Answer();
  int button = answer.size() > 1 && answer[0] == "answer" ? std::atoi(answer[1].c_str()) : 0;
  if (style == 4) return button == 6 ? 6 : 7;
  return 1;
}

std::optional<std::string> PageDialogs::FileDialog(const FileDialogRequest& r) {
  web::Json j;
  j.Open('{').Flag("save", r.save).Field("filter", Utf8FromCp1252(r.filter));
  j.Field("defaultExt", Utf8FromCp1252(r.defaultExt)).Field("fileName", Utf8FromCp1252(r.fileName));
  j.Field("dialog", r.dialog);
  web::ShowFileChooser(j.Close('{').Text());
  std::vector<std::string> answer = events_.Answer();
  if (answer.size() < 2 || answer[0] != "file" || answer[1].empty()) return std::nullopt;
  return Cp1252FromUtf8(answer[1]);
}

void PageProcesses::Open(std::string_view target) { web::OpenAddress(Utf8FromCp1252(target)); }

bool PagePlayers::Load(Program& program, ControlId player, const std::string& file) {
  if (!HeadlessPlayers::Load(program, player, file)) return false;
  const ControlDecl& d = program.surface().Decl(player);
  web::MediaLoad(player.form, player.index, file, *d.parent != '\0');
  return true;
}

void PagePlayers::Unload(Program& program, ControlId player) {
  HeadlessPlayers::Unload(program, player);
  web::MediaUnload(player.form, player.index);
}

void PagePlayers::Play(Program& program, ControlId player, int playCount) {
  HeadlessPlayers::Play(program, player, playCount);
  web::MediaPlay(player.form, player.index, playCount != 1);
}

void PagePlayers::Stop(Program& program, ControlId player) {
  HeadlessPlayers::Stop(program, player);
  web::MediaStop(player.form, player.index);
}

bool PageSequencer::Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
                         std::uint32_t tune) {
  if (!HeadlessSequencer::Play(program, file, from, to, tune)) return false;
  web::TunePlay(file, from / 1000.0, to / 1000.0);
  return true;
}

void PageSequencer::Close(const std::string& file) {
  HeadlessSequencer::Close(file);
  web::TuneStop();
}

int RunInPage(const ProgramMaker& make, const PageOpening& opening) {
  SurfaceObserver detached;  // the program's observer once the page's have gone
  PageEvents events;
  PagePump pump(events);
  PageDialogs dialogs(events);
  PageProcesses processes;
  PagePlayers players;
  PageSequencer sequencer;
  Services own{};
  own.pump = &pump;
  own.dialogs = &dialogs;
  own.processes = &processes;
  own.players = &players;
  own.sequencer = &sequencer;
  std::unique_ptr<Program> program = make(own);
  WebWindows windows(*program);
  events.Attach(*program, windows);
  PageObserver observer(windows, *program);
  program->surface().SetObserver(&observer);
  program->Start();
  if (opening && !program->Over()) program->RunEvent([&] { opening(*program); });
  while (!program->Over()) {
    events.Frame();
    if (program->Over()) break;
    events.Run(events.Idle());
  }
  program->surface().SetObserver(&detached);
  web::Ended();
  return 0;
}

}  // namespace fw
