#include "play/undo.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "forms/controls.h"
#include "forms/program.h"
#include "media/midi_api.h"
#include "media/midi_state.h"
#include "media/page_media.h"
#include "play/autosave.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/transcript.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

// A file as it was before the step first wrote it.
struct FileBefore {
  std::string path;
  std::string bytes;
};

// What one step changed, as it was before: only the controls that differ
// afterwards, so that a step costs what it changed.
struct Step {
  std::vector<std::pair<int, Control>> controls;  // index on the game window, values before
  MidiApiState midi;
  std::vector<FileBefore> files;
};

struct UndoModule {
  std::deque<Step> steps;
  bool recording = false;
  bool forgotten = false;        // the step being recorded loaded a quest or a game
  // The game window as the last step left it, or (while recording) as the
  // step found it: a step copies only what differs from it.
  std::vector<Control> before;
  bool beforeHeld = false;
  std::vector<FileBefore> files;  // what the step being recorded wrote, as it was
  // Whether the open quest turns undo off, read once a quest.
  std::string offQuest;
  bool offRead = false;
  bool off = false;
};

UndoModule& Module(Program& p) { return p.Module<UndoModule>(); }

bool UndoOff(Program& p) {
  UndoModule& m = Module(p);
  GameState g(p);
  const std::string& quest = g.questfil.Caption();
  if (quest == kNoQuest) return false;
  if (!m.offRead || m.offQuest != quest) {
    m.off = QuestKey(p, g, "Story Info", kNoUndoKey) == "1";
    m.offQuest = quest;
    m.offRead = true;
  }
  return m.off;
}

// Whether two copies of a control hold the same values a player or a
// binding can see. A timer's count and where a click fell are not kept.
bool SameValues(const Control& a, const Control& b) {
  return a.caption == b.caption && a.visible == b.visible && a.enabled == b.enabled && a.left == b.left &&
         a.top == b.top && a.width == b.width && a.height == b.height && a.optionValue == b.optionValue &&
         a.checkValue == b.checkValue && a.list == b.list && a.listIndex == b.listIndex &&
         a.barValue == b.barValue && a.barMax == b.barMax && a.picture == b.picture && a.selStart == b.selStart &&
         a.fileName == b.fileName && a.initDir == b.initDir && a.playCount == b.playCount;
}

// Brings `before` up to the game window as it is now, but for the
// transcript's text, which only grows and is never taken back. What changed
// since the last step ended (an option selected, a panel opened) belongs to
// that step: undoing it puts those back too.
void CatchUp(UndoModule& m, FormState& f, int transcript, int menu) {
  if (!m.beforeHeld) {
    std::string text = std::move(f.controls[transcript].caption);
    f.controls[transcript].caption.clear();
    try {
      m.before.assign(f.controls.begin(), f.controls.end());
    } catch (...) {
      f.controls[transcript].caption = std::move(text);
      throw;
    }
    f.controls[transcript].caption = std::move(text);
    m.beforeHeld = true;
    return;
  }
  for (int i = 0; i < static_cast<int>(f.controls.size()); ++i) {
    if (i == transcript || i == menu || SameValues(m.before[i], f.controls[i])) continue;
    if (!m.steps.empty()) {
      auto& kept = m.steps.back().controls;
      bool known = std::any_of(kept.begin(), kept.end(), [i](const auto& c) { return c.first == i; });
      if (!known) kept.emplace_back(i, m.before[i]);
    }
    m.before[i] = f.controls[i];
  }
}

void NoteWrite(Program& p, std::string_view path) {
  UndoModule& m = Module(p);
  for (const FileBefore& f : m.files)
    if (SameINIFile(p, f.path, path)) return;
  // A file the step makes has nothing to go back to.
  if (auto text = ReadINIText(p, path)) m.files.push_back({std::string(path), std::move(*text)});
}

bool SameMidi(const MidiApiState& a, const MidiApiState& b) {
  return a.MidiOpen == b.MidiOpen && a.MidiFile == b.MidiFile;
}

void ShowUndoable(Program& p) {
  Skip([&] { Menu(p.surface(), kForm, "mnuundo").SetEnabled(WhyNoUndo(p).empty()); });
}

// Ends the recording however the handler ends (End, a failure).
class Recording {
 public:
  explicit Recording(Program& p) : p_(p), m_(Module(p)) {
    m_.recording = true;
    m_.forgotten = false;
    m_.files.clear();
    WatchINIWrites(p, NoteWrite);
  }
  ~Recording() {
    WatchINIWrites(p_, nullptr);
    m_.recording = false;
    // A handler cut short (End, a failure) leaves the copy behind the window.
    if (std::uncaught_exceptions() > 0) m_.beforeHeld = false;
  }

 private:
  Program& p_;
  UndoModule& m_;
};

