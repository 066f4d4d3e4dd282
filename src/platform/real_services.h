#pragma once
#include "forms/services.h"

namespace fw {

// The wall clock: seconds since local midnight.
class WallClock : public Clock {
 public:
  double Now() override;
};

// Starts programs for real: the first word is the program, a path or a name
// looked for on the PATH (FindProgram); the rest are its arguments.
class SpawnProcesses : public Processes {
 public:
  bool Start(const std::vector<std::string>& argv, int windowStyle, const std::string& folder) override;
  void Open(std::string_view target) override;  // through xdg-open
};

// An event pump with nothing of its own to pump: the program's timers run
// after it, and user input is read between events. It naps a millisecond, so
// a wait such as a button's press does not keep a processor busy.
class IdlePump : public EventPump {
 public:
  void Pump(Program&) override;
};

}  // namespace fw
