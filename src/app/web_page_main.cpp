// The game in a browser. The page (web/page.js) puts the game's files in
// /game and the player's own folder, kept in the browser's IndexedDB, in
// /user, makes /game the current folder, and starts this with the quest to
// open, if any, as `fablewright demo.fbw` opens one on the desktop.
#include <string>

#include "app/web_assembly.h"
#include "bindings/web/web_page.h"
#include "forms/codepage.h"
#include "play/start_quest.h"

int main(int argc, char** argv) {
  fw::Launch launch;
  launch.appDir = "/game";
  launch.exeName = "fablewright";
  launch.home = "/user";
  fw::WebBuildAssembly assembly(launch);
  fw::PageOpening opening;
  if (argc > 1 && *argv[1])
    opening = [quest = fw::Cp1252FromUtf8(argv[1])](fw::Program& p) { fw::OpenQuestNamed(p, quest); };
  return fw::RunInPage(assembly.Maker(), opening);
}