// The tune and the track as the restored page had them, started again
// where the step changed them; a movie the step began stops.
void RestoreMedia(Program& p, const Step& step, int mp3, int movie) {
  if (!SameMidi(step.midi, Midi(p))) {
    if (step.midi.MidiOpen) {
      StartMidi(p, step.midi.MidiFile, true, FormHandle(p.surface(), kForm).hWnd());
    } else {
      // A tune that had ended: the voice stays closed, with its fields as they were.
      Command2_Click(p);
      MidiApiState& now = Midi(p);
      now.MidiFile = step.midi.MidiFile;
      now.MidiRepeat = step.midi.MidiRepeat;
      now.MidiFrom = step.midi.MidiFrom;
      now.MidiTo = step.midi.MidiTo;
    }
  }
  for (const auto& kept : step.controls) {
    // Named, not bound: a lambda may not take a structured binding everywhere.
    const int index = kept.first;
    const Control& before = kept.second;
    if (index == mp3) {
      PlayMp3(p, before.fileName);
      Skip([&] { MediaPlayer(p.surface(), kForm, "playmp3").SetPlayCount(before.playCount); });
    } else if (index == movie) {
      MediaPlayer player(p.surface(), kForm, "Movie");
      Skip([&] { player.Stop(); });
      Skip([&] { player.SetFileName(before.fileName); });
    }
  }
}

}  // namespace

void RecordStep(Program& p, PlainHandler handler) {
  UndoModule& m = Module(p);
  if (m.recording || UndoOff(p)) return handler(p);
  FormSurface& s = p.surface();
  int form = s.FindForm(kForm);
  FormState& f = s.Form(form);
  int transcript = s.FindControl(form, "Text1").index;
  int menu = s.FindControl(form, "mnuundo").index;
  CatchUp(m, f, transcript, menu);
  MidiApiState midi = Midi(p);
  long changes = s.ChangeCount();
  Step step;
  {
    Recording recording(p);
    handler(p);
    step.files = std::move(m.files);
  }
  if (m.forgotten) {
    m.beforeHeld = false;
    return;
  }
  if (s.ChangeCount() == changes && step.files.empty()) return;
  for (int i = 0; i < static_cast<int>(f.controls.size()); ++i) {
    if (i == transcript || i == menu || SameValues(m.before[i], f.controls[i])) continue;
    step.controls.emplace_back(i, std::move(m.before[i]));
    m.before[i] = f.controls[i];
  }
  if (step.controls.empty() && step.files.empty() && SameMidi(midi, Midi(p))) return;
  step.midi = std::move(midi);
  m.steps.push_back(std::move(step));
  if (m.steps.size() > kUndoSteps) m.steps.pop_front();
  ShowUndoable(p);
}

void ForgetSteps(Program& p) {
  UndoModule& m = Module(p);
  m.steps.clear();
  m.beforeHeld = false;
  m.forgotten = true;
  m.offRead = false;
  ShowUndoable(p);
}

std::string WhyNoUndo(Program& p) {
  UndoModule& m = Module(p);
  if (UndoOff(p)) return "This quest does not allow undo.";
  if (m.steps.empty() || m.recording) return "There is nothing to undo.";
  return "";
}

std::size_t UndoDepth(Program& p) { return Module(p).steps.size(); }

std::size_t UndoMemory(Program& p) {
  // What the heap holds for each step: the step, its controls and their
  // longer strings and lists, and the files' bytes.
  auto text = [](const std::string& s) { return s.capacity() > 15 ? s.capacity() + 1 : 0; };
  std::size_t bytes = 0;
  for (const Step& step : Module(p).steps) {
    bytes += sizeof(Step) + step.controls.capacity() * sizeof(std::pair<int, Control>) + text(step.midi.MidiFile);
    for (const auto& [index, c] : step.controls) {
      bytes += text(c.caption) + text(c.fileName) + text(c.fileTitle) + text(c.initDir) + text(c.picture.path) +
               text(c.picture.host) + c.list.capacity() * sizeof(std::string);
      for (const std::string& item : c.list) bytes += text(item);
    }
    for (const FileBefore& file : step.files) bytes += sizeof(FileBefore) + text(file.path) + text(file.bytes);
  }
  return bytes;
}

void frmgame::mnuundo_Click(Program& p) {
  UndoModule& m = Module(p);
  if (!WhyNoUndo(p).empty()) return;
  FormSurface& s = p.surface();
  int form = s.FindForm(kForm);
  // What changed since the step belongs to it (see CatchUp).
  CatchUp(m, s.Form(form), s.FindControl(form, "Text1").index, s.FindControl(form, "mnuundo").index);
  Step step = std::move(m.steps.back());
  m.steps.pop_back();
  m.beforeHeld = false;
  for (const auto& [index, before] : step.controls) s.Restore({form, index}, before);
  for (const FileBefore& file : step.files)
    if (!WriteINIText(p, file.path, file.bytes)) p.Notice("The file " + file.path + " could not be put back.");
  RestoreMedia(p, step, s.FindControl(form, "playmp3").index, s.FindControl(form, "Movie").index);
  AppendBlock(GameState(p), kUndoneLine);
  ShowUndoable(p);
  ScheduleAutosave(p);
}

}  // namespace fw
