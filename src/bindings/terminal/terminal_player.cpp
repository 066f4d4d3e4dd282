#include "bindings/terminal/terminal_player.h"

#include <chrono>
#include <filesystem>
#include <cmath>
#include <cstdio>
#include <memory>
#include <set>
#include <thread>

#include "bindings/terminal/terminal_io.h"
#include "forms/codepage.h"
#include "forms/program.h"
#include "forms/user_actions.h"
#include "media/headless_media.h"
#include "platform/real_services.h"
#include "play/transcript_echo.h"

namespace fw {
namespace {

constexpr const char* kHelp =
    "Type the number of an option to choose it.\n"
    "  look    show the page and its options again\n"
    "  open    open another quest file\n"
    "  save    save the game       load    load a saved game\n"
    "  items   list the key items  character  show the character\n"
    "  attack  strike in a battle  escape  run from it\n"
    "  On the character panel:\n"
    "  name TEXT  name the character   reroll  roll new numbers\n"
    "  create  commit the character    close   close the panel\n"
    "  save character, load character  keep it in a .cha file\n"
    "  about   the About box       news    what's new\n"
    "  update  run the auto-update\n"
    "  quit    leave the game\n"
    "  help    this list\n";

class TerminalGame {
 public:
  TerminalGame(const TerminalOptions& o, const ProgramMaker& make, int inputFd, std::FILE* out);
  int Run();

 private:
  // Runs what is due and says how long the input may wait for the next.
  std::optional<int> Idle();
  void Settle();  // lets the option timer catch up after an action
  void ListOptions();
  void ShowPanel();
  void Choose(int n);
  void Command(const std::string& line);
  bool PanelCommand(const std::string& line);
  void Click(const char* control);
  bool Reachable(const char* control);
  bool Shown(const char* control);
  std::string Text(const char* control);
  void ShowCharacter();
  void ShowItems();
  void TellNotices();
  void ShowWhatsNew();

