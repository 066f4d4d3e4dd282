#include "play/transcript.h"

#include <string>

#include "forms/codepage.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "play/game_state.h"
#include "store/program_store.h"

namespace fw {

void AppendLine(const GameState& g, std::string_view text) {
  g.Text1.SetText(g.Text1.Text() + std::string(text) + "\r\n");
}

void AppendBlock(const GameState& g, std::string_view text) {
  g.Text1.SetText(g.Text1.Text() + "\r\n>\r\n" + std::string(text));
}

std::string TranscriptText(const GameState& g) {
  std::string text;
  const std::string& lines = g.Text1.Text();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] == '\r' && i + 1 < lines.size() && lines[i + 1] == '\n') continue;
    text += lines[i];
  }
  if (!text.empty() && text.back() != '\n') text += '\n';
  return Utf8FromCp1252(text);
}

void frmgame::mnutranscript_Click(Program& p) {
  GameState g(p);
  FileDialog dialog(p.surface(), "FrmGame", "transcriptfile");
  dialog.SetInitDir(p.AppPath());
  if (!p.ShowSave(dialog.id()) || dialog.FileName().empty()) return;
  std::string file = dialog.FileName();
  if (!WriteWholeFile(p.HostFile(file), TranscriptText(g))) {
    p.MsgBox("The transcript could not be written to " + file + ".", 16, "Error Saving Transcript:");
    return;
  }
  p.Notice("The transcript was written to " + file + ".");
}

}  // namespace fw
