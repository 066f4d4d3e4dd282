// The store's writes on an in-memory disk that fails where a test says: a
// full disk, a size limit, an I/O error, a folder that takes no new file.
#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <set>

#include "store/profile.h"
#include "store/store_disk.h"

namespace fw {
namespace {

// Files in memory, every text each one held kept in order. Writes fail with
// `fullError` once files have grown by `room` bytes in all.
class FakeDisk : public StoreDisk {
 public:
  struct File {
    std::string bytes;
    FileMeta meta{0644};
    bool regular = true;
  };
  std::map<std::string, File> files;
  std::map<std::string, std::vector<std::string>> history;
  std::set<std::string> folders{"/q"};
  int createError = 0, renameError = 0, fullError = ENOSPC;
  static constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);
  std::size_t room = kUnlimited;

  int Locate(const std::string& path, std::string& real) override {
    real = path;
    return folders.count(FolderOf(path)) ? 0 : ENOENT;
  }
  std::unique_ptr<Lock> LockFolder(const std::string& f) override {
    return folders.count(f) ? std::make_unique<Lock>() : nullptr;
  }
  int Read(const std::string& path, std::string& bytes, FileMeta* meta) override {
    auto it = files.find(path);
    if (it == files.end()) return ENOENT;
    if (!it->second.regular) return EINVAL;
    bytes = it->second.bytes;
    if (meta) *meta = it->second.meta;
    return 0;
  }
  int CheckWritable(const std::string& path) override { return files.at(path).meta.mode & 0200 ? 0 : EACCES; }
  std::vector<std::string> List(const std::string& f) override {
    std::vector<std::string> names;
    for (auto& [path, file] : files)
      if (FolderOf(path) == f) names.push_back(NameOf(path));
    return names;
  }
  int Create(const std::string& path, const FileMeta* like) override {
    if (createError) return createError;
    if (files.count(path)) return EEXIST;
    files[path].meta = like ? *like : FileMeta{0644};
    return 0;
  }
  int WriteAt(const std::string& path, std::size_t offset, std::string_view bytes) override {
    std::string& b = files.at(path).bytes;
    std::size_t growth = offset + bytes.size() > b.size() ? offset + bytes.size() - b.size() : 0;
    int error = 0;
    if (growth > room) {
      bytes.remove_suffix(growth - room);
      growth = room;
      error = fullError;
    }
    room -= growth;
    b.resize(std::max(b.size(), offset + bytes.size()));
    b.replace(offset, bytes.size(), bytes);
    history[path].push_back(b);
    return error;
  }
  int Truncate(const std::string& path, std::size_t size) override {
    std::string& b = files.at(path).bytes;
    Free(b.size() - size);
    b.resize(size);
    history[path].push_back(b);
    return 0;
  }
  int Rename(const std::string& from, const std::string& to) override {
    if (renameError) return renameError;
    files[to] = files.at(from);
    files.erase(from);
    history[to].push_back(files[to].bytes);
    return 0;
  }
  int Remove(const std::string& path) override {
    Free(files.at(path).bytes.size());
    files.erase(path);
    return 0;
  }
  void SyncFolder(const std::string&) override {}
  int MakeFolder(const std::string& path) override {
    if (createError) return createError;
    folders.insert(path);
    return 0;
  }
  int TryLockFile(const std::string&, std::unique_ptr<Lock>& lock) override {
    lock = std::make_unique<Lock>();
    return 0;
  }

 private:
  void Free(std::size_t bytes) { room += std::min(bytes, kUnlimited - room); }
};

constexpr const char* kQuest = "/q/quest.fbw";

class SafeWrites : public ::testing::Test {
 protected:
  std::shared_ptr<FakeDisk> disk = std::make_shared<FakeDisk>();
  QuestStore store{"/home", disk};
  std::string old = "[1]\r\nPage Text=" + std::string(2000, 'o') + "\r\nLocation=Gate\r\n";

