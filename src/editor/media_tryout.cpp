// The editor's media pickers and the try-outs of the page's MIDI tune and
// MP3 track.
#include <string>

#include "editor/createquest.h"
#include "editor/editor_pickers.h"
#include "editor/page_fields.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "media/midi_api.h"

namespace fw {
namespace {

constexpr const char* kForm = "createquest";

void Pick(Program& p, const char* dialog, const char* field) {
  PickInto(p, {kForm, dialog, field}, SelectedPage(p), BindingOf(field).key);
}

MediaPlayer GamePlayer(Program& p) { return MediaPlayer(p.surface(), "FrmGame", "playmp3"); }

}  // namespace

void createquest::Command3_Click(Program& p) { Pick(p, "CommonDialog1", "Text18"); }
void createquest::Command6_Click(Program& p) { Pick(p, "CommonDialog2", "Text20"); }
void createquest::Command9_Click(Program& p) { Pick(p, "CommonDialog3", "Text25"); }
void createquest::Command10_Click(Program& p) { Pick(p, "CommonDialog4", "Text26"); }

void createquest::Command4_Click(Program& p) {
  FormSurface& s = p.surface();
  const std::string tune = TextBox(s, kForm, "Text18").Text();
  if (tune.empty()) {
    p.MsgBox("You must first select a Midi to play!");
    return;
  }
  // The notification of the tune's end goes to the editor's own window.
  StartMidi(p, tune, false, FormHandle(s, kForm).hWnd());
  // Locked until the stop, whatever the tune did: a failed start is silent.
  CommandButton(s, kForm, "Command4").SetEnabled(false);
}

void createquest::Command5_Click(Program& p) {
  MidiClose(p);
  MidiUnhook(p);
  CommandButton(p.surface(), kForm, "Command4").SetEnabled(true);
}

void createquest::Command11_Click(Program& p) {
  const std::string track = TextBox(p.surface(), kForm, "Text26").Text();
  if (track.empty()) {
    p.MsgBox("You must first select an mp3 to play!");
    return;
  }
  // The game window's own player: a game that runs shares it.
  try {
    MediaPlayer player = GamePlayer(p);
    player.SetFileName(track);
    player.Play();
  } catch (const Failure&) {
    p.MsgBox("Error playing file!!");
  }
}

void createquest::Command12_Click(Program& p) { GamePlayer(p).Stop(); }

}  // namespace fw
