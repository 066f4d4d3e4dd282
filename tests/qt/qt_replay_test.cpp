// One scenario played twice: once by the user actions every binding shares,
// as the headless script runner plays it, and once through the game window's
// own widgets with Qt Test's mouse and keys. Both runs must end with the same
// value in every property of every control of the visible forms: what the
// window turns a player's clicks and typing into is what the script means.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTest>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "bindings/headless/script_parse.h"
#include "bindings/qt/qt_window.h"
#include "forms/codepage.h"
#include "forms/user_actions.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

const char* kScenario = FABLEWRIGHT_SOURCE_DIR "/tests/scenarios/window_replay.txt";

// A point of the widget that none of its visible children covers, so that a
// mouse event there reaches the widget itself.
QPoint BarePoint(QWidget* w) {
  for (int y = 2; y < w->height(); y += 4)
    for (int x = 2; x < w->width(); x += 4)
      if (!w->childAt(x, y)) return {x, y};
  return w->rect().center();
}

class Replay {
 public:
  explicit Replay(bool throughWindow) {
    if (throughWindow) {
      windows_ = std::make_unique<QtWindows>(t_.program);
      s().SetObserver(windows_.get());
    }
  }
  FormSurface& s() { return t_.surface(); }
  // The program's own folder, which differs from one run to the other.
  std::string Folder() const { return t_.dir.str(); }

  void Play(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    const std::string script = text.str();
    int n = 0;
    for (std::string_view raw : ScriptLines(script)) {
      ++n;
      std::string line = SubstituteEnvironment(raw);
      std::vector<std::string> w = SplitWords(line);
      if (w.empty() || w[0].starts_with("#")) continue;
      SCOPED_TRACE("line " + std::to_string(n) + ": " + line);
      Command(w);
    }
  }

 private:
  void Command(const std::vector<std::string>& w) {
    const std::string& cmd = w[0];
    if (cmd == "answer" && w[1] == "msgbox") return t_.platform.dialogs.QueueAnswer(std::stoi(w[2]));
    if (cmd == "answer") return t_.platform.dialogs.QueueFile(w[2], Cp1252FromUtf8(w[3]));
    if (cmd == "rnd") {
      for (std::size_t i = 1; i < w.size(); ++i) t_.platform.random.Queue(std::stof(w[i]));
      return;
    }
    if (!started_) {
      started_ = true;
      t_.program.Start();
    }
    if (cmd == "expect" || cmd == "start") return;  // the headless run checks these
    if (cmd == "wait") return Wait(std::stod(w[1]));
    if (cmd == "close") return Close(s().FindForm(w[1]));
    auto target = ParseTarget(w[1] + ".Caption");
    ASSERT_TRUE(target) << w[1];
    ControlId id = s().Id(target->form, target->control);
    std::string text = w.size() > 2 ? Cp1252FromUtf8(w[2]) : "";
    if (windows_) return ByWindow(cmd, id, text);
    UserAction action = cmd == "click"    ? UserAction::Click
                        : cmd == "select" ? UserAction::Select
                        : cmd == "type"   ? UserAction::Type
                        : cmd == "check"  ? UserAction::Check
                        : cmd == "choose" ? UserAction::Choose
                                          : UserAction::Hover;
    int value = (cmd == "check" || cmd == "choose") ? std::stoi(text) : 0;
    EXPECT_EQ(Act(t_.program, id, action, text, value), "") << cmd << " " << w[1];
  }

