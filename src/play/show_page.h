#pragma once

namespace fw {

class Program;
struct GameState;

// Who brings a page on screen: each runs its own selection of the page steps.
enum class PageCaller {
  ChooseOption,   // the Choose button
  PackagedStart,  // a packaged game at program start
  StartImage,     // the Start image of a packaged game
  LoadQuestFile,  // File / Load A Quest File
  BattleOutcome,  // a battle's win, loss or escape
  TestPlay,       // the editor's test play: only the media steps, never ShowPage
};

// Brings the page in pg on screen, after the caller has set pg, room, the
// transcript and the option captions. Reads every key afresh; a step that
// fails is passed over.
void ShowPage(Program& p, PageCaller caller);

}  // namespace fw
