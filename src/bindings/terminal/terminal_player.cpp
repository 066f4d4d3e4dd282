#include "bindings/terminal/terminal_player.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <thread>
#include <utility>

#include "bindings/terminal/terminal_io.h"
#include "bindings/terminal/text_lines.h"
#include "forms/codepage.h"
#include "forms/program.h"
#include "forms/user_actions.h"
#include "media/headless_media.h"
#include "media/page_media.h"
#include "platform/real_services.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/transcript_echo.h"
#include "shell/game_commands.h"
#include "shell/small_forms.h"

namespace fw {
namespace {

// One command a line, so that a screen reader reads each on its own.
constexpr const char* kHelpFirst =
    "Type the number of an option to choose it, or one of these:\n"
    "  look: the place, the page and its options again\n"
    "  score: the score\n"
    "  status: the place and the score\n"
    "  items: the key items you carry\n"
    "  character: the character and its gauges\n"
    "  attack, escape: strike in a battle, or run from it\n"
    "  save, load: save the game, or load a saved one\n"
    "  open: open another quest file\n";

// After the Game menu's commands.
constexpr const char* kHelpRest =
    "  about: who made the game\n"
    "  news: what's new in this version\n"
    "  update: look for a newer version\n"
    "  quit: leave the game\n"
    "  help: this list\n"
    "On the character panel:\n"
    "  name TEXT: name the character\n"
    "  reroll: roll new numbers\n"
    "  create: commit the character\n"
    "  close: close the panel\n"
    "  save character, load character: keep the character in a .cha file\n"
    "  (a character can be loaded only until one is created in this run)\n"
    "At a terminal the arrow keys recall earlier commands, and Tab completes them.\n";

constexpr const char* kNotHere = "That is not possible here.\n";

// Hands the transcript on, and tells the game when a battle panel closes.
class GameWatch : public SurfaceObserver {
 public:
  GameWatch(Program& p, TranscriptEcho& echo, std::function<void()> battleOver)
      : echo_(echo), battleBox_(p.surface().Id("FrmGame", "BattleBox")), battleOver_(std::move(battleOver)) {}
  void ControlChanged(ControlId id, Prop prop) override {
    echo_.ControlChanged(id, prop);
    if (id == battleBox_ && prop == Prop::Visible) battleOver_();
  }

 private:
  TranscriptEcho& echo_;
  ControlId battleBox_;
  std::function<void()> battleOver_;
};

// DoEvents at the terminal: a short sleep, so that a pause does not spin.
// The terminal shows the splash as its words, which are read at once, so it
// goes on as a key on the splash lets the player on.
class TerminalPump : public EventPump {
 public:
  void Pump(Program& p) override {
    FormSurface& s = p.surface();
    int splash = s.FindForm("FrmSplash");
    if (!splashPassed_ && splash >= 0 && s.IsLoaded(splash) && s.Form(splash).visible)
      splashPassed_ = ClickForm(p, splash).empty();
    idle_.Pump(p);
  }

 private:
  IdlePump idle_;
  bool splashPassed_ = false;
};

class TerminalGame {
 public:
  TerminalGame(const TerminalOptions& o, const ProgramMaker& make, int inputFd, std::FILE* out);
  int Run();

 private:
  // Runs what is due and says how long the input may wait for the next.
  std::optional<int> Idle();
  void Settle();  // lets the option timer catch up after an action
  void ListOptions();
  void TellMovie();
  void AwaitMovie();
  void ShowPanel();
  void ShowBattle();
  void BattleOver();
  void ShowScore(bool always);
  void Look();
  void Choose(int n);
  void Command(const std::string& line);
  bool PanelCommand(const std::string& words, const std::string& line);
  bool GameMenu(const std::string& words, const std::string& line);
  void Click(const char* control);
  void SaveCharacter();
  void LoadCharacter();
  bool Reachable(const char* control);
  bool Shown(const char* control);
  std::string Text(const char* control);
  std::string Standing();
  std::string Status();
  bool QuestOpen();
  void ShowCharacter();
  void ShowItems();
  void TellNotices();
  void ShowWhatsNew();

