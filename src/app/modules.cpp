#include "app/modules.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string_view>
#include <utility>

#include "media/headless_media.h"

namespace fw {
namespace {

// The modules' entry points; see each module's own file.
using BuildFn = const char* (*)();
using RunWindowsFn = int (*)(const ProgramMaker*, int, char**, const Opening*);
using MakeSequencerFn = Sequencer* (*)(const char*);
using MakeGraphLayoutFn = GraphLayout* (*)();

// The module at path, loaded for good, with `entry` looked up in it; null
// with the reason in `why` when it cannot be loaded or comes from another
// version of the program (whose types may differ from ours).
void* LoadEntry(const std::string& path, const char* buildSymbol, const char* entry, std::string& why) {
  // Never closed: what the module made may live until the process ends.
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) {
    why = dlerror();
    return nullptr;
  }
  auto build = reinterpret_cast<BuildFn>(dlsym(module, buildSymbol));
  void* found = dlsym(module, entry);
  if (!build || !found || std::string_view(build()) != FABLEWRIGHT_VERSION) {
    why = path + " is not a module of fablewright " FABLEWRIGHT_VERSION;
    return nullptr;
  }
  return found;
}

class SoundOnFirstTuneSequencer : public Sequencer {
 public:
  SoundOnFirstTuneSequencer(std::string path, std::string appDir)
      : path_(std::move(path)), appDir_(std::move(appDir)) {}
  bool Open(const std::string& file) override { return Voice().Open(file); }
  bool Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
            std::uint32_t tune) override {
    return Voice().Play(program, file, from, to, tune);
  }
  // Nothing is open before the first tune.
  void Close(const std::string& file) override {
    if (voice_) voice_->Close(file);
  }

 private:
  Sequencer& Voice() {
    if (!voice_) voice_ = LoadSoundSequencer(path_, appDir_);
    if (!voice_) voice_ = std::make_unique<HeadlessSequencer>();
    return *voice_;
  }
  std::string path_;
  std::string appDir_;
  std::unique_ptr<Sequencer> voice_;
};

class GraphvizOnFirstUseLayout : public GraphLayout {
 public:
  explicit GraphvizOnFirstUseLayout(std::string path) : path_(std::move(path)) {}
  bool Draw(const std::string& dot, const std::string& engine, const std::string& format, GraphDrawing& out,
            std::string& error) override {
    if (!layout_ && why_.empty()) Load();
    if (!layout_) {
      error = "Graphviz could not start: " + why_;
      return false;
    }
    return layout_->Draw(dot, engine, format, out, error);
  }

 private:
  void Load() {
    if (path_.empty()) {
      why_ = std::string(kMapModuleName) + " is not beside the program, in lib/ beside it, nor in " +
             FABLEWRIGHT_MODULE_DIR;
      return;
    }
    auto make = reinterpret_cast<MakeGraphLayoutFn>(
        LoadEntry(path_, "fablewright_map_build", "fablewright_make_graph_layout", why_));
    if (make) layout_.reset(make());
    if (!layout_ && why_.empty()) why_ = path_ + " made no graph layout";
  }
  std::string path_;
  std::string why_;
  std::unique_ptr<GraphLayout> layout_;
};

}  // namespace

bool DisplayAvailable() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    if (const char* v = std::getenv(name); v && *v) return true;
  return false;
}

std::vector<std::string> ModulePlaces(const std::string& exeDir, const std::string& name) {
  namespace fs = std::filesystem;
  fs::path dir(exeDir);
  return {
      (dir / name).string(),
      (dir / "lib" / name).string(),
      // An install keeps the modules in its library folder, found from the
      // executable's own folder wherever the install was made, and at the
      // folder the build was configured for, for a copy of the executable.
      (dir / FABLEWRIGHT_MODULE_DIR_FROM_BIN / name).lexically_normal().string(),
      (fs::path(FABLEWRIGHT_MODULE_DIR) / name).string(),
  };
}

std::string FindModule(const std::string& exeDir, const std::string& name) {
  std::error_code ec;
  for (const std::string& place : ModulePlaces(exeDir, name))
    if (std::filesystem::is_regular_file(place, ec)) return place;
  return "";
}

std::optional<int> RunWindows(const std::string& path, const ProgramMaker& make, int argc, char** argv,
                              const Opening& opening, std::ostream& err) {
  if (path.empty()) {
    err << "fablewright: cannot open a window: " << kWindowModuleName
        << " is not beside the program, in lib/ beside it, nor in " << FABLEWRIGHT_MODULE_DIR << "\n";
    return std::nullopt;
  }
  std::string why;
  auto run = reinterpret_cast<RunWindowsFn>(
      LoadEntry(path, "fablewright_window_build", "fablewright_run_windows", why));
  if (!run) {
    err << "fablewright: cannot open a window: " << why << "\n";
    return std::nullopt;
  }
  return run(&make, argc, argv, &opening);
}

std::unique_ptr<Sequencer> LoadSoundSequencer(const std::string& path, const std::string& appDir) {
  if (path.empty()) return nullptr;
  std::string why;
  auto make = reinterpret_cast<MakeSequencerFn>(
      LoadEntry(path, "fablewright_sound_build", "fablewright_make_sequencer", why));
  return std::unique_ptr<Sequencer>(make ? make(appDir.c_str()) : nullptr);
}

std::unique_ptr<Sequencer> SoundOnFirstTune(std::string path, std::string appDir) {
  return std::make_unique<SoundOnFirstTuneSequencer>(std::move(path), std::move(appDir));
}

std::unique_ptr<GraphLayout> GraphvizOnFirstUse(std::string path) {
  return std::make_unique<GraphvizOnFirstUseLayout>(std::move(path));
}

}  // namespace fw
