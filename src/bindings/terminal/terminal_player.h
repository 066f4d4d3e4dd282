#pragma once
#include <cstdio>
#include <functional>
#include <string>

#include "forms/program.h"

namespace fw {

struct TerminalOptions {
  // The command line's first step (opening the quest it names), or none for
  // the picture menu.
  std::function<void(Program&)> opening;
};

// Plays in a terminal, or through a plain pipe: the transcript as it grows,
// the visible options by number, message boxes as sentences and prompts,
// file dialogs as a path prompt. Plain lines only, so a screen reader or a
// pipe reads it well; at a terminal the lines are edited and recalled, and
// the text wrapped at its width. The program is made by make. Gives the
// exit code.
int PlayInTerminal(const TerminalOptions& options, const ProgramMaker& make, int inputFd, std::FILE* out);

}  // namespace fw
