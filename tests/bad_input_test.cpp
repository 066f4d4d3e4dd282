// The catalogue of bad input: each kind of bad file fed to each reader that
// can meet it (a quest, game.dat, a saved game, a character file, the
// editor's working file, a page's media). Each run is a child process, so a
// crash or a hang fails the one case; each must go on as the game does with
// a broken file (an empty page, the reader's own message) and leave every
// file as it was, the bad one included.
#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "bad_input.h"
#include "bindings/headless/headless_services.h"
#include "editor/createquest.h"
#include "editor/editor_state.h"
#include "forms/program.h"
#include "play/character.h"
#include "play/game_state.h"
#include "play/saved_game.h"
#include "play/start_quest.h"
#include "store/profile.h"
#include "store/program_store.h"
#include "store/scrambler.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

using testing::BadFile;
namespace fs = std::filesystem;

const std::string kGood =
    "[Story Info]\r\nTitle=Good\r\n[Quest Data]\r\nNumber Of Pages=2\r\n[CharacterData]\r\nCharCreateAllow=1\r\n"
    "[1]\r\nLocation=Gate\r\nPage Text=A gate.\r\nOption One=Go in\r\nOption One Destination Page=2\r\n"
    "[2]\r\nPage Text=In.\r\n";

// A headless program standing in dir, which is also its per-user folder.
struct Child {
  HeadlessPlatform platform;
  Program p;
  GameState g{p};
  explicit Child(const fs::path& dir, const fs::path& appDir)
      : p(platform.services(), AppInfo{appDir.string(), "fablewright", dir.string(), dir.string(), {}}, AllForms()) {
    p.Start();
  }
  void Do(const std::function<void()>& event) { p.RunEvent(event); }
  void OpenQuest(const fs::path& quest) {
    Do([&] { OpenQuestNamed(p, quest.string()); });
  }
  // What the player sees: the page, its options and the boxes shown.
  std::string Seen() {
    std::string room = g.room.Text();
    std::string seen = "page \"" + room.substr(0, 24) + "\" (" + std::to_string(room.size()) + ")";
    for (int n = 1; n <= 4; ++n)
      if (!g.Option(n).Caption().empty()) seen += ", option " + g.Option(n).Caption();
    for (const ShownBox& box : platform.dialogs.unchecked()) seen += ", box \"" + box.prompt + "\"";
    return seen;
  }
};

// One reader: feeds the file at `bad` to the program standing in `dir`
// (`good` is a good quest there) and says what the user saw.
using Reader = std::function<std::string(const fs::path& dir, const fs::path& bad, const fs::path& good)>;

std::string ReadAsQuest(const fs::path& dir, const fs::path& bad, const fs::path&) {
  Child c(dir, dir);
  c.OpenQuest(bad);
  return c.Seen();
}

std::string ReadAsGameDat(const fs::path& dir, const fs::path&, const fs::path&) {
  Child c(dir, dir);
  return c.Seen() + ", title \"" + FormHandle(c.p.surface(), "FrmGame").Caption() + "\"";
}

std::string ReadAsSave(const fs::path& dir, const fs::path& bad, const fs::path& good) {
  Child c(dir, dir);
  c.OpenQuest(good);
  c.platform.dialogs.unchecked().clear();
  c.platform.dialogs.QueueFile("FrmGame.file", bad.string());
  c.Do([&] { frmgame::mnuload_Click(c.p); });
  return c.Seen();
}

std::string ReadAsCharacter(const fs::path& dir, const fs::path& bad, const fs::path& good) {
  Child c(dir, dir);
  c.OpenQuest(good);
  c.platform.dialogs.QueueFile("FrmGame.charfile", bad.string());
  c.Do([&] { frmgame::Command11_Click(c.p); });
  return c.Seen() + ", name \"" + c.g.Text6.Text() + "\", hp \"" + c.g.Text5.Text() + "\"";
}

std::string ReadAsEditorLoad(const fs::path& dir, const fs::path& bad, const fs::path&) {
  Child c(dir, dir);
  c.Do([&] { OpenEditor(c.p); });
  c.Do([&] { OpenEditorOn(c.p, bad.string()); });
  return c.Seen() + ", pages " + std::to_string(EditorState(c.p).pg.ListCount());
}

