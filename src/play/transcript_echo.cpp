#include "play/transcript_echo.h"

#include "forms/codepage.h"
#include "forms/program.h"

namespace fw {

TranscriptEcho::TranscriptEcho(Program& p, std::function<void(const std::string&)> write)
    : p_(p),
      write_(std::move(write)),
      transcript_{p.surface().Id("FrmGame", "Text1")},
      battleLog_{p.surface().Id("FrmGame", "Text2")} {}

void TranscriptEcho::ControlChanged(ControlId id, Prop prop) {
  if (prop != Prop::Text) return;
  if (id == transcript_.id) Echo(transcript_, false);
  if (id == battleLog_.id) Echo(battleLog_, true);
}

void TranscriptEcho::SkipOpeningText() {
  transcript_.done = std::string_view(p_.surface().Decl(transcript_.id).caption).size();
}

void TranscriptEcho::Echo(Echoed& box, bool ownLine) {
  const std::string& text = p_.surface().At(box.id).caption;
  if (box.done > text.size()) box.done = 0;  // cleared, or the form loaded afresh
  if (box.done == text.size()) return;
  std::string fresh = box.done == 0 && ownLine ? "\n" : "";
  for (char c : Utf8FromCp1252(std::string_view(text).substr(box.done)))
    if (c != '\r') fresh += c;
  box.done = text.size();
  write_(fresh);
}

}  // namespace fw
