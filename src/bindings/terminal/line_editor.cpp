// Line editing through GNU Readline's callback interface: the player edits
// and recalls lines while the program's timers go on running between keys.
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <readline/history.h>
#include <readline/readline.h>

#include "bindings/terminal/terminal_io.h"
#include "bindings/terminal/text_lines.h"

namespace fw {
namespace {

// The first words of the commands, for Tab.
constexpr const char* kCommandWords[] = {"attack", "character", "close", "create", "escape", "help",
                                         "items",  "load",      "look",  "name",   "open",   "quit",
                                         "reroll", "save",      "score"};

class EditedLines : public LineInput {
 public:
  EditedLines(int fd, TerminalOut& out, IdleCall idle);
  ~EditedLines() override;
  std::optional<std::string> Next(std::string_view prompt, Asking asking) override;

 private:
  static void OnLine(char* line);
  static char** Complete(const char* text, int start, int end);
  static char* NextWord(const char* text, int state);
  static char* NameInFolder(const char* text, int state);

  int fd_;
  std::FILE* in_;
  TerminalOut& out_;
  IdleCall idle_;
  Asking asking_ = Asking::Command;
  bool done_ = false;
  std::optional<std::string> line_;
  std::string lastKept_;
};

// Readline keeps one line at a time for the whole process.
EditedLines* active = nullptr;

EditedLines::EditedLines(int fd, TerminalOut& out, IdleCall idle)
    : fd_(fd), in_(::fdopen(::dup(fd), "r")), out_(out), idle_(std::move(idle)) {
  // Readline edits UTF-8 as characters only when the locale says UTF-8.
  std::setlocale(LC_CTYPE, "");
  rl_readline_name = "fablewright";
  rl_instream = in_ ? in_ : stdin;
  rl_outstream = out.file();
  rl_change_environment = 0;
  // Ctrl-C while waiting between keys leaves the terminal as it found it.
  rl_persistent_signal_handlers = 1;
  rl_attempted_completion_function = Complete;
  // Pasted lines run one by one, and no mode switches reach a screen reader.
  rl_variable_bind("enable-bracketed-paste", "off");
  using_history();
  stifle_history(500);
}

EditedLines::~EditedLines() {
  if (in_) std::fclose(in_);
  rl_instream = nullptr;
  rl_outstream = nullptr;
}

std::optional<std::string> EditedLines::Next(std::string_view prompt, Asking asking) {
  active = this;
  asking_ = asking;
  done_ = false;
  line_.reset();
  out_.Flush();
  std::string shown(prompt);
  rl_callback_handler_install(shown.c_str(), OnLine);
  while (!done_) {
    std::optional<int> wait = idle_ ? idle_() : std::nullopt;
    pollfd pfd{fd_, POLLIN, 0};
    int ready = ::poll(&pfd, 1, wait ? *wait : -1);
    if (ready < 0 && errno == EINTR) {
      rl_check_signals();
      continue;
    }
    if (ready < 0 || (ready > 0 && !(pfd.revents & POLLIN))) {
      rl_callback_handler_remove();  // the terminal went away
      break;
    }
    if (ready > 0) rl_callback_read_char();
  }
  active = nullptr;
  if (!line_) std::fputc('\n', out_.file());  // Ctrl-D leaves the cursor after the prompt
  out_.AtLineStart();
  return line_;
}

void EditedLines::OnLine(char* line) {
  rl_callback_handler_remove();
  EditedLines& self = *active;
  self.done_ = true;
  if (!line) return;
  self.line_ = line;
  std::free(line);
  // Commands are recalled, answers to a dialog are not; nor is a line the
  // same as the one before it.
  std::string kept(Trimmed(*self.line_));
  if (self.asking_ == Asking::Command && !kept.empty() && kept != self.lastKept_) {
    add_history(kept.c_str());
    self.lastKept_ = kept;
  }
}

// Tab: a command word at the start of a command, "character" after save or
// load, file names at a file prompt (a bare name in the dialog's folder),
// nothing at a question.
char** EditedLines::Complete(const char* text, int start, int) {
  if (active && active->asking_ == Asking::Path) {
    if (start > 0 || std::strchr(text, '/') || active->folder_.empty()) return nullptr;
    rl_attempted_completion_over = 1;
    return rl_completion_matches(text, NameInFolder);
  }
  rl_attempted_completion_over = 1;
  if (!active || active->asking_ != Asking::Command) return nullptr;
  std::string before = CommandWords(std::string_view(rl_line_buffer, static_cast<std::size_t>(start)));
  if (before.empty()) return rl_completion_matches(text, NextWord);
  if (before == "save" || before == "load")
    return rl_completion_matches(text, [](const char* word, int state) -> char* {
      return state == 0 && std::string_view("character").starts_with(Lowercase(word)) ? strdup("character")
                                                                                      : nullptr;
    });
  return nullptr;
}

char* EditedLines::NameInFolder(const char* text, int state) {
  static std::vector<std::string> names;
  static std::size_t next;
  if (state == 0) {
    names.clear();
    next = 0;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(active->folder_, ec)) {
      // Files only: a name with a folder in it is taken from the current folder.
      std::string name = entry.path().filename().string();
      if (name.starts_with(text) && entry.is_regular_file(ec)) names.push_back(name);
    }
  }
  return next < names.size() ? strdup(names[next++].c_str()) : nullptr;
}

char* EditedLines::NextWord(const char* text, int state) {
  static std::size_t next;
  if (state == 0) next = 0;
  std::string typed = Lowercase(text);
  while (next < std::size(kCommandWords)) {
    const char* word = kCommandWords[next++];
    if (std::string_view(word).starts_with(typed)) return strdup(word);
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<LineInput> MakeLineInput(int fd, TerminalOut& out, IdleCall idle) {
  if (::isatty(fd) && ::isatty(::fileno(out.file())))
    return std::make_unique<EditedLines>(fd, out, std::move(idle));
  return std::make_unique<PlainLines>(fd, out, std::move(idle));
}

}  // namespace fw
