#pragma once
#include <memory>

#include "app/assembly.h"
#include "media/headless_media.h"
#include "platform/disk_files.h"
#include "platform/draw_random.h"
#include "platform/real_services.h"

namespace fw {

// The quest map's layout where there is no Graphviz.
class NoGraphLayout : public GraphLayout {
 public:
  bool Draw(const std::string& dot, const std::string& engine, const std::string& format, GraphDrawing& out,
            std::string& error) override;
};

// The program put together in the web build (WebAssembly, in a browser or
// under node), whose platform has no processes to start, no modules to load
// and no FluidSynth: the wall clock, the files, the dice and a MIDI voice
// that keeps each tune's timing in silence stand in for whatever the binding
// does not bring. A packaged game made here gets no runtime files.
class WebBuildAssembly {
 public:
  explicit WebBuildAssembly(Launch launch) : launch_(std::move(launch)) {}
  WebBuildAssembly(const WebBuildAssembly&) = delete;
  WebBuildAssembly& operator=(const WebBuildAssembly&) = delete;

  std::unique_ptr<Program> Make(Services own);
  ProgramMaker Maker() {
    return [this](Services own) { return Make(own); };
  }

 private:
  Launch launch_;
  WallClock clock_;
  DiskFiles files_;
  DrawRandom random_;
  HeadlessSequencer sequencer_;
  NoGraphLayout graphs_;
};

}  // namespace fw
