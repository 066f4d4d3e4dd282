#include "app/assembly.h"

#include <filesystem>

#include "app/modules.h"
#include "forms/codepage.h"
#include "media/headless_media.h"
#include "shell/forms.h"

namespace fw {

std::unique_ptr<Program> Assembly::Make(Services own) {
  if (!own.clock) own.clock = &clock_;
  if (!own.processes) own.processes = &processes_;
  if (!own.files) own.files = &files_;
  if (!own.runtime) own.runtime = &runtime_;
  if (!own.random) {
    // Our dice start from the clock, or from the seed asked for, so that the
    // same commands give the same fights.
    if (launch_.seed) random_.FixSeed(*launch_.seed);
    random_.Randomize(own.clock->Now());
    own.random = &random_;
  }
  if (!own.sequencer) {
    if (!sequencer_) {
      if (launch_.sound) sequencer_ = SoundOnFirstTune(launch_.soundModule, launch_.appDir);
      else sequencer_ = std::make_unique<HeadlessSequencer>();
    }
    own.sequencer = sequencer_.get();
  }
  if (!own.graphs) {
    if (!graphs_) graphs_ = GraphvizOnFirstUse(launch_.mapModule);
    own.graphs = graphs_.get();
  }
  std::error_code ec;
  AppInfo app{Cp1252FromUtf8(launch_.appDir), Cp1252FromUtf8(launch_.exeName), launch_.home,
              std::filesystem::current_path(ec).string(), launch_.exe, launch_.OwnFiles()};
  return std::make_unique<Program>(own, std::move(app), AllForms());
}

}  // namespace fw
