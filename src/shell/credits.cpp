#include "shell/credits.h"

#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";
constexpr float kStartTop = 6120;   // just below the visible area
constexpr float kLastTop = -15200;  // the picture's foot has passed the top
constexpr float kStep = 25;

}  // namespace

void frmgame::mnucredits_Click(Program& p) {
  FormSurface& s = p.surface();
  PictureBox(s, kForm, "credits").SetVisible(true);
  Timer(s, kForm, "Timer4").SetEnabled(true);
}

void frmgame::Image9_Click(Program& p) { mnucredits_Click(p); }

void frmgame::Timer4_Timer(Program& p) {
  FormSurface& s = p.surface();
  Image picture(s, kForm, "Image3");
  if (picture.Top() < kLastTop) {
    picture.SetTop(kStartTop);
    Timer(s, kForm, "Timer4").SetEnabled(false);
    PictureBox(s, kForm, "credits").SetVisible(false);
  }
  // This step runs on the closing tick too, so every later run starts one
  // step lower, at 6095.
  picture.SetTop(picture.Top() - kStep);
}

}  // namespace fw