  void SetUp() override { disk->files[kQuest].bytes = old; }
  bool Write(std::string_view value) {
    const QuestStore::Entry entry{"1", "Page Text", value};
    return store.WriteINIKeys(kQuest, {&entry, 1});
  }
  std::vector<std::string> Paths() {
    std::vector<std::string> paths;
    for (auto& [path, file] : disk->files) paths.push_back(path);
    return paths;
  }
};

TEST_F(SafeWrites, AFailedWriteKeepsTheOldFileByteForByteAndLeavesNothing) {
  for (int error : {ENOSPC, EFBIG, EIO, EDQUOT}) {
    disk->room = 100;
    disk->fullError = error;
    EXPECT_FALSE(Write(std::string(3000, 'n'))) << error;
    EXPECT_EQ(disk->files[kQuest].bytes, old) << error;
    EXPECT_EQ(Paths(), std::vector<std::string>{kQuest}) << error;
    EXPECT_TRUE(disk->history[kQuest].empty()) << error;
  }
  disk->room = FakeDisk::kUnlimited;
  disk->renameError = EIO;
  EXPECT_FALSE(Write("new"));
  EXPECT_EQ(Paths(), std::vector<std::string>{kQuest});
  // A disk too full to make even the temporary file is no reason to write in place.
  disk->createError = ENOSPC;
  EXPECT_FALSE(Write("new"));
  EXPECT_TRUE(disk->history[kQuest].empty());
}

TEST_F(SafeWrites, AWriteTheFilesModeForbidsIsRefused) {
  disk->files[kQuest].meta.mode = 0444;
  EXPECT_FALSE(Write("new"));
  EXPECT_EQ(disk->files[kQuest].bytes, old);
  disk->files[kQuest].regular = false;
  disk->files[kQuest].meta.mode = 0644;
  EXPECT_FALSE(Write("new"));
  EXPECT_TRUE(disk->history[kQuest].empty());
}

TEST_F(SafeWrites, AFolderThatTakesNoNewFileHasItWrittenInPlaceNeverShorter) {
  disk->files[kQuest].meta.mode = 0604;
  for (int refusal : {EACCES, EPERM}) {
    for (std::size_t length : {10u, 2000u, 5000u}) {
      disk->createError = refusal;
      disk->files[kQuest].bytes = old;
      disk->history.clear();
      std::string value(length, 'n');
      ASSERT_TRUE(Write(value)) << length;
      std::string now = disk->files[kQuest].bytes;
      EXPECT_EQ(FindProfileValue(now, "1", "Page Text"), value.substr(0, kMaxValueLength));
      EXPECT_EQ(FindProfileValue(now, "1", "Location"), "Gate");
      // A writer killed at any step leaves one of these texts.
      for (const std::string& step : disk->history[kQuest])
        EXPECT_GE(step.size(), std::min(old.size(), now.size())) << length;
      EXPECT_EQ(disk->files[kQuest].meta.mode, 0604u);
    }
  }
  // The same folder with a rename it refuses (a sticky folder, say).
  disk->createError = 0;
  disk->renameError = EPERM;
  EXPECT_TRUE(Write("renamed"));
  EXPECT_EQ(FindProfileValue(disk->files[kQuest].bytes, "1", "Page Text"), "renamed");
  EXPECT_EQ(Paths(), std::vector<std::string>{kQuest});
  // A new file has no place to go.
  disk->createError = EACCES;
  const QuestStore::Entry entry{"a", "b", "c"};
  EXPECT_FALSE(store.WriteINIKeys("/q/new.fbw", {&entry, 1}));
  EXPECT_EQ(Paths(), std::vector<std::string>{kQuest});
}

TEST_F(SafeWrites, AnInPlaceWriteThatFailsPutsTheOldBytesBack) {
  disk->createError = EACCES;
  disk->room = 50;
  EXPECT_FALSE(Write(std::string(3000, 'n')));
  EXPECT_EQ(disk->files[kQuest].bytes, old);
}

TEST_F(SafeWrites, TemporaryFilesOfDeadWritersGoAtTheNextWrite) {
  for (const char* left : {"/q/.quest.fbw.fw-4242", "/q/.quest.fbw.fw-77-3", "/q/.other.fbw.fw-5", "/q/notes.txt"})
    disk->files[left].bytes = "left";
  EXPECT_TRUE(Write("new"));
  EXPECT_EQ(Paths(), (std::vector<std::string>{"/q/.other.fbw.fw-5", "/q/notes.txt", kQuest}));
}

TEST_F(SafeWrites, TheCodeZeroEndsANameOrAValue) {
  const QuestStore::Entry entries[] = {{"1", "Page Text", std::string_view("a\0b", 3)},
                                       {std::string_view("2\0x", 3), "k", "v"},
                                       {std::string_view("\0", 1), "k", "lost"}};
  EXPECT_TRUE(store.WriteINIKeys(kQuest, entries));
  EXPECT_EQ(disk->files[kQuest].bytes, "[1]\r\nPage Text=a\r\nLocation=Gate\r\n[2]\r\nk=v\r\n");
}

// Taking a page out: every section of its name, headers to the next header,
// with the rest of the file as it was, under the same safety as a write.
TEST_F(SafeWrites, ASectionIsTakenOutWholeOrNotAtAll) {
  disk->files[kQuest].bytes = "[Quest Data]\r\nNumber Of Pages=3\r\n[2]\r\nPage Text=b\r\n; note\r\n\r\n"
                              "[3]\r\nPage Text=c\r\n [ 2 ] \r\nLocation=again\r\n";
  std::string before = disk->files[kQuest].bytes;
  disk->room = 0;
  disk->files[kQuest].meta.mode = 0644;
  disk->createError = ENOSPC;
  EXPECT_FALSE(store.DeleteSection(kQuest, "2"));
  EXPECT_EQ(disk->files[kQuest].bytes, before);
  disk->createError = 0;
  disk->room = FakeDisk::kUnlimited;
  EXPECT_TRUE(store.DeleteSection(kQuest, "2"));
  EXPECT_EQ(disk->files[kQuest].bytes, "[Quest Data]\r\nNumber Of Pages=3\r\n[3]\r\nPage Text=c\r\n");
  // A page that is not there, or a file that is not, costs no write.
  disk->history.clear();
  EXPECT_TRUE(store.DeleteSection(kQuest, "9"));
  EXPECT_TRUE(store.DeleteSection("/q/none.fbw", "1"));
  EXPECT_TRUE(disk->history.empty());
  EXPECT_EQ(Paths(), std::vector<std::string>{kQuest});
}

TEST_F(SafeWrites, ACopyIsWholeOrTheOldFileStays) {
  disk->files["/q/work.ini"].bytes = std::string(4000, 'w');
  disk->room = 1000;
  EXPECT_FALSE(store.CopyFile("/q/work.ini", kQuest));
  EXPECT_EQ(disk->files[kQuest].bytes, old);
  EXPECT_FALSE(store.CopyFile("/q/missing.ini", kQuest));
  EXPECT_FALSE(store.CopyFile("/q/work.ini", "/nofolder/quest.fbw"));
  // A read-only folder: no new quest, and one written in place is whole or
  // its old bytes come back.
  disk->createError = EACCES;
  EXPECT_FALSE(store.CopyFile("/q/work.ini", "/q/new.fbw"));
  EXPECT_FALSE(disk->files.count("/q/new.fbw"));
  EXPECT_FALSE(store.CopyFile("/q/work.ini", kQuest));
  EXPECT_EQ(disk->files[kQuest].bytes, old);
  disk->createError = 0;
  disk->room = FakeDisk::kUnlimited;
  EXPECT_TRUE(store.CopyFile("/q/work.ini", kQuest));
  EXPECT_EQ(disk->files[kQuest].bytes, std::string(4000, 'w'));
}

// The backups of one quest: named by quest and stamp, a second in the same
// second numbered, the oldest going past the number kept, other quests' and
// other files left alone.
TEST_F(SafeWrites, BackupsKeepTheNewestOfEachQuest) {
  disk->files["/b/other 2020-01-01 00.00.00.fbw"].bytes = "x";
  disk->folders.insert("/b");
  disk->files["/b/quest notes.txt"].bytes = "x";
  for (int i = 0; i < 5; ++i) {
    disk->files[kQuest].bytes = "v" + std::to_string(i);
    ASSERT_TRUE(store.KeepBackup(kQuest, "/b", i < 3 ? "2026-11-23 10.00.0" + std::to_string(i) : "2026-11-23 11.00.00", 3));
  }
  std::vector<std::string> backups;
  for (const std::string& path : Paths())
    if (path.starts_with("/b/quest 2026")) backups.push_back(path + "=" + disk->files[path].bytes);
  EXPECT_EQ(backups, (std::vector<std::string>{"/b/quest 2026-11-23 10.00.02.fbw=v2", "/b/quest 2026-11-23 11.00.00 (2).fbw=v4",
                                               "/b/quest 2026-11-23 11.00.00.fbw=v3"}));
  EXPECT_TRUE(disk->files.count("/b/other 2020-01-01 00.00.00.fbw"));
  EXPECT_TRUE(disk->files.count("/b/quest notes.txt"));
  EXPECT_TRUE(store.KeepBackup("/q/never.fbw", "/c", "2026-11-23 10.00.00", 3));
  EXPECT_FALSE(disk->folders.count("/c"));
}

TEST(ProfileText, EntriesListEveryKeyAsAReadGivesIt) {
  auto entries = ProfileEntries("loose=1\r\n[Quest Data]\r\nNumber Of Pages = 2 \r\n;x=1\r\n[ 1 ]\nPage Text=\"hi\"\n");
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].section + "|" + entries[0].key + "|" + entries[0].value, "Quest Data|Number Of Pages|2");
  EXPECT_EQ(entries[1].section + "|" + entries[1].key + "|" + entries[1].value, "1|Page Text|hi");
}

}  // namespace
}  // namespace fw
