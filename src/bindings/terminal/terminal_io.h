#pragma once
#include <cstdio>
#include <functional>
#include <optional>
#include <string>

#include "forms/services.h"

namespace fw {

// Reads lines from a file descriptor, running the program's timers while it
// waits, so that music loops and options appear during the prompt.
class LineInput {
 public:
  // waitMs: how long to wait before calling idle again (nullopt: for ever).
  LineInput(int fd, std::function<std::optional<int>()> idle) : fd_(fd), idle_(std::move(idle)) {}
  // The next line without its end, or nullopt at the end of input.
  std::optional<std::string> Next();

 private:
  int fd_;
  std::function<std::optional<int>()> idle_;
  std::string buffer_;
  bool eof_ = false;
};

// The program's text as a terminal shows it: UTF-8, lines ending in "\n".
std::string TerminalText(std::string_view cp1252);

// Message boxes and file dialogs as prompts on the terminal.
class TerminalDialogs : public Dialogs {
 public:
  TerminalDialogs(LineInput& input, std::FILE* out) : input_(input), out_(out) {}
  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::optional<std::string> FileDialog(const FileDialogRequest& request) override;
  // The next file dialog of that control gets this answer without asking.
  void Preanswer(std::string dialog, std::string path) {
    preDialog_ = std::move(dialog);
    prePath_ = std::move(path);
  }

 private:
  LineInput& input_;
  std::FILE* out_;
  std::string preDialog_, prePath_;
};

}  // namespace fw