// A working file that an earlier run left behind, which the editor offers to
// keep working on (and is answered Yes).
std::string ReadAsLeftWorkingFile(const fs::path& dir, const fs::path&, const fs::path&) {
  Child c(dir, dir);
  c.platform.dialogs.QueueAnswer(6);
  c.Do([&] { OpenEditor(c.p); });
  return c.Seen() + ", pages " + std::to_string(EditorState(c.p).pg.ListCount());
}

std::string ReadAsMedia(const fs::path& dir, const fs::path& bad, const fs::path&) {
  fs::path quest = dir / "media.fbw";
  std::string name = bad.string();
  testing::WriteBytes(quest, "[1]\r\nPage Text=Media.\r\nOption One=On\r\nImage=" + name + "\r\nMusic=" + name +
                                 "\r\nMp3=" + name + "\r\nMovie=" + name + "\r\n");
  Child c(dir, dir);
  c.OpenQuest(quest);
  c.p.Pause(1);
  return c.Seen();
}

// What the user sees, and whether the reader wrote the quest as it does
// when its file is good (a saved game's load writes the character into it).
struct Outcome {
  std::string seen;
  bool questWritten = false;
};

struct Case {
  const char* reader;
  Reader read;
  const char* badName;  // the file name the reader looks for
  std::string good;     // a good file of its kind, which some bad ones damage
  Outcome usual;        // what the user sees with most bad files
  std::map<std::string, Outcome> otherwise;  // and with these
  bool ownsTheFile = false;  // the reader's own scratch file, which it may change
};

const std::string kEmptyPage = "page \"\" (0)";
const std::string kGoodPage = "page \"A gate.\" (7), option Go in";
const std::string kNotASave =
    ", box \"The file does not appear to be a saved game for this particular game or there is an error in the "
    "file.\"";

// The editor's question when a working file that holds work is left behind;
// a file that holds none (empty, binary, unreadable) is started afresh.
const std::string kRecovery =
    ", box \"The quest editor found work that was not saved when it last closed. Do you want to keep working on it? "
    "If you answer No, a copy of it is kept in the backups folder and the editor starts afresh.\"";

// A packaged game's descriptor, a saved game and a character file.
const std::string kGameDat = "[loaddat]\r\nQuestFile=good.fbw\r\n[Game Data]\r\nTitle=Packaged\r\n";
const std::string kSave = "[saved game]\r\nroom=" + Encode("Saved.") + "\r\noption 1=" + Encode("On") +
                          "\r\npage=" + Encode("2") + "\r\nPoo=" + Encode("5") + "\r\nHowMuchInList=0\r\n";
const std::string kCharacter = "[CharacterData]\r\nCharName=" + Encode("Thera") + "\r\nCharHp=" + Encode("33") + "\r\n";

// The kinds of bad file that hold a whole good one: a reader that copes
// with them reads the good file.
std::map<std::string, Outcome> ReadsTheGoodOne(const Outcome& good) {
  std::map<std::string, Outcome> kinds;
  for (const char* kind : {"a line of 1 MB", "NUL bytes", "UTF-8 with a byte-order mark", "CR line ends only"})
    kinds[kind] = good;
  return kinds;
}

template <class... More>
std::map<std::string, Outcome> With(std::map<std::string, Outcome> kinds, More&&... more) {
  (kinds.insert_or_assign(more.first, more.second), ...);
  return kinds;
}

