#include "shell/small_forms.h"

#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

// What's New, line by line as the window shows it.
constexpr const char* kWhatsNewText =
    "Version 5.9\r\n"
    "4-27-04\r\n"
    "--------------\r\n"
    "Made the text box multilined for the page text! =) Added the \r\n"
    "auto-repeat check box for mp3's. Added play mp3 option for \r\n"
    "battles.\r\n"
    "\r\n"
    "\r\n"
    "Version 5.8\r\n"
    "4-23-04\r\n"
    "--------------\r\n"
    "You now can save your character you use in quests as a CHA \r\n"
    "file < IF the quest permits it > You can load this CHA file \r\n"
    "instead of creating a new character when you begin the quest. \r\n"
    "Saving will save your character also now. EXP system in \r\n"
    "place, when you get 100 exp you will gain a level. Minor \r\n"
    "cosmetic changes here and there. Changed credits a little. \r\n"
    "\r\n"
    "Version 5.7\r\n"
    "4-23-04\r\n"
    "--------------\r\n"
    "A working battle system is now in place. Please test it out. \r\n"
    "It should initiate a battle, allow you to fight, escape, win, \r\n"
    "or die. However nothing is in place to allow you to heal your \r\n"
    "character yet and it is not possible to save your character \r\n"
    "into a save game file. In future updates It will be possible \r\n"
    "to flag pages and items as being able to heal your character \r\n"
    "fully or partially. Also some battle features such as EXP \r\n"
    "Points for leveling and recieving items from the battles is \r\n"
    "not in place, but of course will be by the next update.\r\n"
    "\r\n"
    "\r\n"
    "Also added this cute little what's new window =)\r\n"
    "\r\n"
    "Last Minute changes:\r\n"
    "----------------------------\r\n"
    "I added the option to make a page be a\r\n"
    "healing page which will heal your character.\r\n"
    "In addition to this I also implemented the\r\n"
    "EXP system. Every 100 exp right now gives\r\n"
    "you a new level and you can save your\r\n"
    "character now and reload him later! Changed\r\n"
    "many of the buttons so they appear more\r\n"
    "cosmetic. These were last minute changes I did after the \r\n"
    "above messages. I also fixed\r\n"
    "a few errors that could cause Fablewright to\r\n"
    "crash.\r\n";

constexpr ControlDecl kSplashControls[] = {
    {.name = "Shape1", .kind = Kind::Shape, .width = 5655, .height = 2775,
     .look = {.foreColor = Rgb(255, 128, 0), .borderWidth = 5}},
};

constexpr FormDecl kFrmSplashTable{
    .name = "FrmSplash",
    .caption = "",
    .width = 5685,
    .height = 2790,
    .controls = kSplashControls,
    .look = {.foreColor = Rgb(255, 255, 255), .backColor = Rgb(0, 0, 0), .art = "splash.png"},
    .noBorder = true,
    .centred = true,
};

constexpr HandlerDecl kSplashHandlers[] = {
    {"Form", Event::Load, frmsplash::Form_Load},
    {"Form", Event::Click, frmsplash::Form_Click},
};

// Whether the player has cut the splash's pause short.
struct SplashState {
  bool cut = false;
};

constexpr ControlDecl kUpdatesControls[] = {
    {.name = "Text1", .kind = Kind::TextBox, .left = 120, .top = 120, .width = 5775, .height = 4215,
     .caption = kWhatsNewText,
     .look = {.font = {"MS Sans Serif", 8.25f, false}, .multiLine = true, .scrollBar = true, .readOnly = true}},
    {.name = "Command1", .kind = Kind::CommandButton, .left = 120, .top = 4440, .width = 5775, .height = 495,
     .caption = "OK"},
};

constexpr FormDecl kFrmUpdatesTable{
    .name = "FrmUpdates",
    .caption = "What's New! in 5.9",
    .width = 6030,
    .height = 5010,
    .controls = kUpdatesControls,
    .fixedBorder = true,
    .owner = "FrmGame",
};

constexpr HandlerDecl kUpdatesHandlers[] = {
    {"Command1", Event::Click, frmupdates::Command1_Click},
};

}  // namespace

void frmsplash::Form_Load(Program& p) {
  FormSurface& s = p.surface();
  // The game window's first access: its whole Form_Load runs here, so a
  // packaged game's first page is built and its music started before the
  // splash is even visible.
  Picture icon = FormHandle(s, "FrmGame").Icon();
  FormHandle splash(s, "FrmSplash");
  splash.SetIcon(icon);
  splash.Show();
  // A key or a click on the splash lets the player in at once, as players
  // expect of a splash.
  const SplashState& state = p.Module<SplashState>();
  p.Pause(3, [&] { return state.cut; });
  FormHandle(s, "FrmGame").Show();
  // Closed meanwhile (it has no frame, but a desktop can close any window):
  // a Hide would load it, and run all this, again.
  if (s.IsLoaded(splash.index())) splash.Hide();
}

void frmsplash::Form_Click(Program& p) { p.Module<SplashState>().cut = true; }

void frmupdates::Command1_Click(Program& p) { FormHandle(p.surface(), "FrmUpdates").Hide(); }

const FormDef& FrmSplashForm() {
  static const FormDef form{&kFrmSplashTable, kSplashHandlers};
  return form;
}

const FormDef& FrmUpdatesForm() {
  static const FormDef form{&kFrmUpdatesTable, kUpdatesHandlers};
  return form;
}

}  // namespace fw
