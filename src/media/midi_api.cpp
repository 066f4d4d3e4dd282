#include "media/midi_api.h"

#include "forms/codepage.h"
#include "forms/program.h"
#include "media/midi_state.h"

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
  MidiApiState& m = Midi(p);
  m.MidiFile = FullPath(p, m.MidiFile);
  Sequencer& sequencer = *p.services().sequencer;
  std::string host = Utf8FromCp1252(m.MidiFile);
  if (!m.MidiOpen && !sequencer.Open(host)) return;
  ++m.generation;
  if (sequencer.Play(p, host, m.MidiFrom, m.MidiTo, m.generation)) m.MidiOpen = true;
}

void MidiClose(Program& p) {
  MidiApiState& m = Midi(p);
  p.services().sequencer->Close(Utf8FromCp1252(m.MidiFile));
  ++m.generation;
  m.MidiOpen = false;
}

void MidiHook(Program& p) { Midi(p).hooked = true; }

void MidiUnhook(Program& p) { Midi(p).hooked = false; }

void MidiWndProc(Program& p, int message, int wParam) {
  if (message != kMM_MCINOTIFY || wParam != kMCI_NOTIFY_SUCCESSFUL) return;
  if (Midi(p).MidiRepeat) MidiPlay(p);
  else MidiClose(p);
}

void MidiNotify(Program& p, std::uint32_t tune) {
  if (!Midi(p).hooked) return;  // no window procedure of ours: the message is lost
  MidiWndProc(p, kMM_MCINOTIFY, tune == Midi(p).generation ? kMCI_NOTIFY_SUCCESSFUL : kMCI_NOTIFY_SUPERSEDED);
}

void StartMidi(Program& p, std::string_view file, bool stopFirst, std::int32_t window) {
  if (stopFirst) Command2_Click(p);
  MidiApiState& m = Midi(p);
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
