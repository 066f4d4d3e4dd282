// The game window as a module of its own, which the program loads only when
// a window opens: a start that plays in the terminal, runs a script or reads
// a key then loads none of the window toolkit. The program finds these two
// entry points by name; it and its module must come from the same build, so
// the first gives the version the module was built as.
#include "bindings/qt/qt_desktop.h"

extern "C" {

__attribute__((visibility("default"))) const char* fablewright_window_build() { return FABLEWRIGHT_VERSION; }

__attribute__((visibility("default"))) int fablewright_run_windows(const fw::ProgramMaker* make, int argc,
                                                                   char** argv, const fw::Opening* opening) {
  return fw::RunDesktop(*make, argc, argv, opening ? *opening : fw::Opening{});
}

}  // extern "C"
