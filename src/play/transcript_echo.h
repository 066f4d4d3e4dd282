#pragma once
#include <functional>
#include <string>

#include "forms/surface.h"

namespace fw {

class Program;

// Hands on what the game's transcript and the battle log gain, as they gain
// it, in UTF-8 with plain line feeds: how the terminal and a script run show
// the game. A fight's log starts on a line of its own.
class TranscriptEcho : public SurfaceObserver {
 public:
  TranscriptEcho(Program& p, std::function<void(const std::string&)> write);
  void ControlChanged(ControlId id, Prop prop) override;
  // Echoes nothing of the text the transcript starts with ("No Quest
  // Loaded."), only what the game adds to it.
  void SkipOpeningText();

 private:
  // One text box whose growth is echoed.
  struct Echoed {
    ControlId id;
    std::size_t done = 0;
  };
  void Echo(Echoed& box, bool ownLine);

  Program& p_;
  std::function<void(const std::string&)> write_;
  Echoed transcript_, battleLog_;
};

}  // namespace fw
