#include "bindings/headless/script_runner.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <ostream>
#include <map>
#include <memory>
#include <sstream>

#include "bindings/headless/headless_services.h"
#include "bindings/headless/script_parse.h"
#include "forms/codepage.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "forms/regular_file.h"
#include "forms/user_actions.h"
#include "media/midi_state.h"
#include "play/transcript_echo.h"
#include "shell/game_commands.h"
#include "store/program_store.h"

namespace fw {
namespace {

using Words = std::vector<std::string>;

// Shows a value on one line, with control characters spelled as escapes.
std::string Quoted(std::string_view cp1252) {
  std::string out = "\"";
  for (char c : Utf8FromCp1252(cp1252)) {
    if (c == '\r') out += "\\r";
    else if (c == '\n') out += "\\n";
    else if (c == '\t') out += "\\t";
    else if (c == '"' || c == '\\') out += std::string("\\") + c;
    else out += c;
  }
  return out + "\"";
}

// A whole number a script gives for a button, an entry or a style; nullopt
// for anything else, a number out of range included.
std::optional<int> WholeNumber(std::string_view text) {
  auto v = ParseNumber(text);
  if (!v || *v != std::floor(*v) || *v < -1e9 || *v > 1e9) return std::nullopt;
  return static_cast<int>(*v);
}

// Applies a comparison operator of the script language.
std::optional<bool> Compare(std::string_view actual, std::string_view op, std::string_view expected) {
  if (op == "==") return actual == expected;
  if (op == "!=") return actual != expected;
  if (op == "contains") return actual.find(expected) != std::string_view::npos;
  if (op == "startswith") return actual.starts_with(expected);
  if (op == "endswith") return actual.ends_with(expected);
  return std::nullopt;
}

class ScriptRunner {
 public:
  ScriptRunner(const std::string& path, const ScriptOptions& options, const ProgramMaker& make,
               std::ostream& out, std::ostream& err)
      : options_(options), out_(out), err_(err) {
    scriptDir_ = std::filesystem::absolute(path).parent_path().string();
    program_ = make(platform_.services());
    if (options.transcript) {
      echo_ = std::make_unique<TranscriptEcho>(*program_, [this](const std::string& text) { out_ << text << std::flush; });
      program_->surface().SetObserver(echo_.get());
      platform_.dialogs.onBox = [this](const ShownBox& b) {
        out_ << "\n[" << Utf8FromCp1252(b.title) << "] " << Utf8FromCp1252(b.prompt) << "\n";
      };
    }
  }

  int Run(std::string_view text);

 private:
  void Execute(const Words& w);
  void Queue(const Words& w);
  void UserCommand(const Words& w);
  static void Need(const Words& w, std::size_t n);
  void Start();
  ControlId ControlOf(const std::string& target);
  std::string Value(const std::string& target);
  std::string MidiField(const std::string& name);
  std::string ScriptPath(const std::string& path) const;
  void Expect(const Words& w);
  void Check(bool ok, const std::string& what, const std::string& actual);
  void Wait(double seconds);
  [[noreturn]] static void Error(const std::string& message) { throw ScriptError(message); }

