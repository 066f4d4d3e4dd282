#include "play/page_media.h"

#include <string>

#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/quest_paths.h"
#include "shell/program.h"

namespace fw {

void PageImageStep(Program& p, const GameState& g) {
  std::string image = PageKey(p, g, "Image");
  if (image.empty()) return;
  // A picture that cannot be loaded leaves the old one on show.
  Skip([&] { g.PicWindow.SetPicture(LoadQuestPicture(p, image, QuestFolder(p, g.questfil.Caption()))); });
}

void PageMovieStep(Program& p, const GameState& g, PageCaller caller) {
  // MEDIA: PlayPageMovie(p, PageKey(p, g, "Movie")) for every caller.
}

void PageAudioStep(Program& p, const GameState& g, PageCaller caller) {
  std::string music = PageKey(p, g, "Music");
  // The Start image keeps a tune that is already on: its MIDI start follows
  // only a change of the field, so the change is worked out before the write.
  bool changed = music != g.Music.Caption();
  g.Music.SetCaption(music);
  // MEDIA: the track and the tune, by caller:
  //   ChooseOption: PlayPageMp3(Mp3); StartMidi when Music is not blank.
  //   PackagedStart, LoadQuestFile, BattleOutcome: PlayMp3(Mp3) even when
  //     blank; StartMidi when Music is not blank.
  //   StartImage: PlayMp3 only when playmp3's FileName differs from Mp3;
  //     StartMidi only when `changed` and Music is not blank.
  //   TestPlay: PlayMp3(Mp3) always; StartMidi always.
  (void)changed;
}

void AutoRepeatStep(Program& p, const GameState& g, PageCaller caller) {
  // MEDIA: ApplyAutoRepeat(p, AutoRepeat, Mp3, caller == PageCaller::ChooseOption).
}

}  // namespace fw
