#pragma once
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/program.h"

namespace fw {

// The game window, the MIDI voice and the quest map's layout live in modules
// of their own, loaded only when a window opens, a tune is to sound or a map
// is drawn, so that the terminal player, a script or a key read starts
// without the window toolkit, the sound libraries and Graphviz.
inline constexpr const char* kWindowModuleName = "fablewright-window.so";
inline constexpr const char* kSoundModuleName = "fablewright-sound.so";
inline constexpr const char* kMapModuleName = "fablewright-map.so";

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// The places a module is looked for, in order: beside the executable, in
// lib/ beside it, then where an install puts it.
std::vector<std::string> ModulePlaces(const std::string& exeDir, const std::string& name);

// The first of those places that holds the module, "" when none does.
std::string FindModule(const std::string& exeDir, const std::string& name);

// A command line's own first step, run as one event once the game window is
// up: opening the quest it names, or the editor.
using Opening = std::function<void(Program&)>;

// Loads the window module at path and runs the program, made by make, in its
// windows until it ends; gives the exit code. Gives nothing, and says why
// on err, when the module cannot be loaded.
std::optional<int> RunWindows(const std::string& path, const ProgramMaker& make, int argc, char** argv,
                              const Opening& opening, std::ostream& err);

// The MIDI voice of the sound module at path, with the soundfont found for a
// program in appDir (a game folder's own first); null when it cannot be
// loaded (the game then plays in silence, on the same timing).
std::unique_ptr<Sequencer> LoadSoundSequencer(const std::string& path, const std::string& appDir);

// The MIDI voice that loads the sound module at path when the first tune is
// opened, and plays in silence on the same timing when it cannot: a game
// without a tune never loads the sound libraries.
std::unique_ptr<Sequencer> SoundOnFirstTune(std::string path, std::string appDir);

// The graph layout of the map module at path, loaded at the first drawing;
// when it cannot be loaded, every drawing fails and says why.
std::unique_ptr<GraphLayout> GraphvizOnFirstUse(std::string path);

}  // namespace fw