std::vector<Case> Cases() {
  const Outcome gamePage{kGoodPage + ", title \"Packaged\""};
  const Outcome savedPage{"page \"Saved.\" (6), option On", true};
  const Outcome character{kGoodPage + ", name \"Thera\", hp \"33\""};
  return {
      {"quest", ReadAsQuest, "bad.fbw", kGood, {kEmptyPage},
       With(ReadsTheGoodOne({kGoodPage}),
            std::pair{"a line of 1 MB", Outcome{"page \"wwwwwwwwwwwwwwwwwwwwwwww\" (8999)"}},
            std::pair{"a huge file", Outcome{"page \"At the end.\" (11)"}},
            std::pair{"bytes that are not Windows-1252",
                      Outcome{"page \"\x81\x8D\x8F\x90\x9D \xC3( \xF0(\x8C\" (12)"}})},
      {"game.dat", ReadAsGameDat, "game.dat", kGameDat, {kEmptyPage + ", title \"Fablewright 2004 - Beta 5.9\""},
       ReadsTheGoodOne(gamePage)},
      {"saved game", ReadAsSave, "bad.sav", kSave, {kGoodPage + kNotASave}, ReadsTheGoodOne(savedPage)},
      {"character file", ReadAsCharacter, "bad.cha", kCharacter, {kGoodPage + ", name \"\", hp \"\""},
       ReadsTheGoodOne(character)},
      {"editor's Load", ReadAsEditorLoad, "bad.fbw", kGood, {kEmptyPage + ", box \"Error!\", pages 1"},
       ReadsTheGoodOne({kEmptyPage + ", pages 2"})},
      {"page media", ReadAsMedia, "bad.media", kGood, {"page \"Media.\" (6), option On"}, {}},
      {"working file left behind", ReadAsLeftWorkingFile, "tmpquest.ini", kGood, {kEmptyPage + ", pages 1"},
       With(ReadsTheGoodOne({kEmptyPage + kRecovery + ", pages 2"}),
            std::pair{"a huge file", Outcome{kEmptyPage + kRecovery + ", pages 1"}},
            std::pair{"bytes that are not Windows-1252", Outcome{kEmptyPage + kRecovery + ", pages 1"}}),
       true},
  };
}

// Media names no author means: each is handed to the platform as it stands,
// finds no file, and the page shows all the same.
TEST(BadMediaNames, APageShowsWhateverItsMediaAreNamed) {
  testing::TempDir dir;
  ::mkfifo((dir.path / "fifo").c_str(), 0666);
  const std::string names[] = {std::string(9000, 'm') + ".mid", "C:\\WINDOWS\\MEDIA\\town.mid", "..", "/",
                               "/dev/zero", "/dev/stdin", (dir.path / "fifo").string(), "\x81\x8D.mid",
                               "\\\\server\\share\\a.mp3", " "};
  for (const std::string& name : names) {
    testing::GiveToChild(dir.path);
    testing::ChildRun run = testing::InChild([&] { return ReadAsMedia(dir.path, name, {}); }, 30);
    ASSERT_TRUE(run.finished) << name.substr(0, 40) << ": " << run.how;
    EXPECT_EQ(run.said, "page \"Media.\" (6), option On") << name.substr(0, 40);
  }
}

class BadInput : public ::testing::TestWithParam<std::size_t> {};

TEST_P(BadInput, EveryReaderGoesOnAndChangesNoFile) {
  const Case c = Cases()[GetParam()];
  for (const BadFile& kind : testing::BadFiles(c.good)) {
    testing::TempDir dir;
    fs::path good = dir.path / "good.fbw";
    testing::WriteBytes(good, kGood);
    fs::path bad = dir.path / c.badName;
    kind.make(bad);
    testing::GiveToChild(dir.path);
    std::string badBefore = testing::Fingerprint(bad), goodBefore = testing::Fingerprint(good);

    testing::ChildRun run = testing::InChild([&] { return c.read(dir.path, bad, good); });

    ASSERT_TRUE(run.finished) << c.reader << ", " << kind.name << ": " << run.how;
    auto other = c.otherwise.find(kind.name);
    const Outcome& want = other == c.otherwise.end() ? c.usual : other->second;
    EXPECT_EQ(run.said, want.seen) << c.reader << ", " << kind.name;
    if (!c.ownsTheFile) {
      EXPECT_EQ(testing::Fingerprint(bad), badBefore) << c.reader << ", " << kind.name;
    }
    if (!want.questWritten) {
      EXPECT_EQ(testing::Fingerprint(good), goodBefore) << c.reader << ", " << kind.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Readers, BadInput, ::testing::Range<std::size_t>(0, Cases().size()),
                         [](const auto& info) {
                           std::string name = Cases()[info.param].reader;
                           std::erase_if(name, [](char ch) { return !std::isalnum(static_cast<unsigned char>(ch)); });
                           return name;
                         });

}  // namespace
}  // namespace fw

namespace fw {
namespace {

// Values at and past the limits, each through the reader that meets it.
class Limits : public ::testing::Test {
 protected:
  testing::TempDir dir;
  fs::path quest = dir.path / "q.fbw";
  fs::path file = dir.path / "f.sav";

