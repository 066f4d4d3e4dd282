#include "bindings/qt/qt_desktop.h"

#include <QApplication>
#include <QFileDialog>
#include <QLoggingCategory>
#include <QMainWindow>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
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

// The program's timers and posted events. A timer's interval is a request
// that a tick meets as often as the platform manages: here once a frame (60
// a second) at most, as often as a player can see a change. Between changes
// the loop sleeps: a timer whose tick changed nothing is not run again until
// something changes, so an idle window does not wake at all until the player
// acts, a posted event falls due, or media end.
class FrameLoop : public QObject {
 public:
  explicit FrameLoop(Program& program) : program_(program) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { Tick(); });
  }
  // Something changed: run within a frame.
  void Poke() {
    if (ticking_) return;
    if (!timer_.isActive() || timer_.remainingTime() > kFrameMs) timer_.start(kFrameMs);
  }

 private:
  void Tick() {
    ticking_ = true;
    program_.RunEvent([&] { program_.RunDue(); });
    ticking_ = false;
    // exit, not quit: quit asks each window to close, and the game window
    // leaves a close to the program, which has ended already.
    if (program_.Over()) {
      QCoreApplication::exit(0);
      return;
    }
    double wake = program_.NextWake();
    if (wake == std::numeric_limits<double>::infinity()) return;
    constexpr double kDayMs = 24 * 3600 * 1000.0;
    double ms = std::ceil((wake - program_.Now()) * 1000.0);
    if (ms < -kDayMs / 2) ms += kDayMs;  // due after midnight, when the clock starts again at 0
    timer_.start(static_cast<int>(std::clamp(ms, double(kFrameMs), kDayMs)));
  }

  Program& program_;
  QTimer timer_;
  bool ticking_ = false;
};

// Passes the surface's changes on to the windows and wakes the loop with
// each one, since a change may wake a timer that had settled.
class WakingObserver : public SurfaceObserver {
 public:
  WakingObserver(SurfaceObserver& windows, std::function<void()> poke)
      : windows_(windows), poke_(std::move(poke)) {}
  void ControlChanged(ControlId id, Prop prop) override {
    windows_.ControlChanged(id, prop);
    poke_();
  }
  void FormChanged(int form, Prop prop) override {
    windows_.FormChanged(form, prop);
    poke_();
  }
  void FormLoaded(int form) override {
    windows_.FormLoaded(form);
    poke_();
  }
  void FormUnloaded(int form) override {
    windows_.FormUnloaded(form);
    poke_();
  }

 private:
  SurfaceObserver& windows_;
  std::function<void()> poke_;
};

// A dialog takes the zoom of the window it opens over: its text, and so its
// buttons and its size, grow with the game. Gives that zoom.
double ZoomLike(QWidget* dialog, QWidget* parent) {
  double zoom = QtWindows::ZoomOf(parent);
  if (zoom != 1.0) {
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0) font.setPointSizeF(font.pointSizeF() * zoom);
    else font.setPixelSize(static_cast<int>(font.pixelSize() * zoom + 0.5));
    dialog->setFont(font);
  }
  return zoom;
}

}  // namespace

int QtDialogs::MsgBox(std::string_view prompt, int style, std::string_view title) {
  std::unique_ptr<QMessageBox> box = MakeMessageBox(prompt, style, title, Parent());
  int answer = box->exec();
  if (style == 4) return answer == QMessageBox::Yes ? 6 : 7;
  return 1;
}

std::optional<std::string> QtDialogs::FileDialog(const FileDialogRequest& r) {
  QString dir = QString::fromStdString(r.startDir);
  QWidget* parent = Parent();
  QFileDialog dialog(parent, {}, dir, Filter(r.filter));
  dialog.setAcceptMode(r.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(r.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  // A save proposes the name the game gave it.
  if (r.save && !r.fileName.empty())
    dialog.selectFile(QString::fromStdString(Utf8FromCp1252(r.fileName.substr(r.fileName.find_last_of("/\\") + 1))));
  // A file dialog keeps the size it is given, whatever its text.
  if (double zoom = ZoomLike(&dialog, parent); zoom != 1.0) {
    QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen();
    QSize room = screen ? screen->availableGeometry().size() * 0.9 : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    dialog.resize((dialog.sizeHint() * zoom).boundedTo(room));
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  QString chosen = dialog.selectedFiles().first();
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
  double zoom = ZoomLike(box.get(), parent);
  if (zoom != 1.0 && (style == 16 || style == 64)) {
    // The icon drawn afresh at its zoomed size, sharp rather than blown up.
    int side = static_cast<int>(box->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, box.get()) * zoom);
    QStyle::StandardPixmap icon = style == 16 ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxInformation;
    box->setIconPixmap(box->style()->standardIcon(icon, nullptr, box.get()).pixmap(QSize(side, side), box->devicePixelRatioF()));
  }
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

  FrameLoop loop(program);
  WakingObserver observer(*windows, [&] { loop.Poke(); });
  program.surface().SetObserver(&observer);
  program.SetWake([&] { QMetaObject::invokeMethod(&loop, [&] { loop.Poke(); }, Qt::QueuedConnection); });
  // The loop and its observer go before the program, which may outlive them.
  struct Detach {
    Program& p;
    QtWindows* windows;
    ~Detach() {
      p.SetWake({});
      p.surface().SetObserver(windows);
    }
  } detach{program, windows.get()};
  loop.Poke();
  program.Start();
  if (opening && !program.Over()) program.RunEvent([&] { opening(program); });
  if (program.Over()) return 0;
  return QApplication::exec();
}

}  // namespace fw
