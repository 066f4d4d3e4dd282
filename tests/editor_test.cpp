// The quest editor beyond its scenarios: saves that keep the quests they
// replace (or say why they cannot), one editor a machine, and the binding
// table against the window.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <set>

#include "bad_input.h"
#include "editor/createquest.h"
#include "editor/page_fields.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "forms/user_actions.h"
#include "shell/forms.h"
#include "store/program_store.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

// A program on a per-user folder of the caller's, started, editor open.
struct Editor {
  HeadlessPlatform platform;
  Program p;
  explicit Editor(const std::string& home)
      : p(platform.services(), AppInfo{home, "fablewright", home, home}, AllForms()) {
    p.Start();
  }
  ControlId Id(const char* control) { return p.surface().Id("createquest", control); }
  void Type(const char* control, std::string_view text) {
    ASSERT_EQ(Act(p, Id(control), UserAction::Type, text), "");
  }
  void Open() { ASSERT_EQ(Act(p, p.surface().Id("FrmGame", "mnucreatequest"), UserAction::Click), ""); }
  void Save(const fs::path& quest) {
    platform.dialogs.QueueFile("createquest.questfile", quest.string());
    ASSERT_EQ(Act(p, Id("mnusave"), UserAction::Click), "");
  }
  bool EditorLoaded() { return p.surface().IsLoaded(p.surface().FindForm("createquest")); }
};

TEST(EditorBackups, EachSaveKeepsTheQuestItReplacesTheEleventhDropsTheOldest) {
  testing::TempDir dir;
  fs::path quest = dir.path / "tale.fbw";
  std::ofstream(quest, std::ios::binary) << "[1]\r\nPage Text=v0\r\n";
  Editor e(dir.str());
  e.Open();
  for (int i = 1; i <= 11; ++i) {
    e.Type("Text1", "v" + std::to_string(i));
    e.Save(quest);
  }
  // A save of the same text again replaces nothing worth a copy.
  e.Save(quest);
  EXPECT_TRUE(e.platform.dialogs.unchecked().empty());
  EXPECT_EQ(ReadINI(e.p, quest.string(), "1", "Page Text"), "v11");
  std::multiset<std::string> kept;
  for (const auto& entry : fs::directory_iterator(dir.path / kBackupsFolder)) {
    std::string name = entry.path().filename().string();
    if (!name.starts_with("tale ")) continue;
    EXPECT_TRUE(name.ends_with(".fbw")) << name;
    kept.insert(ReadINI(e.p, entry.path().string(), "1", "Page Text"));
  }
  EXPECT_EQ(kept, (std::multiset<std::string>{"v1", "v10", "v2", "v3", "v4", "v5", "v6", "v7", "v8", "v9"}));
  // What the folder holds besides: nothing half-written.
  for (const auto& entry : fs::directory_iterator(dir.path)) EXPECT_FALSE(entry.path().filename().string().starts_with(".tale"));
}

// Each way the editor throws the working file away or replaces a quest,
// where no copy can be kept among the backups: the editor says so, and what
// the author typed stays. Each runs in a child, as "nobody" when the tests
// run as root, so that a folder's permissions count.
TEST(EditorBackups, WhereNoCopyCanBeKeptTheEditorSaysSoAndThrowsNothingAway) {
  const std::pair<const char*, std::function<void(const fs::path&)>> blocks[] = {
      {"a file named backups", [](const fs::path& b) { std::ofstream(b) << "x"; }},
      {"a backups folder nobody may write",
       [](const fs::path& b) {
         fs::create_directories(b);
         fs::permissions(b, fs::perms::owner_read | fs::perms::owner_exec);
       }},
  };
  // Boxes are told apart by their first 60 characters.
  auto head = [](const std::string& box) { return box.substr(0, 60); };
  const std::string recovery = head("The quest editor found work that was not saved when it last closed.");
  const std::string clear = head("Are you sure you want to clear the previous quest data? Please make sure");
  const std::string notKept = head("The quest editor could not copy its unsaved work to the backups folder (");
  const std::string questNotKept = head("The quest editor could not copy the quest as it was to the backups folder (");
  // Each acts on a working file that holds a typed page and title, left by
  // an earlier run or typed in this one.
  struct Way {
    const char* name;
    bool leftBehind;
    std::function<void(Editor&, const fs::path& quest)> act;
    std::vector<std::string> boxes;  // the head of each box shown, in order
    std::string quest = "Old.";      // the quest's page 1 afterwards
  };
  auto click = [](Editor& e, const char* menu) { ASSERT_EQ(Act(e.p, e.Id(menu), UserAction::Click), ""); };
  const Way ways[] = {
      {"No to the recovery offer", true, [](Editor& e, const fs::path&) {
         e.platform.dialogs.QueueAnswer(7);
         e.Open();
       }, {recovery, notKept}},
      {"New", false, [&](Editor& e, const fs::path&) {
         e.platform.dialogs.QueueAnswer(6);
         click(e, "mnunew");
       }, {clear, notKept}},
      {"Load", false, [&](Editor& e, const fs::path& quest) {
         e.platform.dialogs.QueueFile("createquest.questfile", quest.string());
         click(e, "mnuloadquest");
       }, {notKept}},
      {"Save, No to the question", false, [](Editor& e, const fs::path& quest) {
         e.platform.dialogs.QueueAnswer(7);
         e.Save(quest);
       }, {questNotKept}},
      {"Save, Yes to the question", false, [](Editor& e, const fs::path& quest) {
         e.platform.dialogs.QueueAnswer(6);
         e.Save(quest);
       }, {questNotKept}, "Typed."},
  };
  for (const auto& [block, make] : blocks) {
    for (const Way& way : ways) {
      testing::TempDir dir;
      const fs::path quest = dir.path / "tale.fbw";
      std::ofstream(quest, std::ios::binary) << "[1]\r\nPage Text=Old.\r\n";
      if (way.leftBehind)
        std::ofstream(dir.path / "tmpquest.ini", std::ios::binary)
            << "[Quest Data]\r\nNumber Of Pages=1\r\n[Story Info]\r\nTitle=A Title\r\n[1]\r\nPage Text=Typed.\r\n";
      make(dir.path / kBackupsFolder);
      testing::GiveToChild(dir.path);
      testing::ChildRun run = testing::InChild([&] {
        Editor e(dir.str());
        if (!way.leftBehind) {
          e.Open();
          e.Type("Text10", "A Title");
          e.Type("Text1", "Typed.");
        }
        std::string before = testing::FileBytes(dir.path / "tmpquest.ini");
        way.act(e, quest);
        std::string said;
        for (const ShownBox& box : e.platform.dialogs.unchecked()) said += head(box.prompt) + "|";
        FormSurface& s = e.p.surface();
        return said + "\n" + (testing::FileBytes(dir.path / "tmpquest.ini") == before ? "kept" : "changed") + ", " +
               TextBox(s, "createquest", "Text1").Text() + ", " + TextBox(s, "createquest", "Text10").Text() + ", " +
               ReadINI(e.p, quest.string(), "1", "Page Text");
      });
      ASSERT_TRUE(run.finished) << block << ", " << way.name << ": " << run.how;
      std::string boxes;
      for (const std::string& box : way.boxes) boxes += box + "|";
      EXPECT_EQ(run.said, boxes + "\nkept, Typed., A Title, " + way.quest) << block << ", " << way.name;
    }
  }
}