  ScriptOptions options_;
  std::ostream& out_;
  std::ostream& err_;
  std::string scriptDir_;
  HeadlessPlatform platform_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<TranscriptEcho> echo_;
  bool started_ = false;
  int line_ = 0, passed_ = 0, failed_ = 0;
};

int ScriptRunner::Run(std::string_view text) {
  try {
    for (std::string_view raw : ScriptLines(text)) {
      ++line_;
      std::string line = SubstituteEnvironment(raw);
      std::size_t first = line.find_first_not_of(" \t");
      if (first == std::string::npos || line[first] == '#') continue;
      Execute(SplitWords(line));
    }
  } catch (const ScriptError& e) {
    out_.flush();
    err_ << "script error line " << line_ << ": " << e.what() << "\n";
    return 2;
  }
  if (options_.transcript) out_ << "\n";
  out_ << passed_ << " passed, " << failed_ << " failed\n";
  return failed_ == 0 ? 0 : 1;
}

void ScriptRunner::Start() {
  if (started_) return;
  started_ = true;
  program_->Start();
}

// Stops the run unless the command has n words.
void ScriptRunner::Need(const Words& w, std::size_t n) {
  if (w.size() != n) Error("'" + w[0] + "' takes " + std::to_string(n - 1) + " argument(s)");
}

void ScriptRunner::Execute(const Words& w) {
  const std::string& cmd = w[0];
  if (cmd == "answer" || cmd == "rnd") return Queue(w);
  if (cmd == "start") {
    Need(w, 1);
    if (started_) Error("the program has already started");
    return Start();
  }
  Start();
  if (cmd == "expect") return Expect(w);
  if (cmd == "print") {
    Need(w, 2);
    out_ << Utf8FromCp1252(Value(w[1])) << "\n";
    return;
  }
  if (cmd == "wait") {
    Need(w, 2);
    auto v = ParseNumber(w[1]);
    if (!v || *v < 0) Error("wait needs a number of seconds");
    return Wait(*v);
  }
  if (program_->Over()) Error("the program has ended");
  UserCommand(w);
}

// answer and rnd: what the next question, dialog or draw will get.
void ScriptRunner::Queue(const Words& w) {
  const std::string& cmd = w[0];
  if (cmd == "answer") {
    if (w.size() == 3 && w[1] == "msgbox") {
      auto v = WholeNumber(w[2]);
      if (!v) Error("answer msgbox needs a whole number");
      platform_.dialogs.QueueAnswer(*v);
    } else if (w.size() == 4 && w[1] == "dialog") {
      ControlOf(w[2]);  // the dialog must exist
      std::optional<std::string> path;
      if (w[3] != "cancel") path = Cp1252FromUtf8(ScriptPath(w[3]));
      platform_.dialogs.QueueFile(w[2], path);
    } else {
      Error("answer msgbox N | answer dialog FORM.DIALOG PATH|cancel");
    }
  } else if (cmd == "rnd") {
    if (w.size() < 2) Error("rnd needs at least one value");
    for (std::size_t i = 1; i < w.size(); ++i) {
      auto v = ParseNumber(w[i]);
      if (!v || *v < 0 || *v >= 1) Error("rnd values lie in [0, 1): " + w[i]);
      platform_.random.Queue(static_cast<float>(*v));
    }
  }
}

// The user's own actions on the controls.
void ScriptRunner::UserCommand(const Words& w) {
  const std::string& cmd = w[0];
  FormSurface& s = program_->surface();
  if (cmd == "close") {
    Need(w, 2);
    int form = s.FindForm(w[1]);
    if (form < 0) Error("unknown form " + w[1]);
    if (std::string why = CloseForm(*program_, form); !why.empty()) Error(w[1] + " " + why);
    return;
  }
  if (const GameCommand* game = FindGameCommand(cmd)) {
    if (w.size() > (game->dialog ? 2u : 1u)) Error("'" + cmd + "' takes " + (game->dialog ? "a file" : "no argument"));
    std::string file = w.size() == 2 ? Cp1252FromUtf8(ScriptPath(w[1])) : std::string();
    if (std::string why = RunGameCommand(*program_, *game, file); !why.empty()) Error(cmd + ": " + why);
    return;
  }
  if (cmd == "key") {
    Need(w, 3);
    int form = s.FindForm(w[1]);
    if (form < 0) Error("unknown form " + w[1]);
    if (std::string why = PressKey(*program_, form, w[2]); !why.empty()) Error(w[1] + " " + why);
    return;
  }
  static const std::map<std::string, std::pair<fw::UserAction, std::size_t>> kActions = {
      {"click", {UserAction::Click, 2}}, {"select", {UserAction::Select, 2}},
      {"type", {UserAction::Type, 3}},   {"check", {UserAction::Check, 3}},
      {"choose", {UserAction::Choose, 3}}, {"hover", {UserAction::Hover, 2}}};
  auto found = kActions.find(cmd);
  if (found == kActions.end()) Error("unknown command '" + cmd + "'");
  auto [action, words] = found->second;
  if (action == UserAction::Click && w.size() > 2) {
    ControlId id = ControlOf(w[1]);
    // click FORM.CONTROL at X Y: a point of a picture, in twips.
    auto x = w.size() == 5 && w[2] == "at" ? ParseNumber(w[3]) : std::nullopt;
    auto y = w.size() == 5 && w[2] == "at" ? ParseNumber(w[4]) : std::nullopt;
    if (!x || !y) Error("expected click FORM.CONTROL [at X Y]");
    if (std::string why = ClickAt(*program_, id, static_cast<float>(*x), static_cast<float>(*y)); !why.empty())
      Error(w[1] + " " + why);
    return;
  }
  Need(w, words);
  ControlId id = ControlOf(w[1]);
  std::string text;
  int value = 0;
  if (action == UserAction::Type) text = Cp1252FromUtf8(w[2]);
  if (action == UserAction::Check) {
    if (w[2] != "0" && w[2] != "1") Error("check takes 0 or 1");
    value = w[2][0] - '0';
  }
  if (action == UserAction::Choose) {
    auto i = WholeNumber(w[2]);
    if (!i) Error(w[1] + " has no entry " + w[2]);
    value = *i;
  }
  if (std::string why = Act(*program_, id, action, text, value); !why.empty()) Error(w[1] + " " + why);
}

ControlId ScriptRunner::ControlOf(const std::string& target) {
  std::size_t dot = target.find('.');
  if (dot == std::string::npos) Error("expected FORM.CONTROL, got " + target);
  FormSurface& s = program_->surface();
  int form = s.FindForm(target.substr(0, dot));
  if (form < 0) Error("unknown form " + target.substr(0, dot));
  ControlId id = s.FindControl(form, target.substr(dot + 1));
  if (id.index < 0) Error("unknown control " + target);
  return id;
}

std::string ScriptRunner::Value(const std::string& target) {
  auto t = ParseTarget(target);
  if (!t) Error("not a property: " + target);
  if (t->form == "MidiAPI" && t->control.empty()) return MidiField(t->property);
  FormSurface& s = program_->surface();
  int form = s.FindForm(t->form);
  if (form < 0) Error("unknown form " + t->form);
  auto prop = PropFromName(t->property);
  if (!prop) Error("unknown property " + t->property);
  try {
    if (t->control.empty()) return FormatValue(s.GetForm(form, *prop));
    ControlId id = s.FindControl(form, t->control);
    if (id.index < 0) Error("unknown control " + t->form + "." + t->control);
    return FormatValue(s.Get(id, *prop, t->index));
  } catch (const std::invalid_argument& e) {
    Error(e.what());
  }
}

// The module fields of the MIDI voice, shown as a form of their own.
std::string ScriptRunner::MidiField(const std::string& name) {
  const MidiApiState& m = Midi(*program_);
  if (name == "MidiFile") return m.MidiFile;
  if (name == "MidiOpen") return FormatValue(m.MidiOpen);
  if (name == "MidiRepeat") return FormatValue(m.MidiRepeat);
  if (name == "MidiFrom") return NumberText(m.MidiFrom);
  if (name == "MidiTo") return NumberText(m.MidiTo);
  if (name == "MidiWindow") return NumberText(m.MidiWindow);
  Error("MidiAPI has no field " + name);
}

std::string ScriptRunner::ScriptPath(const std::string& path) const {
  std::filesystem::path p(path);
  return p.is_absolute() ? path : (std::filesystem::path(scriptDir_) / p).lexically_normal().string();
}

void ScriptRunner::Check(bool ok, const std::string& what, const std::string& actual) {
  if (ok) {
    ++passed_;
    return;
  }
  ++failed_;
  out_ << "FAIL line " << line_ << ": " << what << "; actual " << actual << "\n";
}

void ScriptRunner::Expect(const Words& w) {
  auto usage = [] { Error("expect TARGET OP \"value\" | ini PATH SECTION KEY OP \"value\" | msgbox ... | nomsgbox | file PATH exists|absent | ended"); };
  if (w.size() < 2) usage();
  const std::string& what = w[1];
  if (what == "ended" && w.size() == 2) {
    return Check(program_->Over(), "expect ended", "still running");
  }
  if (what == "nomsgbox" && w.size() == 2) {
    auto& boxes = platform_.dialogs.unchecked();
    std::string actual = boxes.empty() ? "" : Quoted(boxes.front().prompt);
    Check(boxes.empty(), "expect nomsgbox", "a box " + actual);
    boxes.clear();
    return;
  }
  if (what == "msgbox") {
    if (w.size() < 3) usage();
    std::string prompt = Cp1252FromUtf8(w[2]);
    std::optional<int> style;
    std::optional<std::string> title;
    for (std::size_t i = 3; i < w.size(); i += 2) {
      if (i + 1 >= w.size()) usage();
      if (w[i] == "style") style = WholeNumber(w[i + 1]).value_or(-1);
      else if (w[i] == "title") title = Cp1252FromUtf8(w[i + 1]);
      else usage();
    }
    auto& boxes = platform_.dialogs.unchecked();
    if (boxes.empty()) return Check(false, "expect msgbox " + Quoted(prompt), "no message box");
    ShownBox box = boxes.front();
    boxes.pop_front();
    bool ok = box.prompt == prompt && (!style || *style == box.style) && (!title || *title == box.title);
    return Check(ok, "expect msgbox " + Quoted(prompt),
                 Quoted(box.prompt) + " style " + std::to_string(box.style) + " title " + Quoted(box.title));
  }
  if (what == "file") {
    if (w.size() != 4 || (w[3] != "exists" && w[3] != "absent")) usage();
    bool exists = std::filesystem::exists(ScriptPath(w[2]));
    return Check(exists == (w[3] == "exists"), "expect file " + w[2] + " " + w[3],
                 exists ? "exists" : "absent");
  }
  std::string actual, name;
  std::size_t opAt;
  if (what == "ini") {
    if (w.size() != 7) usage();
    actual = ReadINI(*program_, Cp1252FromUtf8(w[2]), Cp1252FromUtf8(w[3]), Cp1252FromUtf8(w[4]));
    name = "ini " + w[2] + " [" + w[3] + "] " + w[4];
    opAt = 5;
  } else {
    if (w.size() != 4) usage();
    actual = Value(what);
    name = what;
    opAt = 2;
  }
  std::string expected = Cp1252FromUtf8(w[opAt + 1]);
  auto ok = Compare(actual, w[opAt], expected);
  if (!ok) Error("unknown comparison " + w[opAt]);
  Check(*ok, name + " " + w[opAt] + " " + Quoted(expected), Quoted(actual));
}

void ScriptRunner::Wait(double seconds) {
  VirtualClock& clock = platform_.clock;
  double target = clock.Now() + seconds;
  for (;;) {
    double next = program_->NextDue();
    if (program_->Over() || next > target) break;
    if (next > clock.Now()) clock.Set(next);
    program_->RunEvent([&] { program_->RunDue(); });
  }
  if (target > clock.Now()) clock.Set(target);
}

}  // namespace

int RunScript(const std::string& scriptPath, const ScriptOptions& options, const ProgramMaker& make,
              std::ostream& out, std::ostream& err) {
  std::error_code ec;
  if (std::filesystem::is_directory(scriptPath, ec)) {
    err << "fablewright: " << scriptPath << " is a folder, not a script file\n";
    return 2;
  }
  auto text = ReadRegularFile(scriptPath);
  if (!text) {
    err << "fablewright: cannot read script " << scriptPath << "\n";
    return 2;
  }
  ScriptRunner runner(scriptPath, options, make, out, err);
  return runner.Run(*text);
}

}  // namespace fw
