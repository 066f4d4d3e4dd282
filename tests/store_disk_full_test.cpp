// Each kind of write that replaces a whole file, meeting a disk too full for
// it (a single key is tested with the real disk's other cases): the old file
// stays whole, the writer is told, and no temporary file is left. The disk fills two ways: a
// file-size limit on the writing process (EFBIG), and a small tmpfs filled
// up (ENOSPC), mounted in a mount namespace of the test's own where it may.
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "forms/failure.h"
#include "platform/disk_files.h"
#include "store/profile.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

// A quest of about 64 KB.
std::string BigQuest() {
  std::string text = "[Story Info]\r\nTitle=Full\r\n";
  for (int p = 1; p <= 100; ++p)
    text += "[" + std::to_string(p) + "]\r\nPage Text=" + std::string(600, 'a' + p % 26) + "\r\n";
  return text;
}

// What a child found, as its exit code.
enum Found { kKept = 0, kClaimedDone = 2, kOldFileChanged = 3, kTempLeft = 4, kNoTmpfs = 5, kSetupFailed = 6 };

// One write that needs more room than there is, on `target` in `folder`.
struct Case {
  const char* name;
  std::function<bool(const QuestStore&, const fs::path& folder, const fs::path& target)> write;
  std::function<void(const fs::path& folder)> prepare = [](const fs::path&) {};  // before the disk fills
};

const Case kCases[] = {
    {"a saved game over an older one",
     [](const QuestStore& s, const fs::path&, const fs::path& t) {
       std::string room(2000, 'r');
       const QuestStore::Entry e[] = {{"saved game", "room", room}, {"saved game", "page", "5"}, {"List Data", "0", "Lamp"}};
       return s.WriteINIKeys(t.string(), e);
     }},
    {"the editor's Save, a copy of the working file",
     [](const QuestStore& s, const fs::path& folder, const fs::path& t) {
       return s.CopyFile((folder / "tmpquest.ini").string(), t.string());
     },
     [](const fs::path& folder) {
       std::ofstream(folder / "tmpquest.ini", std::ios::binary) << BigQuest() << "[101]\r\nPage Text=New.\r\n";
     }},
    {"a page taken out",
     [](const QuestStore& s, const fs::path&, const fs::path& t) { return s.DeleteSection(t.string(), "50"); }},
    {"a game packaged again over the old one",
     [](const QuestStore&, const fs::path& folder, const fs::path& t) {
       try {
         DiskFiles().Copy((folder / "new.fbw").string(), t.string());
         return true;
       } catch (const Failure&) {
         return false;
       }
     },
     [](const fs::path& folder) { std::ofstream(folder / "new.fbw", std::ios::binary) << BigQuest() << BigQuest(); }},
};

bool TempBeside(const fs::path& file) {
  for (const auto& entry : fs::directory_iterator(file.parent_path()))
    if (entry.path().filename().string().starts_with("." + file.filename().string() + ".fw-")) return true;
  return false;
}

// The write of `c` after `fill` has left too little room, checked where it ran.
Found WriteWithoutRoom(const Case& c, const fs::path& folder, const std::function<bool()>& fill) {
  fs::path quest = folder / "quest.fbw";
  std::string old = BigQuest();
  std::ofstream(quest, std::ios::binary) << old;
  QuestStore store(folder.string());
  c.prepare(folder);
  if (!fill()) return kSetupFailed;
  if (c.write(store, folder, quest)) return kClaimedDone;
  if (testing::FileBytes(quest) != old) return kOldFileChanged;
  if (TempBeside(quest)) return kTempLeft;
  return kKept;
}

int InChild(const std::function<int()>& work) {
  pid_t pid = ::fork();
  if (pid == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::_exit(work());
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StoreDiskFull, AFileSizeLimitLeavesTheOldFileWhole) {
  for (const Case& c : kCases) {
    testing::TempDir dir;
    int found = InChild([&] {
      return WriteWithoutRoom(c, dir.path, [] {
        // Past the limit a write fails with EFBIG instead of killing the writer.
        ::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{16 * 1024, 16 * 1024};
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
      });
    });
    EXPECT_EQ(found, kKept) << c.name;
  }
}

TEST(StoreDiskFull, AFullTmpfsLeavesTheOldFileWhole) {
  for (const Case& c : kCases) {
    testing::TempDir dir;
    int found = InChild([&] {
      // The mount is seen by this child alone, and goes with it.
      if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
          ::mount("tmpfs", dir.path.c_str(), "tmpfs", 0, "size=256k") != 0)
        return static_cast<int>(kNoTmpfs);
      return static_cast<int>(WriteWithoutRoom(c, dir.path, [&] {
        // Filled up to within 8 KB of its end.
        std::ofstream filler(dir.path / "filler", std::ios::binary);
        std::string block(4096, 'x');
        while (filler.write(block.data(), block.size())) filler.flush();
        filler.close();
        fs::resize_file(dir.path / "filler", fs::file_size(dir.path / "filler") - 8192);
        return true;
      }));
    });
    if (found == kNoTmpfs) GTEST_SKIP() << "no mount namespace for this user";
    EXPECT_EQ(found, kKept) << c.name;
  }
}

}  // namespace
}  // namespace fw