  std::FILE* out_;
  IdlePump pump_;
  LineInput input_;
  TerminalDialogs dialogs_;
  HeadlessPlayers players_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<TranscriptEcho> echo_;
  std::string quest_;
  std::string panelShown_;  // the character panel as last printed
  std::set<std::string> noticesTold_;
};

TerminalGame::TerminalGame(const TerminalOptions& o, const ProgramMaker& make, int inputFd, std::FILE* out)
    : out_(out), input_(inputFd, [this] { return Idle(); }), dialogs_(input_, out), quest_(o.quest) {
  Services own{};
  own.pump = &pump_;
  own.dialogs = &dialogs_;
  own.players = &players_;
  program_ = make(own);
  echo_ = std::make_unique<TranscriptEcho>(*program_, [out](const std::string& text) {
    std::fputs(text.c_str(), out);
    std::fflush(out);
  });
  program_->surface().SetObserver(echo_.get());
}

std::optional<int> TerminalGame::Idle() {
  program_->RunEvent([&] { program_->RunDue(); });
  double next = program_->NextDue();
  if (!std::isfinite(next)) return std::nullopt;
  double wait = next - program_->Timer();
  return std::max(0, static_cast<int>(std::ceil(wait * 1000)));
}

void TerminalGame::Settle() {
  auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
  while (std::chrono::steady_clock::now() < until) {
    Idle();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}


void TerminalGame::ListOptions() {
  // The panels cover the options: say what can be done instead.
  if (Shown("CharCreate")) return ShowPanel();
  panelShown_.clear();
  if (Shown("BattleBox")) {
    std::fputs(Reachable("Picture8") ? "\n(A battle! Type attack or escape.)\n" : "\n(A battle! Type attack.)\n", out_);
    return;
  }
  if (!Shown("Option1") && !Shown("Option2") && !Shown("Option3") && !Shown("Option4")) {
    std::fputs("\n(No options. Type open, quit or help.)\n", out_);
    return;
  }
  std::fputs("\n", out_);
  for (int n = 1; n <= 4; ++n) {
    std::string option = "Option" + std::to_string(n);
    if (Shown(option.c_str())) std::fprintf(out_, "  %d. %s\n", n, Text(option.c_str()).c_str());
  }
}

// The character panel's fields when they changed, and what its buttons let
// the player do now.
void TerminalGame::ShowPanel() {
  std::string fields = "Name: " + Text("Text6") + "  Level: " + Text("Text7") + "\nHit Points: " + Text("Text5") +
                       "  Strength: " + Text("Text4") + "  Defence: " + Text("Text3") + "\n";
  std::fputs("\n", out_);
  if (fields != panelShown_) std::fputs(fields.c_str(), out_);
  panelShown_ = fields;
  std::string can = "name NAME";
  if (Shown("Command10")) can += ", reroll";
  if (Shown("Command9")) can += Reachable("Command9") ? ", create" : ", create (once every field is filled)";
  if (Reachable("Command3")) can += ", save character";
  if (Reachable("Command11")) can += ", load character";
  if (Reachable("Image12")) can += ", close";
  std::fprintf(out_, "(Character panel: %s.)\n", can.c_str());
}

void TerminalGame::Choose(int n) {
  FormSurface& s = program_->surface();
  ControlId option = n >= 1 && n <= 4 ? s.Id("FrmGame", "Option" + std::to_string(n)) : ControlId{};
  if (option.index < 0 || !s.Shown(option)) {
    std::fprintf(out_, "There is no option %d here.\n", n);
    return;
  }
  // An option is chosen as on screen: selected, then the choose button. A
  // panel over the page (the character, a battle) keeps both out of reach.
  ControlId choose = s.Id("FrmGame", "Picture1");
  if (!CannotAct(s, option, UserAction::Select).empty() || !CannotAct(s, choose, UserAction::Click).empty()) {
    std::fputs("That is not possible here.\n", out_);
    return;
  }
  Act(*program_, option, UserAction::Select);
  Act(*program_, choose, UserAction::Click);
}

// A click the player could make on screen or in the menu bar; refused when
// the control is hidden, disabled or covered by a panel.
void TerminalGame::Click(const char* control) {
  FormSurface& s = program_->surface();
  if (!Act(*program_, s.Id("FrmGame", control), UserAction::Click).empty())
    std::fputs("That is not possible here.\n", out_);
}

bool TerminalGame::Reachable(const char* control) {
  FormSurface& s = program_->surface();
  return s.Unreachable(s.Id("FrmGame", control)).empty();
}

bool TerminalGame::Shown(const char* control) {
  FormSurface& s = program_->surface();
  return s.Shown(s.Id("FrmGame", control));
}

// A control's caption or text, in UTF-8.
std::string TerminalGame::Text(const char* control) {
  FormSurface& s = program_->surface();
  return Utf8FromCp1252(s.At(s.Id("FrmGame", control)).caption);
}

void TerminalGame::ShowCharacter() {
  FormSurface& s = program_->surface();
  std::fprintf(out_, "Name: %s  Level: %s\nHit Points: %s  Strength: %s  Defence: %s\n", Text("Text6").c_str(),
               Text("Text7").c_str(), Text("Text5").c_str(), Text("Text4").c_str(), Text("Text3").c_str());
  // The gauges, as far as the game screen shows them.
  const Control& hp = s.At(s.Id("FrmGame", "HPPlay"));
  const Control& exp = s.At(s.Id("FrmGame", "exp"));
  if (hp.visible) std::fprintf(out_, "HP: %g of %g", hp.barValue, hp.barMax);
  if (exp.visible) std::fprintf(out_, "  Exp: %g of %g", exp.barValue, exp.barMax);
  if (hp.visible || exp.visible) std::fputs("\n", out_);
}

// Each failure the game went on after silently, told once.
void TerminalGame::TellNotices() {
  for (const std::string& notice : program_->TakeNotices())
    if (noticesTold_.insert(notice).second) std::fprintf(out_, "(%s)\n", Utf8FromCp1252(notice).c_str());
}

// What's New opens as its menu item opens it, is read out, and its OK puts
// it away again.
void TerminalGame::ShowWhatsNew() {
  FormSurface& s = program_->surface();
  if (!Act(*program_, s.Id("FrmGame", "mnunew"), UserAction::Click).empty()) {
    std::fputs("That is not possible here.\n", out_);
    return;
  }
  int updates = s.FindForm("FrmUpdates");
  if (updates < 0 || !s.IsLoaded(updates) || !s.Form(updates).visible) return;
  std::fprintf(out_, "\n%s\n%s", TerminalText(s.Form(updates).caption).c_str(),
               TerminalText(s.At(s.Id("FrmUpdates", "Text1")).caption).c_str());
  Act(*program_, s.Id("FrmUpdates", "Command1"), UserAction::Click);
}

void TerminalGame::ShowItems() {
  const Control& list = program_->surface().At(program_->surface().Id("FrmGame", "List1"));
  if (list.list.empty()) std::fputs("You carry no key items.\n", out_);
  for (const auto& item : list.list) std::fprintf(out_, "  %s\n", Utf8FromCp1252(item).c_str());
}

// The character, battle, inventory and saved game commands.
bool TerminalGame::PanelCommand(const std::string& line) {
  FormSurface& s = program_->surface();
  if (line == "save") Click("mnusave");
  else if (line == "load") Click("mnuload");
  else if (line == "items") ShowItems();
  else if (line == "character") ShowCharacter();
  else if (line == "create") Click("Command9");
  else if (line == "reroll") Click("Command10");
  else if (line == "close") Click("Image12");
  else if (line == "load character") Click("Command11");
  else if (line == "save character") Shown("CharCreate") ? Click("Command3") : Click("mnusavechar");
  else if (line == "attack") Click("Picture7");
  else if (line == "escape") Click("Picture8");
  else if (line.starts_with("name ")) {
    if (!Act(*program_, s.Id("FrmGame", "Text6"), UserAction::Type, Cp1252FromUtf8(line.substr(5))).empty())
      std::fputs("That is not possible here.\n", out_);
  } else return false;
  return true;
}

void TerminalGame::Command(const std::string& line) {
  FormSurface& s = program_->surface();
  if (PanelCommand(line)) {
  } else if (line == "help" || line == "h" || line == "?") {
    std::fputs(kHelp, out_);
  } else if (line == "look" || line == "l") {
    std::fprintf(out_, "\n%s\n", Utf8FromCp1252(s.At(s.Id("FrmGame", "room")).caption).c_str());
  } else if (line == "open" || line == "o") {
    Click("mnuloadquest");
  } else if (line == "about") {
    Click("mnuabout");
  } else if (line == "update") {
    Click("mnuauto");
  } else if (line == "news") {
    ShowWhatsNew();
  } else if (line == "quit" || line == "q") {
    CloseForm(*program_, s.FindForm("FrmGame"));
  } else if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) {
    Choose(std::stoi(line.substr(0, 2)));
  } else if (!line.empty()) {
    std::fputs("Type the number of an option, or help.\n", out_);
  }
}

int TerminalGame::Run() {
  program_->Start();
  if (!quest_.empty()) {
    dialogs_.Preanswer("FrmGame.questfile", quest_);
    // The quest named on the command line opens as Load Quest opens one,
    // even where the picture menu is not on screen (a packaged game).
    program_->RunEvent([&] {
      FormSurface& s = program_->surface();
      s.Raise(s.Id("FrmGame", "Image1"), Event::Click);
    });
  } else {
    std::fputs("No quest loaded. Type open to open a quest file.\n", out_);
  }
  while (!program_->Over()) {
    Settle();
    TellNotices();
    ListOptions();
    std::fputs("> ", out_);
    std::fflush(out_);
    auto line = input_.Next();
    if (!line) break;
    Command(*line);
  }
  std::fputs("\n", out_);
  return 0;
}

}  // namespace

int PlayInTerminal(const TerminalOptions& options, const ProgramMaker& make, int inputFd, std::FILE* out) {
  TerminalGame game(options, make, inputFd, out);
  return game.Run();
}

}  // namespace fw
