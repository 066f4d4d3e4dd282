#include "shell/transcript_echo.h"

#include "shell/codepage.h"
#include "shell/program.h"

namespace fw {

TranscriptEcho::TranscriptEcho(Program& p, std::function<void(const std::string&)> write)
    : p_(p), write_(std::move(write)), text1_(p.surface().Id("FrmGame", "Text1")) {}

void TranscriptEcho::ControlChanged(ControlId id, Prop prop) {
  if (id != text1_ || prop != Prop::Text) return;
  const std::string& text = p_.surface().At(id).caption;
  if (echoed_ > text.size()) echoed_ = 0;  // the form was loaded afresh
  std::string fresh;
  for (char c : Utf8FromCp1252(std::string_view(text).substr(echoed_)))
    if (c != '\r') fresh += c;
  echoed_ = text.size();
  write_(fresh);
}

}  // namespace fw
