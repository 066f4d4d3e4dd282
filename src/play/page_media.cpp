#include "play/page_media.h"

#include <string>

#include "forms/controls.h"
#include "forms/program.h"
#include "media/midi_api.h"
#include "media/page_media.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/quest_paths.h"

namespace fw {

void PageImageStep(Program& p, const GameState& g) {
  std::string image = PageKey(p, g, "Image");
  if (image.empty()) return;
  // A picture that cannot be loaded leaves the old one on show.
  Skip([&] { g.PicWindow.SetPicture(LoadQuestPicture(p, image, QuestFolder(p, g.questfil.Caption()))); });
}

namespace {

// The file a media name of the quest means on this machine; "" stays "".
std::string Locate(Program& p, const GameState& g, const std::string& name) {
  return name.empty() ? name : FindQuestFile(p, name, QuestFolder(p, g.questfil.Caption()));
}

}  // namespace

void PageMovieStep(Program& p, const GameState& g, PageCaller) {
  PlayPageMovie(p, Locate(p, g, PageKey(p, g, "Movie")));
}

void PageAudioStep(Program& p, const GameState& g, PageCaller caller) {
  std::string music = PageKey(p, g, "Music");
  // The Start image keeps a tune that is already on: its MIDI start follows
  // only a change of the field, so the change is worked out before the write.
  bool changed = music != g.Music.Caption();
  g.Music.SetCaption(music);
  std::string mp3 = Locate(p, g, PageKey(p, g, "Mp3"));
  MediaPlayer player(p.surface(), "FrmGame", "playmp3");
  switch (caller) {
    case PageCaller::ChooseOption:
      PlayPageMp3(p, mp3);
      break;
    case PageCaller::StartImage:
      if (player.FileName() != mp3) PlayMp3(p, mp3);
      break;
    default:
      PlayMp3(p, mp3);
      break;
  }
  // A test play starts its tune always, without the stop before it; the Start
  // image only on a change of tune; every other caller on a page with a tune.
  std::int32_t window = FormHandle(p.surface(), "FrmGame").hWnd();
  if (caller == PageCaller::TestPlay) StartMidi(p, Locate(p, g, music), false, window);
  else if (!music.empty() && (caller != PageCaller::StartImage || changed))
    StartMidi(p, Locate(p, g, music), true, window);
}

void AutoRepeatStep(Program& p, const GameState& g, PageCaller caller) {
  ApplyAutoRepeat(p, PageKey(p, g, "AutoRepeat"), PageKey(p, g, "Mp3"), caller == PageCaller::ChooseOption);
}

}  // namespace fw
