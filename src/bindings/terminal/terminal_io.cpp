#include "bindings/terminal/terminal_io.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "forms/codepage.h"

namespace fw {
namespace {

// A dialog answers with a full path; what the user typed is taken from the
// current folder.
std::string FullPath(const std::string& utf8) {
  std::error_code ec;
  auto full = std::filesystem::absolute(utf8, ec);
  return Cp1252FromUtf8(ec ? utf8 : full.lexically_normal().string());
}

}  // namespace

std::string TerminalText(std::string_view cp1252) {
  std::string text = Utf8FromCp1252(cp1252);
  for (std::size_t at; (at = text.find("\r\n")) != std::string::npos;) text.erase(at, 1);
  return text;
}

std::optional<std::string> LineInput::Next() {
  for (;;) {
    std::size_t end = buffer_.find('\n');
    if (end != std::string::npos) {
      std::string line = buffer_.substr(0, end);
      buffer_.erase(0, end + 1);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      return line;
    }
    if (eof_) {
      if (buffer_.empty()) return std::nullopt;
      std::string line;
      line.swap(buffer_);
      return line;
    }
    std::optional<int> wait = idle_ ? idle_() : std::nullopt;
    pollfd pfd{fd_, POLLIN, 0};
    int ready = ::poll(&pfd, 1, wait ? *wait : -1);
    if (ready < 0 && errno != EINTR) eof_ = true;
    if (ready <= 0) continue;
    char chunk[4096];
    ssize_t n = ::read(fd_, chunk, sizeof chunk);
    if (n <= 0) {
      if (n < 0 && errno == EINTR) continue;
      eof_ = true;
    } else {
      buffer_.append(chunk, static_cast<std::size_t>(n));
    }
  }
}

int TerminalDialogs::MsgBox(std::string_view prompt, int style, std::string_view title) {
  std::fprintf(out_, "\n[%s] %s\n", TerminalText(title).c_str(), TerminalText(prompt).c_str());
  if (style != 4) return 1;
  for (;;) {
    std::fprintf(out_, "Yes or no (y/n)? ");
    std::fflush(out_);
    auto line = input_.Next();
    if (!line) return 7;  // no one left to answer: No keeps everything as it is
    if (*line == "y" || *line == "Y" || *line == "yes") return 6;
    if (*line == "n" || *line == "N" || *line == "no") return 7;
  }
}

std::optional<std::string> TerminalDialogs::FileDialog(const FileDialogRequest& request) {
  if (!preDialog_.empty() && preDialog_ == request.form + "." + request.dialog) {
    preDialog_.clear();
    return FullPath(prePath_);
  }
  std::string pattern = request.defaultExt.empty() ? request.filter : request.defaultExt;
  std::fprintf(out_, "%s file (%s), empty to cancel: ", request.save ? "Save as" : "Open",
               Utf8FromCp1252(pattern).c_str());
  std::fflush(out_);
  auto line = input_.Next();
  if (!line || line->empty()) return std::nullopt;
  return FullPath(*line);
}

}  // namespace fw
