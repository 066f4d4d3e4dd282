// The store against other processes: a writer killed at random points
// thousands of times, and the player's character written into the editor's
// working file while the editor writes and saves it. Each writer is a child
// process made by fork, using the store as the program does.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "store/profile.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

// A child process running `work`, which ends with the test should the test end first.
pid_t Spawn(const std::function<int()>& work) {
  pid_t pid = ::fork();
  if (pid == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::_exit(work());
  }
  return pid;
}

// The exit code of a child, or -1 when it did not exit by itself.
int Wait(pid_t pid) {
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The temporary files a write of `file` makes beside it.
int TempsBeside(const fs::path& file) {
  int n = 0;
  for (const auto& entry : fs::directory_iterator(file.parent_path()))
    if (entry.path().filename().string().starts_with("." + file.filename().string() + ".fw-")) ++n;
  return n;
}

// Write number i of a run goes to key i % kKeys, in eight sections of five keys.
constexpr int kKeys = 40;
std::string SectionOf(long i) { return std::to_string(i % kKeys / 5 + 1); }
std::string KeyOf(long i) { return "K" + std::to_string(i % 5); }

TEST(StoreCrash, AWriterKilledAtRandomPointsLeavesEveryKeyAsOneRunOfItsWritesLeftIt) {
  testing::TempDir dir;
  fs::path quest = dir.path / "quest.fbw";
  QuestStore store(dir.str());
  std::vector<QuestStore::Entry> start;
  std::vector<std::string> names;
  names.reserve(2 * kKeys);
  for (long i = 0; i < kKeys; ++i) {
    names.push_back(SectionOf(i));
    names.push_back(KeyOf(i));
    start.push_back({names[2 * i], names[2 * i + 1], "0"});
  }
  ASSERT_TRUE(store.WriteINIKeys(quest.string(), start));

  std::mt19937 random(std::random_device{}());
  long next = 1;  // the number of the next write, and its value
  int rounds = 0, leftTemps = 0;
  // The sanitized suite, where a fork and a write cost many times more, kills
  // fewer. The kills are counted; the writes are a goal pursued for a while
  // after them, since a synced write's cost swings with the machine's load.
  const int kRounds = testing::SmallCases() ? 30 : 100;
  const long kWrites = testing::SmallCases() ? 500 : 2000;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(testing::SmallCases() ? 15 : 60);
  while (rounds < kRounds || (next < kWrites && std::chrono::steady_clock::now() < deadline)) {
    pid_t writer = Spawn([&] {
      for (long i = next; i < next + 100000; ++i) store.WriteINI(quest.string(), SectionOf(i), KeyOf(i), std::to_string(i));
      return 0;
    });
    ::usleep(random() % 40000);
    ::kill(writer, SIGKILL);
    Wait(writer);
    ++rounds;

    // Every key once, in its place, and the file as one run of writes left
    // it: the last write found, and every write before it, and none after.
    std::vector<ProfileEntry> entries = ProfileEntries(testing::FileBytes(quest));
    ASSERT_EQ(entries.size(), static_cast<std::size_t>(kKeys)) << "after round " << rounds;
    long last = 0;
    for (const ProfileEntry& e : entries) last = std::max(last, std::stol(e.value));
    ASSERT_GE(last, next - 1);
    for (long k = 0; k < kKeys; ++k) {
      long expected = last - ((last - k) % kKeys + kKeys) % kKeys;
      EXPECT_EQ(entries[k].section, SectionOf(k));
      EXPECT_EQ(entries[k].key, KeyOf(k));
      ASSERT_EQ(entries[k].value, std::to_string(expected > 0 ? expected : 0)) << "after write " << last;
    }
    // A writer killed between making its temporary file and renaming it
    // leaves that file; the next writer clears it.
    int temps = TempsBeside(quest);
    ASSERT_LE(temps, 1);
    leftTemps += temps;
    next = last + 1;
  }
  EXPECT_GT(next, kRounds) << "the writers got only " << next - 1 << " writes done";
  store.WriteINI(quest.string(), "1", "K0", "after");
  EXPECT_EQ(TempsBeside(quest), 0);
  std::cout << next - 1 << " writes in " << rounds << " rounds; " << leftTemps
            << " kills left a temporary file, each cleared by the next write\n";
}

// The children start their writes together.
struct StartLine {
  int fds[2] = {-1, -1};
  StartLine() { EXPECT_EQ(::pipe(fds), 0); }
  ~StartLine() {
    for (int fd : fds)
      if (fd >= 0) ::close(fd);
  }
  // In a child: returns once the parent has called Go.
  void Wait() {
    char c;
    ::close(fds[1]);
    (void)!::read(fds[0], &c, 1);
  }
  void Go() {
    ::close(fds[1]);
    fds[1] = -1;
  }
};

// The editor's test play writes the player's character into the working
// file while the editor writes page fields into it and saves it over the
// quest, which a Save does by a whole copy.
TEST(StoreConcurrency, ACharacterWrittenWhileTheEditorWritesAndSavesIsNeitherLostNorTorn) {
  testing::TempDir dir;
  fs::path working = dir.path / "tmpquest.ini", quest = dir.path / "quest.fbw";
  QuestStore store(dir.str());
  store.WriteINI(working.string(), "1", "Page Text", "One.");
  store.WriteINI(quest.string(), "1", "Page Text", "Old.");
  constexpr int kRounds = 120;
  const char* fields[] = {"CharName", "CharHp", "CharAtk", "CharDef", "CharLevel"};
  StartLine line;
  pid_t player = Spawn([&] {
    line.Wait();
    for (int n = 1; n <= kRounds; ++n) {
      std::string v = std::to_string(n);
      std::vector<QuestStore::Entry> entries;
      for (const char* f : fields) entries.push_back({"CharacterData", f, v});
      if (!store.WriteINIKeys(working.string(), entries)) return 1;
    }
    return 0;
  });
  pid_t editor = Spawn([&] {
    line.Wait();
    for (int n = 1; n <= kRounds; ++n) {
      store.WriteINI(working.string(), std::to_string(n % 5 + 2), "Location", "Room " + std::to_string(n));
      if (n % 10 == 0 && !store.CopyFile(working.string(), quest.string())) return 1;
    }
    return 0;
  });
  line.Go();
  ASSERT_EQ(Wait(player), 0);
  ASSERT_EQ(Wait(editor), 0);

  std::string text = testing::FileBytes(working);
  for (const char* f : fields) EXPECT_EQ(FindProfileValue(text, "CharacterData", f), std::to_string(kRounds)) << f;
  for (int n = kRounds - 4; n <= kRounds; ++n)
    EXPECT_EQ(FindProfileValue(text, std::to_string(n % 5 + 2), "Location"), "Room " + std::to_string(n));
  // The quest is a whole copy of the working file as it stood at the last
  // save: every page written by then, and one character, never half of two.
  std::map<std::string, std::string> saved;
  for (const ProfileEntry& e : ProfileEntries(testing::FileBytes(quest))) saved[e.section + "/" + e.key] = e.value;
  EXPECT_EQ(saved["1/Page Text"], "One.");
  for (int n = kRounds - 4; n <= kRounds; ++n)
    EXPECT_EQ(saved[std::to_string(n % 5 + 2) + "/Location"], "Room " + std::to_string(n));
  for (const char* f : fields) EXPECT_EQ(saved[std::string("CharacterData/") + f], saved["CharacterData/CharName"]);
}

}  // namespace
}  // namespace fw
