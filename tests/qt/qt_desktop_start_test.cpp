// `fablewright QUEST.fbw` on a desktop (a file manager's double click): the
// desktop job's own start-up, on the assembly's real services, opens the quest
// in the game window as Load Quest does, and never shows the file dialog.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTimer>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include "app/assembly.h"
#include "bindings/qt/qt_desktop.h"
#include "play/start_quest.h"
#include "forms/codepage.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

// The transcript as the game window draws it, once it shows the page.
QPlainTextEdit* DrawnTranscript() {
  for (QWidget* w : QApplication::allWidgets())
    if (auto* text = qobject_cast<QPlainTextEdit*>(w); text && text->isVisible() &&
                                                      text->toPlainText().contains("Start here."))
      return text;
  return nullptr;
}

TEST(QtDesktopStart, AQuestNamedOnTheCommandLineOpensInTheWindowWithoutTheDialog) {
  testing::TempDir dir;
  // A folder name with a blank and letters beyond ASCII, as a desktop's
  // folders have them: the path crosses from UTF-8 into the game's text.
  std::filesystem::path folder = dir.path / "Quêtes à jouer";
  std::filesystem::create_directories(folder);
  const std::string quest = (folder / "first.fbw").string();
  std::ofstream(quest) << "[Story Info]\r\nTitle=First\r\n[Quest Data]\r\n"
                          "[1]\r\nLocation=The gate\r\nPage Text=Start here.\r\n"
                          "Option One=Go in\r\nOption One Destination=2\r\n";
  Launch launch;
  launch.appDir = dir.str();
  launch.exeName = "fablewright";
  launch.home = dir.str() + "/home";
  launch.sound = false;
  std::filesystem::create_directories(launch.home);
  Assembly assembly(launch);
  Program* program = nullptr;
  ProgramMaker make = [&](Services own) {
    std::unique_ptr<Program> made = assembly.Make(own);
    program = made.get();
    return made;
  };

  // Watches the running program from inside its own event loop, and ends it
  // once the page is on screen (or after a generous wait, so a fault cannot
  // hang the suite). A dialog that shows is noted and closed.
  bool dialogShown = false, menuShown = true, optionShown = false, asleep = false;
  std::string transcript, questfil, option;
  QString drawn;
  QElapsedTimer since;
  since.start();
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (QWidget* modal = QApplication::activeModalWidget()) {
      dialogShown = true;
      modal->close();
    }
    // The program's own loop must end it: this is only a stop for a fault.
    if (since.elapsed() > 30000) QCoreApplication::exit(99);
    if (!program || program->Ended()) return;
    FormSurface& s = program->surface();
    transcript = s.At(s.Id("FrmGame", "Text1")).caption;
    if (QPlainTextEdit* text = DrawnTranscript()) {
      drawn = text->toPlainText();
      testing::SaveScreenshot(text->window(), "command-line-quest");
    }
    // Timer1 shows the option within a frame, and then the window has
    // nothing left to do until the player acts: its loop sleeps.
    optionShown = s.At(s.Id("FrmGame", "Option1")).visible;
    asleep = std::isinf(program->NextWake());
    if ((transcript.find("Start here.") == std::string::npos || !optionShown || !asleep) && since.elapsed() < 20000)
      return;
    questfil = s.At(s.Id("FrmGame", "questfil")).caption;
    option = s.At(s.Id("FrmGame", "Option1")).caption;
    menuShown = s.Shown(s.Id("FrmGame", "Picture2"));
    program->RunEvent([&] { program->End(); });
  });
  watch.start(20);

  EXPECT_EQ(RunDesktopWindows(make, [&](Program& p) { OpenQuestNamed(p, Cp1252FromUtf8(quest)); }), 0);
  EXPECT_FALSE(dialogShown);
  EXPECT_NE(transcript.find("Start here."), std::string::npos) << transcript;
  EXPECT_TRUE(drawn.contains("Start here.")) << drawn.toStdString();
  EXPECT_EQ(Utf8FromCp1252(questfil), quest);
  EXPECT_EQ(option, "Go in");
  EXPECT_FALSE(menuShown);
  EXPECT_TRUE(optionShown);
  EXPECT_TRUE(asleep);
  // The windows name the installed desktop entry, for the desktop's menu and icon.
  EXPECT_EQ(QGuiApplication::desktopFileName(), "example.fablewright.Fablewright");
}

}  // namespace
}  // namespace fw
