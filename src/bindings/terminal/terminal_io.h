#pragma once
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bindings/terminal/terminal_out.h"
#include "forms/services.h"

namespace fw {

// What a prompt asks for, which decides what Tab completes and what the
// history keeps.
enum class Asking { Command, Path, Answer };

// How long the input may wait before idle is called again (nullopt: for ever).
using IdleCall = std::function<std::optional<int>()>;

// Reads the player's lines, running the program's timers while it waits, so
// that music loops and options appear during the prompt.
class LineInput {
 public:
  virtual ~LineInput() = default;
  // Shows the prompt and gives the next line without its end, or nullopt at
  // the end of input.
  virtual std::optional<std::string> Next(std::string_view prompt, Asking asking) = 0;
  // Whether a person at a terminal reads the prompt (not a pipe).
  virtual bool AtTerminal() const { return false; }
  // The folder a bare name at the next path prompt means (a host path; ""
  // for the current one), where Tab completes it.
  void SetFolder(std::string folder) { folder_ = std::move(folder); }

 protected:
  std::string folder_;
};

// Plain lines from a file descriptor, the prompt printed as it is: what a
// pipe or a screen reader gets.
class PlainLines : public LineInput {
 public:
  PlainLines(int fd, TerminalOut& out, IdleCall idle) : fd_(fd), out_(out), idle_(std::move(idle)) {}
  std::optional<std::string> Next(std::string_view prompt, Asking asking) override;

 private:
  int fd_;
  TerminalOut& out_;
  IdleCall idle_;
  std::string buffer_;
  bool eof_ = false;
};

// Line editing with a history and completion of the command names, when
// both ends are a terminal; plain lines otherwise.
std::unique_ptr<LineInput> MakeLineInput(int fd, TerminalOut& out, IdleCall idle);

// What the player types, in the program's Windows-1252. The first time a
// character has no place there, the player is told what it became.
class TypedText {
 public:
  explicit TypedText(TerminalOut& out) : out_(out) {}
  std::string operator()(std::string_view utf8);

 private:
  TerminalOut& out_;
  bool told_ = false;
};

// The program's text as a terminal shows it: UTF-8, lines ending in "\n".
std::string TerminalText(std::string_view cp1252);

// Message boxes and file dialogs as prompts on the terminal.
class TerminalDialogs : public Dialogs {
 public:
  TerminalDialogs(LineInput& input, TerminalOut& out, TypedText& typed) : input_(input), out_(out), typed_(typed) {}
  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::optional<std::string> FileDialog(const FileDialogRequest& request) override;
  // The next file dialog of that control gets this answer without asking.

  // How many message boxes have been shown, and the last path a file dialog
  // was answered with (UTF-8): enough to tell that a save went through.
  int boxesShown() const { return boxesShown_; }
  const std::optional<std::string>& lastPath() const { return lastPath_; }
  void ForgetLastPath() { lastPath_.reset(); }

 private:
  std::string Answer(std::string utf8, const FileDialogRequest& request);

  LineInput& input_;
  TerminalOut& out_;
  TypedText& typed_;

  int boxesShown_ = 0;
  std::optional<std::string> lastPath_;
};

}  // namespace fw
