#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/program.h"
#include "platform/disk_files.h"
#include "platform/draw_random.h"
#include "platform/linked_runtime.h"
#include "platform/real_services.h"

namespace fw {

// Where and how the program runs, from the command line.
struct Launch {
  std::string appDir;   // what App.Path reports (UTF-8 host path)
  std::string exeName;  // what App.EXEName reports
  std::string home;     // the per-user folder that bare profile names mean
  bool sound = true;    // MIDI through FluidSynth, else silent on the same timing
  std::optional<std::uint32_t> seed;  // Randomize's seed instead of the clock's
  std::string exe = {};  // the running executable's own file, "" when unknown
  std::string windowModule = {};  // host path of the window module, "" when there is none
  std::string soundModule = {};   // host path of the MIDI voice's module, "" when there is none
  std::string mapModule = {};     // host path of the quest map's module, "" when there is none

  // The program's own files a copy of the executable needs beside it (a
  // packaged game opens its window and plays its tunes with them), in order.
  // A game draws no quest map, so the map's module and Graphviz stay out.
  std::vector<std::string> OwnFiles() const {
    std::vector<std::string> files;
    for (const std::string& module : {windowModule, soundModule})
      if (!module.empty()) files.push_back(module);
    return files;
  }
};

// The one place a program is put together, whichever binding runs it: the
// real services that a binding does not bring (the clock, processes, files,
// dice, the MIDI voice and the map's layout), where the program stands, and
// every form.
class Assembly {
 public:
  explicit Assembly(Launch launch) : launch_(std::move(launch)), runtime_(launch_.exe, launch_.OwnFiles()) {}
  Assembly(const Assembly&) = delete;
  Assembly& operator=(const Assembly&) = delete;

  // A program on the binding's own services and ours for the rest. It must
  // not outlive this object.
  std::unique_ptr<Program> Make(Services own);
  ProgramMaker Maker() {
    return [this](Services own) { return Make(own); };
  }

 private:
  Launch launch_;
  WallClock clock_;
  SpawnProcesses processes_;
  DiskFiles files_;
  DrawRandom random_;
  LinkedRuntime runtime_;
  std::unique_ptr<Sequencer> sequencer_;
  std::unique_ptr<GraphLayout> graphs_;
};

}  // namespace fw
