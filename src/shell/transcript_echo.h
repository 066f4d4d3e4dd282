#pragma once
#include <functional>
#include <string>

#include "shell/surface.h"

namespace fw {

class Program;

// Hands on what the game's transcript gains, as it gains it, in UTF-8 with
// plain line feeds: how the terminal and a script run show the game.
class TranscriptEcho : public SurfaceObserver {
 public:
  TranscriptEcho(Program& p, std::function<void(const std::string&)> write);
  void ControlChanged(ControlId id, Prop prop) override;

 private:
  Program& p_;
  std::function<void(const std::string&)> write_;
  ControlId text1_;
  std::size_t echoed_ = 0;
};

}  // namespace fw
