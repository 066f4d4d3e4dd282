#include "bindings/terminal/terminal_io.h"

#include <poll.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "bindings/terminal/text_lines.h"
#include "forms/codepage.h"
#include "forms/program.h"

namespace fw {
namespace {

// A dialog answers with a full path. A bare name goes in the folder the
// dialog opens in, as a name typed into the window's dialog does; a path
// with a folder is taken from the current folder, and "~/" from the home
// folder.
std::string FullPath(const std::string& utf8, const std::string& startDir) {
  std::string path = utf8;
  const char* home = std::getenv("HOME");
  if (home && (path == "~" || path.starts_with("~/"))) path = home + path.substr(1);
  bool bare = path.find('/') == std::string::npos && path != "~" && path != "." && path != "..";
  if (bare && !startDir.empty()) path = startDir + "/" + path;
  std::error_code ec;
  auto full = std::filesystem::absolute(path, ec);
  return ec ? path : full.lexically_normal().string();
}

// "*.sav" gives ".sav"; a pattern that is no extension gives "".
std::string ExtensionOf(std::string_view defaultExt) {
  if (defaultExt.starts_with('*')) defaultExt.remove_prefix(1);
  if (!defaultExt.starts_with('.') || defaultExt.size() < 2 ||
      defaultExt.find_first_of("*?|;") != std::string_view::npos)
    return "";
  return std::string(defaultExt);
}

}  // namespace

std::string TerminalText(std::string_view cp1252) {
  std::string text = Utf8FromCp1252(cp1252);
  for (std::size_t at; (at = text.find("\r\n")) != std::string::npos;) text.erase(at, 1);
  return text;
}

std::optional<std::string> PlainLines::Next(std::string_view prompt, Asking) {
  out_.Write(prompt);
  out_.Flush();
  for (;;) {
    std::size_t end = buffer_.find('\n');
    if (end != std::string::npos) {
      std::string line = buffer_.substr(0, end);
      buffer_.erase(0, end + 1);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (::isatty(fd_)) out_.AtLineStart();  // the terminal echoed the Enter
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

std::string TypedText::operator()(std::string_view utf8) {
  std::string text = Cp1252FromUtf8(utf8);
  if (!told_ && Utf8FromCp1252(text) != utf8) {
    told_ = true;
    out_.Printf("(The game keeps its text in Windows-1252, which cannot hold every character of \"%.*s\": "
                "it became \"%s\".)\n",
                static_cast<int>(utf8.size()), utf8.data(), Utf8FromCp1252(text).c_str());
  }
  return text;
}

// A box reads as a plain sentence. The program's own name as its title adds
// nothing; a title of its own leads in.
int TerminalDialogs::MsgBox(std::string_view prompt, int style, std::string_view title) {
  ++boxesShown_;
  std::string lead;
  if (!title.empty() && title != kAppTitle) {
    lead = TerminalText(title);
    lead += std::isalnum(static_cast<unsigned char>(lead.back())) ? ": " : " ";
  }
  out_.Printf("\n%s%s\n", lead.c_str(), TerminalText(prompt).c_str());
  if (style != 4) return 1;
  for (;;) {
    auto line = input_.Next("Yes or no (y/n)? ", Asking::Answer);
    if (!line) return 7;  // no one left to answer: No keeps everything as it is
    std::string answer = Lowercase(Trimmed(*line));
    if (answer == "y" || answer == "yes") return 6;
    if (answer == "n" || answer == "no") return 7;
  }
}

std::optional<std::string> TerminalDialogs::FileDialog(const FileDialogRequest& request) {
  std::string pattern = request.defaultExt.empty() ? request.filter : request.defaultExt;
  std::string prompt = std::string(request.save ? "Save as" : "Open") + " file (" + Utf8FromCp1252(pattern) +
                       "), empty to cancel: ";
  input_.SetFolder(request.startDir);
  auto line = input_.Next(prompt, Asking::Path);
  if (!line) return std::nullopt;
  std::string typed(Trimmed(*line));
  if (typed.empty()) return std::nullopt;
  return Answer(typed, request);
}

// A name to open that does not exist is tried with the dialog's extension,
// as a save of the same name added it.
std::string TerminalDialogs::Answer(std::string utf8, const FileDialogRequest& request) {
  std::string path = FullPath(utf8, request.startDir);
  std::string ext = ExtensionOf(request.defaultExt);
  std::error_code ec;
  if (!request.save && !ext.empty() && !std::filesystem::exists(path, ec) &&
      std::filesystem::is_regular_file(path + ext, ec))
    path += ext;
  lastPath_ = path;
  return typed_(path);
}

}  // namespace fw