  // Runs `play` on a program that has the quest open (written first unless
  // questText is empty), in a child process; the quest is left as it was
  // unless `mayWrite`.
  std::string Play(const std::string& questText, const std::string& fileText,
                   const std::function<void(Child&)>& play, bool mayWrite = false) {
    if (!questText.empty()) testing::WriteBytes(quest, questText);
    testing::WriteBytes(file, fileText);
    testing::GiveToChild(dir.path);
    std::string before = testing::Fingerprint(quest), fileBefore = testing::Fingerprint(file);
    testing::ChildRun run = testing::InChild([&] {
      Child c(dir.path, dir.path);
      c.OpenQuest(quest);
      c.platform.dialogs.unchecked().clear();
      play(c);
      return c.Seen() + ", score " + c.g.score.Caption() + ", hp \"" + c.g.Text5.Text() + "\"";
    });
    EXPECT_TRUE(run.finished) << run.how;
    if (!mayWrite) {
      EXPECT_EQ(testing::Fingerprint(quest), before);
    }
    EXPECT_EQ(testing::Fingerprint(file), fileBefore);
    return run.said;
  }
  static void LoadSave(Child& c, const fs::path& sav) {
    c.platform.dialogs.QueueFile("FrmGame.file", sav.string());
    c.Do([&] { frmgame::mnuload_Click(c.p); });
  }
  static void LoadCharacter(Child& c, const fs::path& cha) {
    c.platform.dialogs.QueueFile("FrmGame.charfile", cha.string());
    c.Do([&] { frmgame::Command11_Click(c.p); });
  }
  static void Choose(Child& c, int n) {
    c.Do([&] { c.g.Option(n).SetValue(true); });
    c.Do([&] { c.p.surface().Raise(c.p.surface().Id("FrmGame", "Picture1"), Event::Click); });
  }
};

const std::string kCharQuest =
    "[CharacterData]\r\nCharCreateAllow=1\r\n[1]\r\nPage Text=A gate.\r\nOption One=Go in\r\n"
    "Option One Score=+1\r\nOption One Destination Page=1\r\n";

std::string SaveWith(const std::string& room, const std::string& score, const std::string& hp) {
  return "[saved game]\r\nroom=" + room + "\r\noption 1=" + Encode("Go in") + "\r\npage=" + Encode("1") +
         "\r\nPoo=" + score + "\r\nHowMuchInList=0\r\n[CharacterData]\r\nCharHp=" + hp + "\r\n";
}

TEST_F(Limits, AScrambledValueIsCutAt8999CharactersAndCodesPastTheShiftRefuseTheFile) {
  std::string loaded = Play(kCharQuest, SaveWith(std::string(9000, '='), Encode("3"), Encode("20")),
                            [&](Child& c) { LoadSave(c, file); }, true);
  EXPECT_EQ(loaded, "page \"AAAAAAAAAAAAAAAAAAAAAAAA\" (8999), option Go in, score 3, hp \"20\"");
  // Codes 0 to 3 decode as any other.
  loaded = Play(kCharQuest, SaveWith(std::string("\x01\x02\x03=\0==", 7), Encode("3"), Encode("20")),
                [&](Child& c) { LoadSave(c, file); }, true);
  EXPECT_EQ(loaded, std::string("page \"\x05\x06\x07" "A\x04" "AA\" (7), option Go in, score 3, hp \"20\""));
  for (char code : {'\xFC', '\xFD', '\xFE', '\xFF'}) {
    EXPECT_EQ(Play(kCharQuest, SaveWith(Encode("Room"), std::string("-") + code, Encode("20")),
                   [&](Child& c) { LoadSave(c, file); }),
              "page \"A gate.\" (7), option Go in" + kNotASave + ", score 0, hp \"45\"")
        << int(static_cast<unsigned char>(code));
    EXPECT_EQ(Play(kCharQuest, "[CharacterData]\r\nCharName=" + Encode("Thera") + code + "\r\n",
                   [&](Child& c) { LoadCharacter(c, file); }),
              "page \"A gate.\" (7), option Go in, box \"The character file is damaged: its Name cannot be read.\", "
              "score 0, hp \"45\"");
  }
}

// A score that is no 16-bit number counts as 0 when an option adds to it;
// a sum past either end leaves the score as it was.
TEST_F(Limits, ScoresAtAndPastTheSixteenBitEnds) {
  const std::pair<const char*, const char*> scores[] = {
      {"32767", "32767"}, {"-32768", "-32767"}, {"40000", "1"}, {"1e300", "1"}};
  for (const auto& [saved, after] : scores) {
    std::string kept = Play(kCharQuest, SaveWith(Encode("Room"), Encode(saved), Encode("20")), [&](Child& c) {
      LoadSave(c, file);
      c.p.Pause(0.05);
      Choose(c, 1);
    }, true);
    EXPECT_EQ(kept, "page \"A gate.\" (7), option Go in, score " + std::string(after) + ", hp \"20\"") << saved;
  }
}

TEST_F(Limits, HitPointsOf1e300AndAPageThatLeadsToItself) {
  std::string loaded = Play(kCharQuest, "[CharacterData]\r\nCharName=" + Encode("Thera") + "\r\nCharHp=" +
                                            Encode("1e300") + "\r\nCharAtk=" + Encode("1e300") + "\r\n",
                            [&](Child& c) {
                              LoadCharacter(c, file);
                              c.Do([&] { frmgame::Command9_Click(c.p); });
                              for (int i = 0; i < 3; ++i) {
                                c.p.Pause(0.05);
                                Choose(c, 1);
                              }
                            }, true);
  EXPECT_EQ(loaded, "page \"A gate.\" (7), option Go in, score 3, hp \"1e300\"");
  EXPECT_EQ(QuestStore(dir.str()).ReadINI(quest.string(), "CharacterData", "CharHp"), "1e300");
}

TEST_F(Limits, AQuestInAReadOnlyFolderPlaysOnWithoutItsCharacter) {
  fs::path folder = dir.path / "ro";
  fs::create_directories(folder);
  quest = folder / "q.fbw";
  testing::WriteBytes(quest, kCharQuest);
  fs::permissions(quest, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                              fs::perms::others_exec);
  std::string played = Play("", "", [&](Child& c) {
    c.g.Text6.SetText("Thera");
    c.g.Text5.SetText("30");
    c.Do([&] { frmgame::Command9_Click(c.p); });
    c.p.Pause(0.05);
    Choose(c, 1);
  });
  EXPECT_EQ(played, "page \"A gate.\" (7), option Go in, score 1, hp \"30\"");
  fs::permissions(folder, fs::perms::owner_all);
}

// The page list holds at most 32767 entries, as Load rebuilds it: a count
// past that is an error, and Add Page never writes one. A count below zero
// leaves no page for a typed field, and the editor says so.
TEST_F(Limits, ANumberOfPagesPastTheEditorsListOrBelowZero) {
  const std::string full = ", box \"A quest can have no more than 32767 pages.\"";
  const std::string none =
      ", box \"This quest's Number Of Pages is below zero, so its page list is empty and what you type in the page "
      "fields is kept nowhere. Click Add Page, then the new page, before you type.\"";
  const std::tuple<const char*, std::string, std::string> counts[] = {
      {"32767", ", pages 32767", full + ", pages 32767, count 32767"},
      {"1e9", ", box \"Error!\", pages 32767", full + ", pages 32767, count 1e9"},
      {"-3", ", box \"Error!\"" + none + ", pages 0", ", pages 1, count 1"},
  };
  for (const auto& [count, loaded, added] : counts) {
    testing::TempDir dir;
    fs::path quest = dir.path / "q.fbw";
    testing::WriteBytes(quest, std::string("[Quest Data]\r\nNumber Of Pages=") + count + "\r\n[1]\r\nPage Text=A\r\n");
    testing::GiveToChild(dir.path);
    testing::ChildRun run = testing::InChild([&] {
      Child c(dir.path, dir.path);
      c.Do([&] { OpenEditor(c.p); });
      c.Do([&] { OpenEditorOn(c.p, quest.string()); });
      EditorState e(c.p);
      std::string seen = c.Seen() + ", pages " + std::to_string(e.pg.ListCount()) + " /";
      c.platform.dialogs.unchecked().clear();
      c.Do([&] { createquest::Command1_Click(c.p); });
      return seen + c.Seen().substr(kEmptyPage.size()) + ", pages " + std::to_string(e.pg.ListCount()) +
             ", count " + ReadINI(c.p, "tmpquest.ini", "Quest Data", "Number Of Pages");
    });
    EXPECT_TRUE(run.finished) << run.how;
    EXPECT_EQ(run.said, kEmptyPage + loaded + " /" + added) << count;
  }
}

}  // namespace
}  // namespace fw