  // The same action as a player does it to the widget.
  void ByWindow(const std::string& cmd, ControlId id, const std::string& text) {
    if (s().At(id).decl->kind == Kind::Menu) return TriggerMenu(id);
    QWidget* widget = windows_->WidgetOf(id);
    ASSERT_NE(widget, nullptr);
    ASSERT_TRUE(widget->isVisible()) << cmd << " on a widget that is not on screen";
    if (cmd == "click") {
      QTest::mouseClick(widget, Qt::LeftButton, {}, BarePoint(widget));
    } else if (cmd == "select") {
      QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(6, widget->height() / 2));  // on its button
    } else if (cmd == "hover") {
      QTest::mouseMove(widget, BarePoint(widget));
    } else if (cmd == "type") {
      QTest::mouseClick(widget, Qt::LeftButton);
      QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
      if (text.empty()) QTest::keyClick(widget, Qt::Key_Delete);
      QTest::keyClicks(widget, QString::fromStdString(Utf8FromCp1252(text)));
    } else if (cmd == "check") {
      auto* box = qobject_cast<QCheckBox*>(widget);
      ASSERT_NE(box, nullptr);
      if (box->isChecked() != (text == "1")) QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2));
    } else if (cmd == "choose") {
      auto* list = qobject_cast<QListWidget*>(widget);
      ASSERT_NE(list, nullptr);
      QListWidgetItem* item = list->item(std::stoi(text));
      ASSERT_NE(item, nullptr);
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
    } else {
      FAIL() << "no such action: " << cmd;
    }
  }

  void TriggerMenu(ControlId id) {
    QMainWindow* window = windows_->WindowOf(id.form);
    QString caption = QString::fromStdString(Utf8FromCp1252(s().At(id).caption));
    for (QAction* menu : window->menuBar()->actions())
      for (QAction* item : menu->menu()->actions())
        if (item->text() == caption) return item->trigger();
    FAIL() << "no menu item " << caption.toStdString();
  }

  void Close(int form) {
    if (windows_) windows_->WindowOf(form)->close();
    else CloseForm(t_.program, form);
  }

  void Wait(double seconds) {
    double target = t_.now() + seconds;
    for (;;) {
      double next = t_.program.NextDue();
      if (t_.program.Over() || next > target) break;
      if (next > t_.now()) t_.platform.clock.Set(next);
      t_.program.RunEvent([&] { t_.program.RunDue(); });
    }
    if (target > t_.now()) t_.platform.clock.Set(target);
  }

  testing::TestProgram t_{AllForms()};
  std::unique_ptr<QtWindows> windows_;
  bool started_ = false;
};

// Every property of the control as a script prints it, a list's entries
// too, with the program's own folder written as "APP".
std::vector<std::pair<std::string, std::string>> Values(FormSurface& s, ControlId id, const std::string& folder) {
  std::vector<std::pair<std::string, std::string>> out;
  for (int p = 0; p <= static_cast<int>(Prop::Icon); ++p) {
    Prop prop = static_cast<Prop>(p);
    try {
      if (prop == Prop::List) {
        int count = static_cast<int>(s.At(id).list.size());
        for (int i = 0; i < count; ++i) out.emplace_back("List(" + std::to_string(i) + ")", FormatValue(s.Get(id, prop, i)));
      } else {
        out.emplace_back(PropName(prop), FormatValue(s.Get(id, prop)));
      }
    } catch (const std::invalid_argument&) {
      // the kind has no such property
    }
  }
  for (auto& [name, value] : out)
    for (std::size_t at; (at = value.find(folder)) != std::string::npos;) value.replace(at, folder.size(), "APP");
  return out;
}

TEST(QtReplay, AScenarioThroughTheWindowEndsAsItDoesHeadless) {
  testing::TempDir work;
  fs::copy(FABLEWRIGHT_SOURCE_DIR "/tests/fixtures", work.path, fs::copy_options::recursive);
  ::setenv("WORK", work.str().c_str(), 1);
  Replay headless(false), window(true);
  headless.Play(kScenario);
  window.Play(kScenario);
  ::unsetenv("WORK");

  FormSurface& a = headless.s();
  FormSurface& b = window.s();
  int compared = 0;
  for (int form = 0; form < a.FormCount(); ++form) {
    ASSERT_EQ(a.IsLoaded(form), b.IsLoaded(form)) << "form " << form;
    if (!a.IsLoaded(form) || !a.Form(form).visible) continue;
    const FormState& f = a.Form(form);
    EXPECT_EQ(f.caption, b.Form(form).caption);
    EXPECT_TRUE(b.Form(form).visible) << f.def->table->name;
    for (int i = 0; i < static_cast<int>(f.controls.size()); ++i) {
      ControlId id{form, i};
      auto expected = Values(a, id, headless.Folder()), actual = Values(b, id, window.Folder());
      ASSERT_EQ(expected.size(), actual.size());
      for (std::size_t k = 0; k < expected.size(); ++k, ++compared)
        EXPECT_EQ(expected[k].second, actual[k].second)
            << f.def->table->name << "." << f.controls[i].decl->name << "." << expected[k].first;
    }
  }
  EXPECT_GT(compared, 500);
  // The run got where the script leads: the credits, after a won fight.
  ControlId credits = a.Id("FrmGame", "credits");
  EXPECT_TRUE(a.At(credits).visible && b.At(credits).visible);
  EXPECT_EQ(b.At(b.Id("FrmGame", "pg")).caption, "3");
}

}  // namespace
}  // namespace fw
