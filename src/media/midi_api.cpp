#include "media/midi_api.h"

#include "shell/codepage.h"
#include "shell/program.h"

namespace fw {
namespace {

// The full path of an existing file, "" for a blank or missing one: what the
// sequencer is given, so that a bad name fails its open.
std::string FullPath(Program& p, std::string_view file) {
  if (file.empty()) return {};
  std::string host = p.ResolveMediaFile(file);
  return host.empty() ? std::string() : Cp1252FromUtf8(host);
}

}  // namespace

void MidiPlay(Program& p) {
  MidiApiState& m = p.midi;
  m.MidiFile = FullPath(p, m.MidiFile);
  Sequencer& sequencer = *p.services().sequencer;
  std::string host = Utf8FromCp1252(m.MidiFile);
  if (!m.MidiOpen && !sequencer.Open(host)) return;
  ++m.generation;
  if (sequencer.Play(p, host, m.MidiFrom, m.MidiTo, m.generation)) m.MidiOpen = true;
}

void MidiClose(Program& p) {
  MidiApiState& m = p.midi;
  p.services().sequencer->Close(Utf8FromCp1252(m.MidiFile));
  ++m.generation;
  m.MidiOpen = false;
}

void MidiHook(Program& p) { p.midi.hooked = true; }

void MidiUnhook(Program& p) { p.midi.hooked = false; }

void MidiWndProc(Program& p, int message, int wParam) {
  if (message != kMM_MCINOTIFY || wParam != kMCI_NOTIFY_SUCCESSFUL) return;
  if (p.midi.MidiRepeat) MidiPlay(p);
  else MidiClose(p);
}

void MidiNotify(Program& p, std::uint32_t tune) {
  if (!p.midi.hooked) return;  // no window procedure of ours: the message is lost
  MidiWndProc(p, kMM_MCINOTIFY, tune == p.midi.generation ? kMCI_NOTIFY_SUCCESSFUL : kMCI_NOTIFY_SUPERSEDED);
}

void StartMidi(Program& p, std::string_view file, bool stopFirst, std::int32_t window) {
  if (stopFirst) Command2_Click(p);
  MidiApiState& m = p.midi;
  m.MidiWindow = window;
  m.MidiFile = file;
  m.MidiRepeat = true;
  m.MidiFrom = 0;
  m.MidiTo = 0;
  MidiClose(p);
  MidiUnhook(p);
  p.DoEvents();
  MidiPlay(p);
  MidiHook(p);
}

void Command2_Click(Program& p) {
  MidiClose(p);
  MidiUnhook(p);
}

}  // namespace fw