TEST(EditorLock, ASecondEditorOnTheMachineSaysSoAndWipesNothing) {
  testing::TempDir dir;
  auto first = std::make_unique<Editor>(dir.str());
  first->Open();
  first->Type("Text1", "The first editor's page");
  std::string before = testing::FileBytes(dir.path / "tmpquest.ini");

  Editor second(dir.str());
  second.Open();
  ASSERT_EQ(second.platform.dialogs.unchecked().size(), 1u);
  EXPECT_TRUE(second.platform.dialogs.unchecked().front().prompt.starts_with("Another Create 'A' Quest window"));
  second.platform.dialogs.unchecked().clear();
  EXPECT_FALSE(second.EditorLoaded());
  EXPECT_EQ(testing::FileBytes(dir.path / "tmpquest.ini"), before);

  // Reached without the menu, the window refuses in its Form_Load and goes.
  second.p.RunEvent([&] { FormHandle(second.p.surface(), "createquest").Show(); });
  EXPECT_EQ(second.platform.dialogs.unchecked().size(), 1u);
  second.platform.dialogs.unchecked().clear();
  second.p.RunDue();
  EXPECT_FALSE(second.EditorLoaded());
  EXPECT_EQ(testing::FileBytes(dir.path / "tmpquest.ini"), before);

  // Once the first has ended, the lock is free again: the second opens,
  // and offers the first one's work.
  first.reset();
  second.platform.dialogs.QueueAnswer(6);
  second.Open();
  EXPECT_TRUE(second.EditorLoaded());
  EXPECT_EQ(TextBox(second.p.surface(), "createquest", "Text1").Text(), "The first editor's page");
}

TEST(EditorRecovery, AFreshWorkingFileLeftBehindIsNoWorkToOffer) {
  testing::TempDir dir;
  std::ofstream(dir.path / "tmpquest.ini", std::ios::binary) << "[Quest Data]\r\nNumber Of Pages=1\r\n[1]\r\nAdd1=0\r\nPage Text=\r\n";
  Editor e(dir.str());
  e.Open();
  EXPECT_TRUE(e.platform.dialogs.unchecked().empty());
  EXPECT_EQ(testing::FileBytes(dir.path / "tmpquest.ini"), "[Quest Data]\r\nNumber Of Pages=1\r\n");
  EXPECT_FALSE(fs::exists(dir.path / kBackupsFolder));
}

// Every field of the binding table is a control of its kind with the
// handler that writes it; the limits are the box's.
TEST(EditorBindings, EveryFieldHasItsControlAndItsWritingHandler) {
  const FormDef& form = CreateQuestForm();
  for (const Binding& b : kBindings) {
    const ControlDecl* decl = nullptr;
    for (const ControlDecl& d : form.table->controls)
      if (std::string_view(d.name) == b.control) decl = &d;
    ASSERT_NE(decl, nullptr) << b.control;
    EXPECT_EQ(decl->kind, b.check ? Kind::CheckBox : Kind::TextBox) << b.control;
    Event event = b.check ? Event::Click : Event::Change;
    int handlers = 0;
    for (const HandlerDecl& h : form.handlers) handlers += std::string_view(h.control) == b.control && h.event == event;
    EXPECT_EQ(handlers, 1) << b.control;
  }
}

TEST(MaxLength, ATypedTextIsCutAsTheBoxCutsIt) {
  ControlDecl box{.name = "b", .kind = Kind::TextBox, .maxLength = 3};
  EXPECT_EQ(WithinMaxLength(box, "12345"), "123");
  EXPECT_EQ(WithinMaxLength(box, "12"), "12");
  EXPECT_EQ(WithinMaxLength(box, "ab\r\ncd"), "ab");
  box.maxLength = 0;
  EXPECT_EQ(WithinMaxLength(box, std::string(5000, 'x')).size(), 5000u);
}

}  // namespace
}  // namespace fw
