#include "media/page_media.h"

#include "forms/controls.h"
#include "forms/media_player.h"
#include "forms/program.h"

namespace fw {
namespace {

MediaPlayer Mp3Player(Program& p) { return MediaPlayer(p.surface(), "FrmGame", "playmp3"); }

}  // namespace

void PlayPageMovie(Program& p, std::string_view value) {
  if (value.empty()) return;
  FormSurface& s = p.surface();
  MediaPlayer movie(s, "FrmGame", "Movie");
  Skip([&] { PictureBox(s, "FrmGame", "MovBox").SetVisible(true); });
  Skip([&] { movie.SetVisible(true); });
  Skip([&] { movie.SetFileName(value); });
  Skip([&] { movie.Play(); });
}

void Timer2_Timer(Program& p) {
  FormSurface& s = p.surface();
  if (MediaPlayer(s, "FrmGame", "Movie").PlayState() == 0)
    PictureBox(s, "FrmGame", "MovBox").SetVisible(false);
}

std::optional<MovieCover> MovieOverPage(Program& p) {
  FormSurface& s = p.surface();
  ControlId panel = s.Id("FrmGame", "MovBox");
  // Another panel above it (the picture menu) is the one the player faces.
  if (!s.Unreachable(panel).empty()) return std::nullopt;
  return MovieCover{p.services().players->SecondsLeft(p, s.Id("FrmGame", "Movie"))};
}

void PlayMp3(Program& p, std::string_view file) {
  MediaPlayer mp3 = Mp3Player(p);
  Skip([&] { mp3.SetFileName(file); });
  Skip([&] { mp3.Play(); });
}

void PlayPageMp3(Program& p, std::string_view mp3) {
  MediaPlayer player = Mp3Player(p);
  if (player.ReadyState() == kReadyComplete && player.FileName() == mp3) return;
  if (!mp3.empty()) PlayMp3(p, mp3);
}

void ApplyAutoRepeat(Program& p, std::string_view autoRepeat, std::string_view mp3, bool onlyWithMp3) {
  MediaPlayer player = Mp3Player(p);
  if (autoRepeat == "1") Skip([&] { player.SetPlayCount(99); });
  else if (!onlyWithMp3 || !mp3.empty()) Skip([&] { player.SetPlayCount(1); });
}

}  // namespace fw
