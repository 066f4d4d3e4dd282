// Loaded into a window program by LD_PRELOAD, for the start-up benchmark:
// once the program's first frame has been painted, writes the monotonic
// clock (nanoseconds) into the file FABLEWRIGHT_FIRST_FRAME_FILE names and
// ends the process at once. The same probe goes into every program measured,
// so what it costs is the same on both sides of a ratio.
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

void Report() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const char* file = std::getenv("FABLEWRIGHT_FIRST_FRAME_FILE");
  if (file) {
    char text[32];
    int n = std::snprintf(text, sizeof text, "%lld\n", now.tv_sec * 1000000000LL + now.tv_nsec);
    int fd = ::open(file, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (fd >= 0) {
      (void)!::write(fd, text, static_cast<size_t>(n));
      ::close(fd);
    }
  }
  ::_exit(0);
}

// A widget's first paint event is delivered inside the sync that then puts
// the backing store on screen; a zero timer runs once that sync is over.
class FirstFrame : public QObject {
 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (!seen_ && event->type() == QEvent::Paint && object->isWidgetType()) {
      seen_ = true;
      QTimer::singleShot(0, [] { Report(); });
    }
    return false;
  }

 private:
  bool seen_ = false;
};

void Install() {
  if (std::getenv("FABLEWRIGHT_FIRST_FRAME_FILE")) qApp->installEventFilter(new FirstFrame);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Install)