  TerminalOut out_;
  TypedText typed_;
  TerminalPump pump_;
  std::unique_ptr<LineInput> input_;
  TerminalDialogs dialogs_;
  HeadlessPlayers players_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<TranscriptEcho> echo_;
  std::unique_ptr<GameWatch> watch_;
  std::function<void(Program&)> opening_;
  std::string panelShown_;     // the character panel as last printed
  std::string standingShown_;  // both sides of the fight as last printed
  std::string scoreShown_;     // the score as last printed
  bool atEnding_ = false;      // the last prompt was at a page without options
  bool movieTold_ = false;     // the movie over the page has been told of
  std::set<std::string> noticesTold_;
};

TerminalGame::TerminalGame(const TerminalOptions& o, const ProgramMaker& make, int inputFd, std::FILE* out)
    : out_(out),
      typed_(out_),
      input_(MakeLineInput(inputFd, out_, [this] { return Idle(); })),
      dialogs_(*input_, out_, typed_),
      opening_(o.opening) {
  Services own{};
  own.pump = &pump_;
  own.dialogs = &dialogs_;
  own.players = &players_;
  program_ = make(own);
  echo_ = std::make_unique<TranscriptEcho>(*program_, [this](const std::string& text) { out_.Write(text); });
  watch_ = std::make_unique<GameWatch>(*program_, *echo_, [this] { BattleOver(); });
  program_->surface().SetObserver(watch_.get());
}

std::optional<int> TerminalGame::Idle() {
  program_->RunEvent([&] { program_->RunDue(); });
  double next = program_->NextDue();
  if (!std::isfinite(next)) return std::nullopt;
  // At most a second at a time: a media length read from a file can be
  // absurd, and past midnight the clock starts again from 0.
  double wait = next - program_->Timer();
  return static_cast<int>(std::clamp(std::ceil(wait * 1000), 0.0, 1000.0));
}

// The option timer ticks every 10 ms: once the clock has passed that, one
// more round of what is due has run it, however late a busy machine wakes
// the loop. Waiting longer only delays the prompt.
void TerminalGame::Settle() {
  auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(11);
  for (;;) {
    bool past = std::chrono::steady_clock::now() >= until;
    Idle();
    if (past) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

// What the screen offers now. The page's own line is still open, so this
// starts with a line break.
void TerminalGame::ListOptions() {
  // The panels cover the options: say what can be done instead.
  bool endingSeen = std::exchange(atEnding_, false);
  if (Shown("CharCreate")) return ShowPanel();
  panelShown_.clear();
  if (Shown("BattleBox")) return ShowBattle();
  out_.Write("\n");
  if (Shown("lblTheEnd")) {
    // The final score comes with the ending once, and again if it changes.
    atEnding_ = true;
    ShowScore(!endingSeen);
    out_.Printf("%s\n%s\n", Text("lblTheEnd").c_str(),
                Reachable("mnuloadquest") ? "(Type restart, open, quit or help.)" : "(Type restart, quit or help.)");
  } else if (!Shown("Option1") && !Shown("Option2") && !Shown("Option3") && !Shown("Option4")) {
    ShowScore(false);
    out_.Write("(No options. Type open, quit or help.)\n");
  } else {
    ShowScore(false);
    // Each option by the window's key for it, so that a number typed does
    // what that key does there.
    const FormDecl& game = program_->surface().Table(program_->surface().FindForm("FrmGame"));
    for (int n = 1; n <= 4; ++n) {
      std::string option = "Option" + std::to_string(n);
      const char* key = KeyOf(game, option);
      if (key && Shown(option.c_str())) out_.Printf("  %s. %s\n", key, Text(option.c_str()).c_str());
    }
  }
  TellMovie();
}

// A movie covers the page until it ends by itself; the terminal cannot show
// it, so it says so, once a movie.
void TerminalGame::TellMovie() {
  std::optional<MovieCover> movie = MovieOverPage(*program_);
  if (!movie) {
    movieTold_ = false;
    return;
  }
  if (std::exchange(movieTold_, true)) return;
  if (movie->secondsLeft) out_.Printf("(a movie plays: %.1f s)\n", *movie->secondsLeft);
  else out_.Write("(a movie plays)\n");
}

// An option chosen while the movie plays waits for its end, then is taken
// as it would be on the page. The menus stay live meanwhile, as in the window.
void TerminalGame::AwaitMovie() {
  while (!program_->Over() && MovieOverPage(*program_)) {
    std::optional<int> wait = Idle();
    std::this_thread::sleep_for(std::chrono::milliseconds(std::clamp(wait.value_or(1000), 1, 1000)));
  }
  movieTold_ = false;
}

// The score where it changed, or always (at an ending).
void TerminalGame::ShowScore(bool always) {
  std::string score = Text("score");
  if (!always && score == scoreShown_) return;
  scoreShown_ = score;
  out_.Printf("%s %s\n", Text("Label1").c_str(), score.c_str());
}

// Both sides of a fight, named as the battle panel's labels name them.
std::string TerminalGame::Standing() {
  return Text("Label4") + " " + Text("Label6") + "   " + Text("Label3") + " " + Text("Label5");
}

// Where the player stands and the score, as the prompt shows them at a
// terminal: "Gatehouse · 40".
std::string TerminalGame::Status() {
  std::string place = Utf8FromCp1252(CurrentLocation(*program_));
  return (place.empty() ? std::string() : place + " \u00b7 ") + Text("score");
}

void TerminalGame::ShowBattle() {
  standingShown_ = Standing();
  out_.Write("\n");
  ShowScore(false);  // the option that led into the fight may have scored
  out_.Printf("%s\n", standingShown_.c_str());
  out_.Write(Reachable("Picture8") ? "(A battle! Type attack or escape.)\n" : "(A battle! Type attack.)\n");
}

// The last round's result, when the panel closes on it: its log line is
// still open and the next page follows on a line of its own.
void TerminalGame::BattleOver() {
  if (Shown("BattleBox") || standingShown_.empty()) return;
  std::string standing = Standing();
  if (standing != standingShown_) out_.Printf("\n%s", standing.c_str());
  standingShown_.clear();
}

// The character panel's fields when they changed, and what its buttons let
// the player do now.
void TerminalGame::ShowPanel() {
  std::string fields = "Name: " + Text("Text6") + "  Level: " + Text("Text7") + "\nHit Points: " + Text("Text5") +
                       "  Strength: " + Text("Text4") + "  Defence: " + Text("Text3") + "\n";
  out_.Write("\n");
  if (fields != panelShown_) out_.Write(fields);
  panelShown_ = fields;
  std::string can = "name NAME";
  if (Shown("Command10")) can += ", reroll";
  if (Shown("Command9")) can += Reachable("Command9") ? ", create" : ", create (once every field is filled)";
  if (Reachable("Command3")) can += ", save character";
  if (Reachable("Command11")) can += ", load character";
  if (Reachable("Image12")) can += ", close";
  out_.Printf("(Character panel: %s.)\n", can.c_str());
}

void TerminalGame::Look() {
  if (!QuestOpen()) {
    out_.Write("No quest loaded. Type open to open a quest file.\n");
    return;
  }
  std::string location = Utf8FromCp1252(CurrentLocation(*program_));
  out_.Write("\n");
  if (!location.empty()) out_.Printf("%s\n", location.c_str());
  out_.Printf("%s\n", Text("room").c_str());
}

void TerminalGame::Choose(int n) {
  FormSurface& s = program_->surface();
  std::vector<ControlId> keyed = KeyControls(s, s.FindForm("FrmGame"), std::to_string(n));
  ControlId option = keyed.empty() ? ControlId{} : keyed.front();
  if (option.index < 0 || !s.Shown(option)) {
    out_.Printf("There is no option %d here.\n", n);
    return;
  }
  AwaitMovie();
  // An option is chosen as on screen: selected, then the choose button. A
  // panel over the page (the character, a battle) keeps both out of reach.
  ControlId choose = s.Id("FrmGame", "Picture1");
  if (!CannotAct(s, option, UserAction::Select).empty() || !CannotAct(s, choose, UserAction::Click).empty()) {
    out_.Write(kNotHere);
    return;
  }
  Act(*program_, option, UserAction::Select);
  Act(*program_, choose, UserAction::Click);
}

// A click the player could make on screen or in the menu bar; refused when
// the control is hidden, disabled or covered by a panel.
void TerminalGame::Click(const char* control) {
  FormSurface& s = program_->surface();
  if (!Act(*program_, s.Id("FrmGame", control), UserAction::Click).empty()) out_.Write(kNotHere);
}

// The program says nothing when a character file was written; the terminal
// does, when the file dialog was answered and no box told of a failure.
void TerminalGame::SaveCharacter() {
  int boxes = dialogs_.boxesShown();
  dialogs_.ForgetLastPath();
  Shown("CharCreate") ? Click("Command3") : Click("mnusavechar");
  if (!dialogs_.lastPath() || dialogs_.boxesShown() != boxes) return;
  FormSurface& s = program_->surface();
  out_.Printf("Character saved in %s.\n", Utf8FromCp1252(s.At(s.Id("FrmGame", "charfile")).fileName).c_str());
}

// Load Character stays greyed out once a character was created, for the
// rest of the run; the window shows that, the terminal says it.
void TerminalGame::LoadCharacter() {
  FormSurface& s = program_->surface();
  if (!s.At(s.Id("FrmGame", "Command11")).enabled)
    out_.Write("Load character is no longer offered: a character is loaded only until one is created in this run.\n");
  else
    Click("Command11");
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

bool TerminalGame::QuestOpen() {
  FormSurface& s = program_->surface();
  return s.At(s.Id("FrmGame", "questfil")).caption != kNoQuest;
}

void TerminalGame::ShowCharacter() {
  FormSurface& s = program_->surface();
  out_.Printf("Name: %s  Level: %s\nHit Points: %s  Strength: %s  Defence: %s\n", Text("Text6").c_str(),
              Text("Text7").c_str(), Text("Text5").c_str(), Text("Text4").c_str(), Text("Text3").c_str());
  // The gauges, as far as the game screen shows them: the panel covers
  // them until the character is made.
  const Control& hp = s.At(s.Id("FrmGame", "HPPlay"));
  const Control& exp = s.At(s.Id("FrmGame", "exp"));
  bool hpSeen = Reachable("HPPlay"), expSeen = Reachable("exp");
  if (hpSeen) out_.Printf("HP: %g of %g", hp.barValue, hp.barMax);
  if (expSeen) out_.Printf("%sExp: %g of %g", hpSeen ? "  " : "", exp.barValue, exp.barMax);
  if (hpSeen || expSeen) out_.Write("\n");
}

// Each failure the game went on after silently, told once.
void TerminalGame::TellNotices() {
  for (const std::string& notice : program_->TakeNotices())
    if (noticesTold_.insert(notice).second) out_.Printf("(%s)\n", Utf8FromCp1252(notice).c_str());
}

// What's New opens as its menu item opens it, is read out, and its OK puts
// it away again.
void TerminalGame::ShowWhatsNew() {
  FormSurface& s = program_->surface();
  if (!Act(*program_, s.Id("FrmGame", "mnunew"), UserAction::Click).empty()) {
    out_.Write(kNotHere);
    return;
  }
  int updates = s.FindForm("FrmUpdates");
  if (updates < 0 || !s.IsLoaded(updates) || !s.Form(updates).visible) return;
  out_.Printf("\n%s\n%s", TerminalText(s.Form(updates).caption).c_str(),
              TerminalText(s.At(s.Id("FrmUpdates", "Text1")).caption).c_str());
  Act(*program_, s.Id("FrmUpdates", "Command1"), UserAction::Click);
}

void TerminalGame::ShowItems() {
  const Control& list = program_->surface().At(program_->surface().Id("FrmGame", "List1"));
  if (list.list.empty()) out_.Write("You carry no key items.\n");
  for (const auto& item : list.list) out_.Printf("  %s\n", Utf8FromCp1252(item).c_str());
}

// The character, battle, inventory and saved game commands. words is the
// line made comparable; line as typed, for the name.
bool TerminalGame::PanelCommand(const std::string& words, const std::string& line) {
  FormSurface& s = program_->surface();
  if (words == "save") Click("mnusave");
  else if (words == "load") Click("mnuload");
  else if (words == "items") ShowItems();
  else if (words == "character") ShowCharacter();
  else if (words == "create") Click("Command9");
  else if (words == "reroll") Click("Command10");
  else if (words == "close") Click("Image12");
  else if (words == "load character") LoadCharacter();
  else if (words == "save character") SaveCharacter();
  else if (words == "attack") Click("Picture7");
  else if (words == "escape") Click("Picture8");
  else if (words == "name") out_.Write("Type name and then the character's name.\n");
  else if (words.starts_with("name ")) {
    std::string_view typed = Trimmed(line);
    std::string name = typed_(Trimmed(typed.substr(typed.find_first_of(" \t"))));
    if (!Act(*program_, s.Id("FrmGame", "Text6"), UserAction::Type, name).empty()) out_.Write(kNotHere);
  } else return false;
  return true;
}

// The Game menu's commands; one that takes a file has it after the word,
// as typed.
bool TerminalGame::GameMenu(const std::string& words, const std::string& line) {
  std::string word = words.substr(0, words.find(' '));
  const GameCommand* game = FindGameCommand(word);
  if (!game || (!game->dialog && word != words)) return false;
  std::string file;
  if (word != words) {
    std::string_view typed = Trimmed(line);
    file = typed_(Trimmed(typed.substr(typed.find_first_of(" \t"))));
  }
  if (std::string why = RunGameCommand(*program_, *game, file); !why.empty()) out_.Printf("%s\n", why.c_str());
  return true;
}

void TerminalGame::Command(const std::string& line) {
  FormSurface& s = program_->surface();
  std::string words = CommandWords(line);
  if (PanelCommand(words, line)) {
  } else if (words == "help" || words == "h" || words == "?") {
    out_.Write(kHelpFirst);
    for (const GameCommand& c : kGameCommands) out_.Printf("  %s%s: %s\n", c.word, c.dialog ? " FILE" : "", c.help);
    out_.Write(kHelpRest);
  } else if (words == "look" || words == "l") {
    Look();
  } else if (words == "score") {
    ShowScore(true);
  } else if (words == "status") {
    if (QuestOpen()) out_.Printf("%s\n", Status().c_str());
    else out_.Write("No quest loaded.\n");
  } else if (words == "open" || words == "o") {
    Click("mnuloadquest");
  } else if (words == "about") {
    Click("mnuabout");
  } else if (words == "update") {
    Click("mnuauto");
  } else if (words == "news") {
    ShowWhatsNew();
  } else if (GameMenu(words, line)) {
  } else if (words == "quit" || words == "q") {
    CloseForm(*program_, s.FindForm("FrmGame"));
  } else if (!words.empty() && words.find_first_not_of("0123456789") == std::string::npos) {
    Choose(std::stoi(words.substr(0, 2)));
  } else if (!words.empty()) {
    out_.Write("Type the number of an option, or help.\n");
  }
}

int TerminalGame::Run() {
  // What program this is, in the splash's words; the splash itself passes.
  out_.Printf("%s\n", kSplashText);
  echo_->SkipOpeningText();
  program_->Start();
  scoreShown_ = Text("score");
  if (opening_) {
    program_->RunEvent([&] { opening_(*program_); });
  } else {
    out_.Write("No quest loaded. Type open to open a quest file.\n");
  }
  while (!program_->Over()) {
    Settle();
    TellNotices();
    ListOptions();
    auto line = input_->Next(input_->AtTerminal() && QuestOpen() ? Status() + " > " : "> ", Asking::Command);
    if (!line) break;
    Command(*line);
  }
  out_.Write("\n");
  out_.Flush();
  return 0;
}

}  // namespace

int PlayInTerminal(const TerminalOptions& options, const ProgramMaker& make, int inputFd, std::FILE* out) {
  TerminalGame game(options, make, inputFd, out);
  return game.Run();
}

}  // namespace fw
