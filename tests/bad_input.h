#pragma once
// The catalogue of bad files that every reader of the program is fed, and a
// way to run a reader on one in a child process: a crash or a hang is then a
// failure that names the file, not the end of the test run, and a file that
// nobody may read is tested as an unprivileged user even when the tests run
// as root.
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "test_program.h"

namespace fw::testing {

namespace fs = std::filesystem;

// One kind of bad file: made at a path by `make`.
struct BadFile {
  std::string name;
  std::function<void(const fs::path&)> make;
};

inline void WriteBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// Bytes no text editor would write: every byte value, many times, in an
// order that a fixed formula gives.
inline std::string BinaryBytes(std::size_t n) {
  std::string s(n, '\0');
  unsigned x = 2463534242u;
  for (auto& c : s) {
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    c = static_cast<char>(x & 0xFF);
  }
  return s;
}

// A profile file of 100 MB (20 MB in the sanitized suite, where every read
// of it costs many times more): page after page of plain keys, and no page 1
// until its very end.
inline void WriteHugeQuest(const fs::path& path) {
  std::string block;
  for (int i = 0; block.size() < (1 << 20); ++i)
    block += "[p" + std::to_string(i) + "]\r\nLocation=Far\r\nPage Text=" + std::string(200, 'x') + "\r\n";
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  const std::size_t size = (SmallCases() ? 20u : 100u) << 20;
  for (std::size_t written = 0; written < size; written += block.size()) out << block;
  out << "[1]\r\nPage Text=At the end.\r\n";
}

// Every kind of bad file of the catalogue. `good` is a quest's text that the
// kinds which damage a good file start from.
inline std::vector<BadFile> BadFiles(const std::string& good) {
  std::string lf = good;
  std::erase(lf, '\n');  // CR alone
  return {
      {"an empty file", [](const fs::path& p) { WriteBytes(p, ""); }},
      {"a binary file", [](const fs::path& p) { WriteBytes(p, BinaryBytes(64 << 10)); }},
      {"a huge file", [](const fs::path& p) { WriteHugeQuest(p); }},
      {"a line of 1 MB",
       [good](const fs::path& p) { WriteBytes(p, "[1]\r\nPage Text=" + std::string(1 << 20, 'w') + "\r\n" + good); }},
      {"NUL bytes",
       [good](const fs::path& p) { WriteBytes(p, std::string("[1\0]\r\nPage\0Text=a\0b\r\n", 20) + good); }},
      {"bytes that are not Windows-1252",
       [](const fs::path& p) { WriteBytes(p, "[1]\r\nPage Text=\x81\x8D\x8F\x90\x9D \xC3\x28 \xF0\x28\x8C\r\n"); }},
      {"UTF-8 with a byte-order mark", [good](const fs::path& p) { WriteBytes(p, "\xEF\xBB\xBF" + good); }},
      {"CR line ends only", [lf](const fs::path& p) { WriteBytes(p, lf); }},
      {"a folder", [](const fs::path& p) { fs::create_directories(p); }},
      {"a dangling link", [](const fs::path& p) { fs::create_symlink(p.parent_path() / "gone", p); }},
      {"a file nobody may read",
       [good](const fs::path& p) {
         WriteBytes(p, good);
         fs::permissions(p, fs::perms::none);
       }},
  };
}

// What a file is now: its kind, size and bytes, to tell that a reader left
// it as it was.
inline std::string Fingerprint(const fs::path& path) {
  std::error_code ec;
  auto st = fs::symlink_status(path, ec);
  if (ec) return "missing";
  if (fs::is_symlink(st)) return "link to " + fs::read_symlink(path, ec).string();
  if (fs::is_directory(st)) return "folder";
  std::string bytes;
  int fd = ::open(path.c_str(), O_RDONLY);
  if (fd >= 0) {
    char buf[1 << 16];
    for (ssize_t n; (n = ::read(fd, buf, sizeof buf)) > 0;) bytes.append(buf, static_cast<std::size_t>(n));
    ::close(fd);
  }
  return std::to_string(fs::file_size(path, ec)) + " bytes, hash " + std::to_string(std::hash<std::string>{}(bytes)) +
         ", mode " + std::to_string(static_cast<int>(st.permissions()));
}

// How a child run ended.
struct ChildRun {
  bool finished = false;  // returned from `run` in time, without a signal
  std::string said;       // what `run` gave back
  std::string how;        // "exit N", "signal N" or "timed out"
};

// Runs `run` in a child process, as the unprivileged user "nobody" when the
// tests run as root (unless `asNobody` is false), for at most `seconds`.
inline ChildRun InChild(const std::function<std::string()>& run, unsigned seconds = 120, bool asNobody = true) {
  int pipeFds[2];
  if (::pipe(pipeFds) != 0) return {false, "", "no pipe"};
  pid_t pid = ::fork();
  if (pid == 0) {
    ::close(pipeFds[0]);
    ::alarm(seconds);
    if (asNobody && ::getuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0))
      ::_exit(3);
    std::string said = run();
    for (std::size_t done = 0; done < said.size();) {
      ssize_t n = ::write(pipeFds[1], said.data() + done, said.size() - done);
      if (n <= 0) break;
      done += static_cast<std::size_t>(n);
    }
    ::_exit(0);
  }
  ::close(pipeFds[1]);
  ChildRun r;
  char buf[4096];
  for (ssize_t n; (n = ::read(pipeFds[0], buf, sizeof buf)) > 0;) r.said.append(buf, static_cast<std::size_t>(n));
  ::close(pipeFds[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  if (WIFEXITED(status)) {
    r.how = "exit " + std::to_string(WEXITSTATUS(status));
    r.finished = WEXITSTATUS(status) == 0;
  } else if (WIFSIGNALED(status)) {
    r.how = WTERMSIG(status) == SIGALRM ? "timed out" : "signal " + std::to_string(WTERMSIG(status));
  }
  return r;
}

// Hands a folder and all it holds to the user the child runs as, so that
// the child may change them and a file it should leave alone is a real test.
inline void GiveToChild(const fs::path& dir) {
  if (::getuid() != 0) return;
  (void)::lchown(dir.c_str(), 65534, 65534);
  for (const auto& entry : fs::recursive_directory_iterator(dir))
    (void)::lchown(entry.path().c_str(), 65534, 65534);
}

}  // namespace fw::testing
