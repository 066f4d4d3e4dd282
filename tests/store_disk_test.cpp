// The store and the file service on a real disk: links, FIFOs and devices,
// a size limit, a full disk, a file its owner keeps from others, and what the
// ini command says when a file cannot be read or written.
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

#include "forms/failure.h"
#include "platform/disk_files.h"
#include "store/ini_command.h"
#include "store/profile.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

void Put(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

// Whether a file still holds `text`, told briefly: quests here are long.
::testing::AssertionResult Holds(const std::string& path, const std::string& text) {
  std::string now = testing::FileBytes(path);
  if (now == text) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << path << " holds " << now.size() << " bytes, not the " << text.size()
                                       << " expected";
}

// The names in a folder that a write may have left: temporary files.
std::vector<std::string> Leftovers(const std::string& folder) {
  std::vector<std::string> found;
  for (auto& entry : fs::directory_iterator(folder))
    if (entry.path().filename().string().find(".fw-") != std::string::npos) found.push_back(entry.path());
  return found;
}

// Runs `body` in a child process and gives its exit code; -1 when it was
// still running after the timeout (and was killed), or died of a signal.
int InChild(const std::function<int()>& body, double seconds = 5) {
  pid_t child = ::fork();
  if (child == 0) ::_exit(body());
  auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  int status = 0;
  while (::waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > deadline) {
      ::kill(child, SIGKILL);
      ::waitpid(child, &status, 0);
      return -1;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Becomes a user that owns none of the test's files; false when this process
// may not.
bool BecomeNobody() {
  if (::geteuid() != 0) return true;  // already a plain user
  return ::setgroups(0, nullptr) == 0 && ::setgid(65534) == 0 && ::setuid(65534) == 0;
}

// The ini command, its per-user folder in `home`.
int RunIni(const std::string& home, std::vector<std::string> args, std::string* printed = nullptr,
           std::string* said = nullptr) {
  args.insert(args.end(), {"--home", home});
  std::ostringstream out, err;
  int code = RunIniCommand(args, out, err);
  if (printed) *printed = out.str();
  if (said) *said = err.str();
  return code;
}

class RealDisk : public ::testing::Test {
 protected:
  testing::TempDir dir;
  std::string root = dir.str();
  QuestStore store{root};
};

TEST_F(RealDisk, WritesGoToTheFileALinkNames) {
  fs::create_directories(root + "/a");
  fs::create_directories(root + "/b");
  std::string quest = root + "/a/q.fbw", link = root + "/b/l.fbw", chain = root + "/b/chain.fbw";
  store.WriteINI(quest, "1", "A", "1");
  fs::create_symlink("../a/q.fbw", link);
  fs::create_symlink("l.fbw", chain);
  store.WriteINI(link, "1", "B", "2");
  store.WriteINI(chain, "1", "C", "3");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(testing::FileBytes(quest), "[1]\r\nA=1\r\nB=2\r\nC=3\r\n");
  // A link that leads nowhere is not written, and nothing is made for it.
  fs::create_symlink("../a/gone.fbw", root + "/b/dangling.fbw");
  const QuestStore::Entry entry{"1", "A", "1"};
  EXPECT_FALSE(store.WriteINIKeys(root + "/b/dangling.fbw", {&entry, 1}));
  EXPECT_FALSE(fs::exists(root + "/a/gone.fbw"));
  EXPECT_TRUE(fs::is_symlink(root + "/b/dangling.fbw"));
}

// Another program rewrites the quest between two reads of this one, in each
// way a file can change under a reader, both at once (within the timestamps'
// tick) and once the read's image has settled: the next read sees it.
TEST_F(RealDisk, AReadSeesEveryRewriteAnotherProgramMakes) {
  std::string quest = root + "/q.fbw", other = root + "/other.fbw", link = root + "/link.fbw";
  auto text = [](char v) { return std::string("[1]\r\nA=") + v + "\r\n"; };
  struct Rewrite {
    const char* how;
    std::function<void(char)> write;
  };
  const Rewrite rewrites[] = {
      {"safe write", [&](char v) { Put(other, text(v)), fs::rename(other, quest); }},
      {"same size in place",
       [&](char v) {
         int fd = ::open(quest.c_str(), O_WRONLY);
         std::string bytes = text(v);
         EXPECT_EQ(::pwrite(fd, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
         ::close(fd);
       }},
      {"link swapped",
       [&](char v) {
         Put(other, text(v));
         fs::create_symlink(other, link + ".new");
         fs::rename(link + ".new", link);
       }},
  };
  for (const Rewrite& r : rewrites)
    for (int settle : {0, 30}) {
      SCOPED_TRACE(std::string(r.how) + (settle ? ", settled" : ", at once"));
      fs::remove(quest), fs::remove(link), fs::remove(other);
      Put(quest, text('1'));
      fs::create_symlink(quest, link);
      std::string read = std::string(r.how) == "link swapped" ? link : quest;
      std::this_thread::sleep_for(std::chrono::milliseconds(settle));
      ASSERT_EQ(store.ReadINI(read, "1", "A"), "1");
      ASSERT_EQ(store.ReadINI(read, "1", "A"), "1");
      ASSERT_EQ(InChild([&] { return r.write('2'), 0; }), 0);
      EXPECT_EQ(store.ReadINI(read, "1", "A"), "2");
      EXPECT_EQ(store.ReadText(read), text('2'));
    }
}

// A disk whose files all bear one stamp and whose clock is set by the test,
// which counts the reads that reach it: a rewrite of the same size within the
// stamp's tick, which no identity can tell, and a file long settled.
struct StampedDisk : RealStoreDisk {
  std::int64_t stamp = 1'000'000'000'000, now = stamp;
  int reads = 0;
  int Identify(const std::string& path, FileIdentity& id) override {
    int error = RealStoreDisk::Identify(path, id);
    id.modifiedNs = id.changedNs = stamp;
    return error;
  }
  std::int64_t TimestampGranularityNs(const std::string&) override { return 2'000'000'000; }
  std::int64_t NowNs() override { return now; }
  int Read(const std::string& path, std::string& bytes, FileMeta* meta) override {
    ++reads;
    return RealStoreDisk::Read(path, bytes, meta);
  }
  int Scan(const std::string& path, const Looker& look) override {
    ++reads;
    return RealStoreDisk::Scan(path, look);
  }
};

TEST_F(RealDisk, AnImageIsTrustedOnlyOnceItsFileIsOlderThanItsTimestampsTick) {
  auto disk = std::make_shared<StampedDisk>();
  QuestStore stamped(root, disk);
  std::string quest = root + "/q.fbw";
  Put(quest, "[1]\r\nA=1\r\n");
  EXPECT_EQ(stamped.ReadINI(quest, "1", "A"), "1");
  disk->now += 1'999'999'999;  // still within the tick: the bytes are read again
  Put(quest, "[1]\r\nA=2\r\n");
  EXPECT_EQ(stamped.ReadINI(quest, "1", "A"), "2");
  disk->now += 1;  // settled: served from memory, the disk's bytes not read
  EXPECT_EQ(stamped.ReadINI(quest, "1", "A"), "2");
  int reads = disk->reads;
  EXPECT_EQ(stamped.ReadINI(quest, "1", "B"), "");
  EXPECT_EQ(stamped.ReadText(quest), "[1]\r\nA=2\r\n");
  EXPECT_EQ(disk->reads, reads);
  // The store's own write keeps its text, and is read back from the disk once while it is new.
  stamped.WriteINI(quest, "1", "B", "3");
  EXPECT_EQ(stamped.ReadINI(quest, "1", "B"), "3");
  EXPECT_EQ(disk->reads, reads + 2);  // the write's own read, and the check of its bytes
}

TEST_F(RealDisk, WritersThroughALinkAndThroughThePathLoseNoKey) {
  fs::create_directories(root + "/a");
  fs::create_directories(root + "/b");
  std::string quest = root + "/a/q.fbw", link = root + "/b/l.fbw";
  store.WriteINI(quest, "Story Info", "Title", "Shared");
  fs::create_symlink("../a/q.fbw", link);
  std::string names[] = {quest, link};
  pid_t children[2];
  for (int c = 0; c < 2; ++c) {
    children[c] = ::fork();
    if (children[c] == 0) {
      for (int i = 0; i < 80; ++i) store.WriteINI(names[c], "Page", std::to_string(c) + "-" + std::to_string(i), "v");
      ::_exit(0);
    }
  }
  for (pid_t child : children) ::waitpid(child, nullptr, 0);
  std::string text = testing::FileBytes(quest);
  int lost = 0;
  for (int c = 0; c < 2; ++c)
    for (int i = 0; i < 80; ++i) lost += FindProfileValue(text, "Page", std::to_string(c) + "-" + std::to_string(i)) != "v";
  EXPECT_EQ(lost, 0);
  EXPECT_TRUE(fs::is_symlink(link));
}

TEST_F(RealDisk, FifosAndDevicesReadAsMissingAndAreNeverWritten) {
  std::string fifo = root + "/fifo.fbw", quest = root + "/q.fbw";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0666), 0);
  Put(quest, "[1]\r\nk=v\r\n");
  int code = InChild([&] {
    DiskFiles files;
    bool ok = store.ReadINI(fifo, "1", "k").empty() && !store.TryReadINI(fifo, "1", "k") &&
              store.ReadINI("/dev/zero", "1", "k").empty() && files.Head(fifo, 8).empty() && files.Head("/dev/zero", 8).empty();
    const QuestStore::Entry entry{"1", "k", "w"};
    ok = ok && !store.WriteINIKeys(fifo, {&entry, 1});
    for (auto [from, to] : {std::pair{fifo, root + "/copy"}, std::pair{std::string("/dev/zero"), root + "/copy"},
                            std::pair{quest, fifo}, std::pair{quest, std::string("/dev/null")}, std::pair{quest, quest}}) {
      try {
        files.Copy(from, to);
        ok = false;
      } catch (const Failure&) {
      }
    }
    return ok ? 0 : 1;
  });
  EXPECT_EQ(code, 0) << "-1: a reader hung or grew without bound";
  struct stat st;
  ASSERT_EQ(::stat(fifo.c_str(), &st), 0);
  EXPECT_TRUE(S_ISFIFO(st.st_mode));
  EXPECT_FALSE(fs::exists(root + "/copy"));
  EXPECT_EQ(testing::FileBytes(quest), "[1]\r\nk=v\r\n");
}

TEST_F(RealDisk, HeadReadsOnlyWhatTheFileHoldsAndCopyCopiesIt) {
  DiskFiles files;
  std::string quest = root + "/q.fbw";
  Put(quest, "[1]\r\nk=v\r\n");
  ::chmod(quest.c_str(), 0640);
  EXPECT_EQ(files.Head(quest, std::size_t(1) << 50), "[1]\r\nk=v\r\n");
  EXPECT_EQ(files.Head(quest, 3), "[1]");
  Put(root + "/old", std::string(100, 'x'));
  files.Copy(quest, root + "/old");
  EXPECT_EQ(testing::FileBytes(root + "/old"), "[1]\r\nk=v\r\n");
  EXPECT_EQ(fs::status(root + "/old").permissions(), fs::perms(0640));
}

// A quest of about 12 KB, and a write that makes it a little longer.
std::string TwelveKilobyteQuest() {
  std::string text = "[Story Info]\r\nTitle=Limits\r\n";
  for (int p = 1; text.size() < 12000; ++p) text += "[" + std::to_string(p) + "]\r\nPage Text=" + std::string(200, 'p') + "\r\n";
  return text;
}

// `fablewright ini set` in a child whose files may not grow past 8 KB.
int SetUnderASizeLimit(const std::string& quest, const std::string& home, bool ignoreSignal) {
  return InChild([&] {
    struct rlimit limit{8192, 8192};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, ignoreSignal ? SIG_IGN : SIG_DFL);
    int quiet = ::open("/dev/null", O_WRONLY);
    ::dup2(quiet, 2);
    ::execl(FABLEWRIGHT_BIN, "fablewright", "ini", "set", quest.c_str(), "1", "B", "2", "--home", home.c_str(), nullptr);
    return 127;
  }, 30);
}

TEST_F(RealDisk, AWriteOverASizeLimitFailsAndKeepsTheQuest) {
  std::string quest = root + "/q.fbw", text = TwelveKilobyteQuest();
  Put(quest, text);
  EXPECT_EQ(SetUnderASizeLimit(quest, root, true), 1);
  EXPECT_TRUE(Holds(quest, text));
  EXPECT_TRUE(Leftovers(root).empty());
  // The program ignores the limit's signal itself, so the write fails and
  // says so even where the signal would have killed it.
  EXPECT_EQ(SetUnderASizeLimit(quest, root, false), 1);
  EXPECT_TRUE(Holds(quest, text));
  EXPECT_TRUE(Leftovers(root).empty());
  store.WriteINI(quest, "1", "B", "2");
  EXPECT_EQ(store.ReadINI(quest, "1", "B"), "2");
  EXPECT_TRUE(Leftovers(root).empty());
}

// A 200 KB tmpfs mounted for the test, when this process may mount one.
struct SmallDisk {
  std::string path;
  bool mounted = false;
  explicit SmallDisk(std::string at) : path(std::move(at)) {
    fs::create_directories(path);
    mounted = ::mount("tmpfs", path.c_str(), "tmpfs", 0, "size=200k") == 0;
  }
  ~SmallDisk() {
    if (mounted) ::umount2(path.c_str(), MNT_DETACH);
  }
};

TEST_F(RealDisk, AWriteToAFullDiskFailsAndKeepsTheQuest) {
  SmallDisk disk(root + "/small");
  if (!disk.mounted) GTEST_SKIP() << "cannot mount a small tmpfs here (needs root and CAP_SYS_ADMIN)";
  std::string quest = disk.path + "/q.fbw", text = TwelveKilobyteQuest() + TwelveKilobyteQuest();
  Put(quest, text);
  {
    std::ofstream filler(disk.path + "/filler", std::ios::binary);
    std::string block(4096, 'f');
    while (filler.write(block.data(), block.size())) filler.flush();
  }
  const std::string longText(30000, 'n');  // the entry only points at its value
  const QuestStore::Entry entry{"1", "Page Text", longText};
  EXPECT_FALSE(store.WriteINIKeys(quest, {&entry, 1}));
  EXPECT_TRUE(Holds(quest, text));
  EXPECT_TRUE(Leftovers(disk.path).empty());
  std::string said;
  EXPECT_EQ(RunIni(root, {"set", quest, "1", "Page Text", std::string(30000, 'n')}, nullptr, &said), 1);
  EXPECT_EQ(said, "fablewright ini: cannot write " + quest + "\n");
  EXPECT_TRUE(Holds(quest, text));
}

TEST_F(RealDisk, AFileItsPermissionsKeepFromTheWriterStaysAsItIs) {
  std::string openDir = root + "/open", shut = root + "/shut";
  fs::create_directories(openDir);
  fs::create_directories(shut);
  ::chmod(openDir.c_str(), 0777);
  ::chmod(shut.c_str(), 0755);
  Put(openDir + "/locked.fbw", "[1]\r\nk=old\r\n");
  ::chmod((openDir + "/locked.fbw").c_str(), 0444);
  Put(openDir + "/secret.fbw", "[1]\r\nk=old\r\n");
  ::chmod((openDir + "/secret.fbw").c_str(), 0600);
  Put(shut + "/shared.fbw", "[1]\r\nk=old\r\nlong=" + std::string(500, 'x') + "\r\n");
  ::chmod((shut + "/shared.fbw").c_str(), 0666);
  if (::geteuid() != 0) {
    ::chmod(shut.c_str(), 0555);  // a read-only folder for this user too
    ::chmod((openDir + "/secret.fbw").c_str(), 0);
  }
  int code = InChild([&] {
    if (!BecomeNobody()) return 77;
    const QuestStore::Entry entry{"1", "k", "new"};
    const QuestStore::Entry shorter{"1", "long", "y"};
    std::string said;
    int refused = (store.WriteINIKeys(openDir + "/locked.fbw", {&entry, 1}) ? 0 : 1) +
                  (RunIni(root, {"set", openDir + "/locked.fbw", "1", "k", "new"}, nullptr, &said) == 1 ? 2 : 0) +
                  (RunIni(root, {"get", openDir + "/secret.fbw", "1", "k"}) == 1 ? 4 : 0);
    // A read-only folder holding a writable file: the file is written in place.
    bool inPlace = store.WriteINIKeys(shut + "/shared.fbw", {&entry, 1}) &&
                   store.WriteINIKeys(shut + "/shared.fbw", {&shorter, 1});
    return refused == 7 && inPlace ? 0 : 1;
  });
  ::chmod(shut.c_str(), 0755);
  if (code == 77) GTEST_SKIP() << "cannot become an unprivileged user to test permissions";
  EXPECT_EQ(code, 0);
  EXPECT_EQ(testing::FileBytes(openDir + "/locked.fbw"), "[1]\r\nk=old\r\n");
  EXPECT_EQ(fs::status(openDir + "/locked.fbw").permissions(), fs::perms(0444));
  EXPECT_EQ(testing::FileBytes(shut + "/shared.fbw"), "[1]\r\nk=new\r\nlong=y\r\n");
  EXPECT_TRUE(Leftovers(openDir).empty());
}

TEST_F(RealDisk, TheIniCommandSaysWhenAFileCannotBeReadOrWritten) {
  std::string quest = root + "/q.fbw", printed, said;
  EXPECT_EQ(RunIni(root, {"set", root + "/missing/q.fbw", "1", "k", "v"}, nullptr, &said), 1);
  EXPECT_EQ(said, "fablewright ini: cannot write " + root + "/missing/q.fbw\n");
  EXPECT_EQ(RunIni(root, {"get", quest, "1", "k"}, &printed, &said), 1);
  EXPECT_EQ(printed, "");
  EXPECT_EQ(said, "fablewright ini: cannot read " + quest + "\n");
  EXPECT_EQ(RunIni(root, {"get", root, "1", "k"}), 1);
  Put(quest, "[1]\r\nk=v\r\n");
  EXPECT_EQ(RunIni(root, {"get", quest, "1", "other"}, &printed, &said), 0);
  EXPECT_EQ(printed, "\n");
  EXPECT_EQ(said, "");
}

}  // namespace
}  // namespace fw
