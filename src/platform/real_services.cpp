#include "platform/real_services.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <sstream>
#include <string>
#include <vector>

#include "forms/codepage.h"
#include "forms/paths.h"
#include "platform/program_search.h"

extern char** environ;

namespace fw {
namespace {

// Starts the program without waiting, in the folder given ("" for ours);
// children are reaped by the system.
bool Spawn(const std::vector<std::string>& words, const std::string& folder = "") {
  if (words.empty()) return false;
  std::string program = FindProgram(words[0]);
  if (program.empty()) return false;
  std::signal(SIGCHLD, SIG_IGN);
  std::vector<char*> argv;
  for (const std::string& w : words) argv.push_back(const_cast<char*>(w.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  pid_t pid;
  bool started = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  return started;
}

}  // namespace

void IdlePump::Pump(Program&) { ::usleep(1000); }

// The window style is not ours to apply: the child makes its own windows, and
// no desktop here lets the starter choose how they first show.
bool SpawnProcesses::Start(const std::vector<std::string>& argv, int /*windowStyle*/, const std::string& folder) {
  if (argv.empty()) return false;
  std::vector<std::string> words{HostPath(argv[0])};
  for (std::size_t i = 1; i < argv.size(); ++i) words.push_back(Utf8FromCp1252(argv[i]));
  return Spawn(words, folder);
}

void SpawnProcesses::Open(std::string_view target) { Spawn({"xdg-open", HostPath(target)}); }

}  // namespace fw
