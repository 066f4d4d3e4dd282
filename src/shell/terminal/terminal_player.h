#pragma once
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace fw {

struct TerminalOptions {
  std::string quest;   // the quest to open at once (UTF-8 host path), or "" for the menu
  std::string appDir;  // what App.Path reports
  std::string exeName;
  std::string home;    // the per-user folder
  bool sound = true;   // MIDI through FluidSynth
  std::optional<std::uint32_t> seed;  // Randomize's seed instead of the clock's
};

// Plays in a terminal, or through a plain pipe: the transcript as it grows,
// the visible options by number, message boxes as prompts, file dialogs as a
// path prompt. Plain lines only, so a screen reader or a pipe reads it well.
// Gives the exit code.
int PlayInTerminal(const TerminalOptions& options, int inputFd, std::FILE* out);

}  // namespace fw
