// Line editing through libedit's readline interface, in its callback form:
// the player edits and recalls lines while the program's timers go on
// running between keys.
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <editline/readline.h>

#include "bindings/terminal/terminal_io.h"
#include "bindings/terminal/text_lines.h"
#include "shell/game_commands.h"

namespace fw {
namespace {

// The first words of the commands, for Tab.
constexpr const char* kCommandWords[] = {"attack", "character", "close", "create", "escape", "help",
                                         "items",  "load",      "look",  "name",   "open",   "quit",
                                         "reroll", "save",      "score", "status"};

class EditedLines : public LineInput {
 public:
  EditedLines(int fd, TerminalOut& out, IdleCall idle);
  ~EditedLines() override;
  std::optional<std::string> Next(std::string_view prompt, Asking asking) override;
  bool AtTerminal() const override { return true; }

 private:
  static void OnLine(char* line);
  static char* NextMatch(const char* text, int state);
  std::vector<std::string> CommandMatches(const char* text) const;
  std::vector<std::string> NamesInFolder(const char* text) const;

  int fd_;
  std::FILE* in_;
  TerminalOut& out_;
  IdleCall idle_;
  Asking asking_ = Asking::Command;
  bool done_ = false;
  std::optional<std::string> line_;
  std::string lastKept_;
};

// The line editor keeps one line at a time for the whole process.
EditedLines* active = nullptr;

EditedLines::EditedLines(int fd, TerminalOut& out, IdleCall idle)
    : fd_(fd), in_(::fdopen(::dup(fd), "r")), out_(out), idle_(std::move(idle)) {
  // libedit edits UTF-8 as characters only when the locale says UTF-8.
  std::setlocale(LC_CTYPE, "");
  // The streams are taken when the editor starts, at the first history call.
  // It never switches on bracketed paste, so pasted lines run one by one
  // and no mode switches reach a screen reader; and from the prompt to the
  // Enter its own signal handlers put the terminal back before Ctrl-C ends
  // the program.
  rl_readline_name = "fablewright";
  rl_instream = in_ ? in_ : stdin;
  rl_outstream = out.file();
  rl_completion_entry_function = NextMatch;
  using_history();
  // libedit rings the terminal's bell at every Tab, even one that completes
  // the word; its bell becomes an attribute reset, which shows nothing.
  rl_parse_and_bind("settc bl \x1b[m");
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
    if (ready < 0 && errno == EINTR) continue;
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
// load, file names at a file prompt (a bare name in the dialog's folder, a
// name with a folder in it from the current folder), nothing at a question.
// State 0 starts a new completion.
char* EditedLines::NextMatch(const char* text, int state) {
  if (!active || active->asking_ == Asking::Answer) return nullptr;
  if (active->asking_ == Asking::Path && (std::strchr(text, '/') || active->folder_.empty()))
    return rl_filename_completion_function(text, state);
  static std::vector<std::string> matches;
  static std::size_t next;
  if (state == 0) {
    matches = active->asking_ == Asking::Path ? active->NamesInFolder(text) : active->CommandMatches(text);
    next = 0;
  }
  return next < matches.size() ? strdup(matches[next++].c_str()) : nullptr;
}

// The files of the dialog's folder whose names begin with the text.
std::vector<std::string> EditedLines::NamesInFolder(const char* text) const {
  std::vector<std::string> names;
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(folder_, ec)) {
    std::string name = entry.path().filename().string();
    if (name.starts_with(text) && entry.is_regular_file(ec)) names.push_back(name);
  }
  return names;
}

std::vector<std::string> EditedLines::CommandMatches(const char* text) const {
  // The words before the one being completed, which ends at the cursor.
  std::string_view line(rl_line_buffer ? rl_line_buffer : "");
  std::size_t typed = std::strlen(text);
  std::size_t end = rl_point >= 0 && static_cast<std::size_t>(rl_point) <= line.size() ? rl_point : line.size();
  std::string before = CommandWords(line.substr(0, end >= typed ? end - typed : 0));
  std::string word = Lowercase(text);
  std::vector<std::string> matches;
  if (before.empty()) {
    for (const char* command : kCommandWords)
      if (std::string_view(command).starts_with(word)) matches.emplace_back(command);
    for (const GameCommand& command : kGameCommands)
      if (std::string_view(command.word).starts_with(word)) matches.emplace_back(command.word);
    std::sort(matches.begin(), matches.end());
  } else if ((before == "save" || before == "load") && std::string_view("character").starts_with(word)) {
    matches.emplace_back("character");
  }
  return matches;
}

}  // namespace

std::unique_ptr<LineInput> MakeLineInput(int fd, TerminalOut& out, IdleCall idle) {
  if (::isatty(fd) && ::isatty(::fileno(out.file())))
    return std::make_unique<EditedLines>(fd, out, std::move(idle));
  return std::make_unique<PlainLines>(fd, out, std::move(idle));
}

}  // namespace fw
