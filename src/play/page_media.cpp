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
  // MEDIA: PlayPageMovie with the page's Movie key belongs here, for every
  // caller. The movie panel and its player are all it touches.
}

void PageAudioStep(Program& p, const GameState& g, PageCaller caller) {
  std::string music = PageKey(p, g, "Music");
  // The Start image keeps a tune that is already on; its MIDI start follows
  // only a change of the field, so the change is worked out before the write.
  bool changed = music != g.Music.Caption();
  g.Music.SetCaption(music);
  // MEDIA: the Mp3 rule and the MIDI start of the caller's row belong here:
  // ChooseOption, PackagedStart, LoadQuestFile, BattleOutcome start the MIDI
  // when Music is not blank; StartImage only when `changed` and not blank;
  // TestPlay always.
  (void)changed;
}

void AutoRepeatStep(Program& p, const GameState& g, PageCaller caller) {
  // MEDIA: PlayCount of playmp3 from AutoRepeat (99 for "1", else 1; on
  // ChooseOption the 1 only when Mp3 is not blank) belongs here.
}

}  // namespace fw
