#include "bindings/qt/qt_desktop.h"

#include <QApplication>
#include <QFileDialog>
#include <QLoggingCategory>
#include <QMainWindow>
#include <QMessageBox>
#include <QTimer>

#include <memory>
#include <utility>

#include "bindings/qt/qt_media.h"
#include "bindings/qt/qt_window.h"
#include "forms/codepage.h"
#include "forms/program.h"

namespace fw {
namespace {

// The window's tick: one frame at 60 frames a second.
constexpr int kFrameMs = 16;

// DoEvents on the desktop: the window's own events, clicks included.
class QtPump : public EventPump {
 public:
  void Pump(Program&) override { QCoreApplication::processEvents(QEventLoop::AllEvents, 1); }
};

// "*.mp3|*.mp3|*.wav|*.wav" as a file dialog's filter: "*.mp3 (*.mp3);;*.wav (*.wav)".
QString Filter(const std::string& filter) {
  QStringList parts = QString::fromStdString(filter).split('|');
  QStringList pairs;
  for (int i = 0; i + 1 < parts.size(); i += 2) pairs << parts[i] + " (" + parts[i + 1] + ")";
  return pairs.join(";;");
}

}  // namespace

int QtDialogs::MsgBox(std::string_view prompt, int style, std::string_view title) {
  std::unique_ptr<QMessageBox> box = MakeMessageBox(prompt, style, title, Parent());
  int answer = box->exec();
  if (style == 4) return answer == QMessageBox::Yes ? 6 : 7;
  return 1;
}

std::optional<std::string> QtDialogs::FileDialog(const FileDialogRequest& r) {
  QString dir = QString::fromStdString(Utf8FromCp1252(r.initDir)).replace('\\', '/');
  QString chosen = r.save ? QFileDialog::getSaveFileName(Parent(), {}, dir, Filter(r.filter))
                          : QFileDialog::getOpenFileName(Parent(), {}, dir, Filter(r.filter));
  if (chosen.isEmpty()) return std::nullopt;
  return Cp1252FromUtf8(chosen.toStdString());
}

std::unique_ptr<QMessageBox> MakeMessageBox(std::string_view prompt, int style, std::string_view title,
                                            QWidget* parent) {
  auto box = std::make_unique<QMessageBox>(parent);
  box->setWindowTitle(QString::fromStdString(Utf8FromCp1252(title)));
  box->setText(QString::fromStdString(Utf8FromCp1252(prompt)));
  if (style == 16) box->setIcon(QMessageBox::Critical);
  if (style == 64) box->setIcon(QMessageBox::Information);
  if (style == 4) box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  return box;
}

void QuietQtMessages() {
  // Qt's notes to developers (no sound server, no GPU for video, what the
  // platform plugin cannot do) are not the player's business: the game goes
  // on without sound or draws video in software. QT_LOGGING_RULES still
  // brings them back, as it overrides these rules.
  QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\n"
                                                  "default.warning=false\n"
                                                  "qt.multimedia*.debug=false\n"
                                                  "qt.multimedia*.warning=false\n"));
}

int RunDesktop(const ProgramMaker& make, int argc, char** argv, const Opening& opening) {
  QuietQtMessages();
  QApplication app(argc, argv);
  return RunDesktopWindows(make, opening);
}

int RunDesktopWindows(const ProgramMaker& make, const Opening& opening) {
  // The installed desktop entry's name, by which a desktop ties the
  // windows to their menu entry and icon.
  QGuiApplication::setDesktopFileName(FABLEWRIGHT_APP_ID);
  QuietQtMessages();
  QtPump pump;
  std::unique_ptr<QtWindows> windows;
  QtDialogs dialogs([&]() -> QWidget* { return windows ? windows->ActiveWindow() : nullptr; });
  QtMediaPlayers players([&](ControlId id) { return windows ? windows->WidgetOf(id) : nullptr; });
  Services own{};
  own.pump = &pump;
  own.dialogs = &dialogs;
  own.players = &players;
  std::unique_ptr<Program> made = make(own);
  Program& program = *made;
  windows = std::make_unique<QtWindows>(program);
  program.surface().SetObserver(windows.get());

  // The program's timers and posted events. A timer's interval is a request
  // that a tick meets as often as the platform manages: here once a frame
  // (60 a second) at most, as often as a player can see a change, so that an
  // idle window costs next to nothing instead of waking a thousand times a
  // second for the 1 ms timers.
  QTimer loop;
  loop.setTimerType(Qt::PreciseTimer);
  QObject::connect(&loop, &QTimer::timeout, [&] {
    program.RunEvent([&] { program.RunDue(); });
    // exit, not quit: quit asks each window to close, and the game window
    // leaves a close to the program, which has ended already.
    if (program.Over()) QCoreApplication::exit(0);
  });
  loop.start(kFrameMs);
  program.Start();
  if (opening && !program.Over()) program.RunEvent([&] { opening(program); });
  if (program.Over()) return 0;
  return QApplication::exec();
}

}  // namespace fw
