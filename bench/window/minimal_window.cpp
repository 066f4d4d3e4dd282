// The reference of the start-up benchmark: the least a Qt Widgets program
// does to put a window with a line of text on screen.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QLabel label("Fablewright");
  label.resize(559, 432);
  label.show();
  return QApplication::exec();
}
