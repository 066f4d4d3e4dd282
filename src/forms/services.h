#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fw {

class Program;

// The platform behind the logic, as small interfaces. Each has a real backend
// (the desktop, the terminal) and a headless one (scripts and tests). Paths
// and texts passed here are the program's own Windows-1252 text.

// The time of day, for Timer and the event loop.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual double Now() = 0;  // seconds since midnight
};

// One DoEvents: let pending user and system events run. The program runs the
// timers that fall due afterwards itself.
class EventPump {
 public:
  virtual ~EventPump() = default;
  virtual void Pump(Program& program) = 0;
};

// What a file dialog is asked.
struct FileDialogRequest {
  std::string form, dialog;  // e.g. "FrmGame", "questfile"
  bool save = false;
  std::string filter, defaultExt, initDir, fileName;
  // Where the dialog opens (a host folder), as the program decides it; ""
  // leaves it to the desktop. InitDir is what the logic set.
  std::string startDir;
};

// Message boxes and file dialogs: both block until the user answers.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  // Gives the button: 1 OK, 6 Yes, 7 No.
  virtual int MsgBox(std::string_view prompt, int style, std::string_view title) = 0;
  // The chosen full path, or nullopt when cancelled.
  virtual std::optional<std::string> FileDialog(const FileDialogRequest& request) = 0;
};

// Starting other programs.
class Processes {
 public:
  virtual ~Processes() = default;
  // Starts the program argv[0] (a path, or a bare name looked for on the
  // PATH) with the arguments after it, each passed as it stands, without
  // waiting, in the host folder given (the program's current folder; ""
  // keeps the process's own); false when the program is not found.
  virtual bool Start(const std::vector<std::string>& argv, int windowStyle, const std::string& folder) = 0;
  // Opens a document or address with the desktop's associated program.
  virtual void Open(std::string_view target) = 0;
};

// File operations of the logic. Each throws Failure when it cannot be done,
// its text saying why in words a message box can show ("no space left on the
// disk"). Paths are host paths (UTF-8, "/").
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual void Copy(const std::string& from, const std::string& to) = 0;
  virtual void MakeDir(const std::string& path) = 0;
  virtual void Remove(const std::string& path) = 0;
  virtual bool Exists(const std::string& path) = 0;
  virtual bool IsDirectory(const std::string& path) = 0;
  // Whether the user may make files in the folder.
  virtual bool Writable(const std::string& folder) = 0;
  // The first bytes of a file, "" when unreadable.
  virtual std::string Head(const std::string& path, std::size_t bytes) = 0;
};

// Random draws, uniform in [0, 1).
class Random {
 public:
  virtual ~Random() = default;
  virtual float Rnd() = 0;
  virtual void Randomize(double seed) = 0;
};

// One MIDI voice. Paths are host paths. When a tune started by Play reaches
// its end, the backend calls MidiNotify(program, tune) on the program's
// thread (through Program::Post).
class Sequencer {
 public:
  virtual ~Sequencer() = default;
  virtual bool Open(const std::string& file) = 0;
  // From the start when from and to are both 0, else the stretch in ms.
  virtual bool Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
                    std::uint32_t tune) = 0;
  virtual void Close(const std::string& file) = 0;
};

struct ControlId;

// The media player controls (a sound player, a movie in a panel). The backend
// plays; the control's values (FileName, PlayState, ReadyState, PlayCount)
// live in the surface. At the end of its last round a backend sets the
// control's PlayState to 0 on the program's thread.
class MediaPlayers {
 public:
  virtual ~MediaPlayers() = default;
  // Loads a host file; false when it cannot be played.
  virtual bool Load(Program& program, ControlId player, const std::string& file) = 0;
  virtual void Unload(Program& program, ControlId player) = 0;
  virtual void Play(Program& program, ControlId player, int playCount) = 0;
  virtual void Stop(Program& program, ControlId player) = 0;
  virtual void SetPlayCount(Program& program, ControlId player, int playCount) = 0;
  // The seconds until the player stops by itself, nullopt when it is not
  // playing or the backend cannot tell.
  virtual std::optional<double> SecondsLeft(Program& program, ControlId player);
};

// One file a game folder needs so that a copy of this program runs on a
// machine that has never had it: a host file, and where it goes, relative to
// the game folder ("lib/libfoo.so.1").
struct RuntimeFile {
  std::string from, to;
};

// Where a runtime file comes from, for the licences a game folder carries:
// the Debian package that installed it, that package's source and version,
// and its copyright file (a host path; packages of one source whose
// copyright files say the same name the same file). All "" when no package
// owns the file.
struct RuntimeOrigin {
  std::string to;  // as in RuntimeFile
  std::string package, source, version, copyright;
};

// What a copy of the running executable needs besides itself, worked out
// from the executable. Paths are host paths.
class Runtime {
 public:
  virtual ~Runtime() = default;
  // Every file, in the order they are copied.
  virtual std::vector<RuntimeFile> Files() = 0;
  // Where each of those files comes from, in the same order.
  virtual std::vector<RuntimeOrigin> Origins() = 0;
  // Makes the copy of the executable in the folder find the copied files
  // instead of the system's; throws Failure when it cannot.
  virtual void Adopt(const std::string& folder, const std::string& exeCopy) = 0;
};

// One node of a graph after layout: its name in the graph, its centre and
// its size, in points with y upwards, as the layout engine gives them.
struct LaidOutNode {
  std::string name;
  double x = 0, y = 0, width = 0, height = 0;
};

// A graph laid out and drawn: the drawing in the format asked for, the
// bounding box of the layout (points, y upwards) and where each node went.
struct GraphDrawing {
  std::string bytes;
  double left = 0, bottom = 0, right = 0, top = 0;
  std::vector<LaidOutNode> nodes;
};

// Graph layout (Graphviz): a graph in the DOT language (UTF-8) laid out by
// one of its engines ("dot", "sfdp") and drawn in one of its formats ("svg",
// "dot", "png", "pdf").
class GraphLayout {
 public:
  virtual ~GraphLayout() = default;
  // False, with the reason in `error`, when it cannot be done.
  virtual bool Draw(const std::string& dot, const std::string& engine, const std::string& format,
                    GraphDrawing& out, std::string& error) = 0;
};

// The services of one running program.
struct Services {
  Clock* clock;
  EventPump* pump;
  Dialogs* dialogs;
  Processes* processes;
  FileSystem* files;
  Random* random;
  Sequencer* sequencer;
  MediaPlayers* players;
  Runtime* runtime = nullptr;  // none: a game folder gets no runtime files
  GraphLayout* graphs = nullptr;  // none: the quest map cannot be drawn
};

}  // namespace fw
