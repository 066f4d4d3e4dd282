// The game window: every control, where it lies (twips), and how it looks.
// Controls stack in table order, so the page view comes first and the panels
// that cover it follow, lowest first: MovBox, Picture2, BattleBox, InvBox,
// CharCreate, credits.
#include "shell/frmgame.h"

#include "play/page_view.h"

namespace fw {
namespace {

constexpr std::int32_t kRed = Rgb(255, 0, 0);
constexpr std::int32_t kWhite = Rgb(255, 255, 255);
constexpr std::int32_t kBlack = Rgb(0, 0, 0);
constexpr std::int32_t kDarkRed = Rgb(192, 0, 0);
constexpr std::int32_t kCyanTone = 12632064;  // blue 192, green 192, red 0

constexpr Font kSansBold975{"MS Sans Serif", 9.75f, true};
constexpr Font kSansBold12{"MS Sans Serif", 12, true};
constexpr Font kVerdana825{"Verdana", 8.25f, false};
constexpr Font kVerdana{"Verdana", 9.75f, false};
constexpr Font kTimesBold{"Times New Roman", 15.75f, true};

constexpr Look kOption{.backColor = kWhite, .font = kVerdana825};
// The ending's line in the option area: an option's row, in a quieter hand.
constexpr Look kTheEndLook{.foreColor = Rgb(96, 96, 96), .backColor = kWhite, .font = kVerdana825};
constexpr Look kScore{.foreColor = kRed, .transparent = true, .font = kSansBold12};
constexpr Look kPanel{.backColor = kBlack};
// A panel with a picture on its black ground.
constexpr Look Panel(const char* art) { return Look{.backColor = kBlack, .art = art}; }
constexpr Look kHotZone{.transparent = true, .handCursor = true};
constexpr Look kMenuLink{.foreColor = kCyanTone, .transparent = true,
                         .font = {nullptr, 14.25f, false}, .handCursor = true};
// The auto-update link on a slate of its own, which goes with it where a
// packaged game hides it.
constexpr Look kUpdateLink{.foreColor = kCyanTone, .transparent = true,
                           .font = {nullptr, 14.25f, false}, .handCursor = true, .art = "slate.png"};
constexpr Look kBattleLabel{.foreColor = kWhite, .transparent = true, .font = kVerdana};
constexpr Look kCharLabel{.foreColor = kWhite, .transparent = true, .font = kTimesBold};
constexpr Look kCharText{.font = kTimesBold, .readOnly = true};

// An image button: a picture with the hand cursor.
constexpr Look Button(const char* art) { return Look{.handCursor = true, .art = art}; }

constexpr ControlDecl kControls[] = {
    // Menu bar.
    {.name = "mnufile", .kind = Kind::Menu, .caption = "&File"},
    {.name = "mnunewgame", .kind = Kind::Menu, .parent = "mnufile", .caption = "&New Game", .enabled = false},
    {.name = "mnucreatequest", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Create 'A' Quest"},
    {.name = "mnuloadquest", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Load A Quest File"},
    {.name = "mnuload", .kind = Kind::Menu, .parent = "mnufile", .caption = "Load Saved &Game"},
    {.name = "mnusave", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Save Current Game"},
    {.name = "mnusavechar", .kind = Kind::Menu, .parent = "mnufile", .caption = "Save C&haracter File"},
    {.name = "mnuexit", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Exit"},
    // The player's comforts, apart from File so that File stays as it was.
    {.name = "mnugame", .kind = Kind::Menu, .caption = "&Game"},
    {.name = "mnuundo", .kind = Kind::Menu, .parent = "mnugame", .caption = "&Undo", .enabled = false, .shortcut = "Ctrl+Z"},
    {.name = "mnurestart", .kind = Kind::Menu, .parent = "mnugame", .caption = "&Restart Quest"},
    {.name = "mnucontinue", .kind = Kind::Menu, .parent = "mnugame", .caption = "&Continue"},
    {.name = "mnutranscript", .kind = Kind::Menu, .parent = "mnugame", .caption = "Save &Transcript..."},
    {.name = "mnuhelp", .kind = Kind::Menu, .caption = "&Help"},
    {.name = "mnuabout", .kind = Kind::Menu, .parent = "mnuhelp", .caption = "&About"},
    {.name = "mnucredits", .kind = Kind::Menu, .parent = "mnuhelp", .caption = "&Credits"},
    {.name = "mnupdate", .kind = Kind::Menu, .caption = "&Update"},
    {.name = "mnuauto", .kind = Kind::Menu, .parent = "mnupdate", .caption = "&Run Auto-Update"},
    {.name = "mnunew", .kind = Kind::Menu, .parent = "mnupdate", .caption = "&What's New"},

    // Fields and procedures that lie off the form or stay invisible.
    {.name = "questfil", .kind = Kind::Label, .left = 11880, .top = 4920, .width = 1215, .height = 375,
     .caption = "No Quest Loaded.", .visible = false},
    {.name = "pg", .kind = Kind::Label, .left = 11880, .top = 5400, .width = 1215, .height = 375,
     .caption = "1", .visible = false},
    {.name = "Music", .kind = Kind::Label, .left = 11880, .top = 5880, .width = 1215, .height = 375,
     .visible = false},
    {.name = "room", .kind = Kind::TextBox, .left = 4560, .top = 7080, .width = 1215, .height = 375,
     .visible = false},
    {.name = "Command1", .kind = Kind::CommandButton, .left = 12000, .top = 3240, .width = 1215,
     .height = 495, .caption = "Choose", .visible = false},
    {.name = "Command2", .kind = Kind::CommandButton, .left = 12240, .top = 3240, .width = 1215,
     .height = 495, .visible = false},
    {.name = "Command6", .kind = Kind::CommandButton, .left = 12000, .top = 2400, .width = 1215,
     .height = 495, .caption = "Inventory", .visible = false},
    {.name = "playmp3", .kind = Kind::MediaPlayer, .left = 7320, .top = 6960, .width = 1095,
     .height = 255, .visible = false},
    {.name = "Timer1", .kind = Kind::Timer, .interval = 10},
    {.name = "file", .kind = Kind::FileDialog, .filter = "*.sav|*.sav", .defaultExt = "*.sav"},
    {.name = "questfile", .kind = Kind::FileDialog, .filter = "*.fbw|*.fbw", .defaultExt = "*.fbw"},
    {.name = "charfile", .kind = Kind::FileDialog, .filter = "*.cha|*.cha", .defaultExt = "*.cha"},
    {.name = "transcriptfile", .kind = Kind::FileDialog, .filter = "*.txt|*.txt", .defaultExt = "*.txt"},

    // The page view.
    {.name = "PicWindow", .kind = Kind::Image, .left = 3720, .top = 0, .width = 4575, .height = 2175, .toolTip = "The page's picture"},
    {.name = "Text1", .kind = Kind::TextBox, .left = 2520, .top = 2280, .width = 5655, .height = 2775,
     .caption = "No Quest Loaded.\r\n",
     .look = {.foreColor = kWhite, .backColor = kDarkRed, .font = kSansBold975, .multiLine = true,
              .scrollBar = true, .readOnly = true}, .toolTip = "The story so far"},
    {.name = "Option1", .kind = Kind::OptionButton, .left = 2640, .top = 5160, .width = 5655, .height = 195, .look = kOption},
    {.name = "Option2", .kind = Kind::OptionButton, .left = 2640, .top = 5400, .width = 5655, .height = 195, .look = kOption},
    {.name = "Option3", .kind = Kind::OptionButton, .left = 2640, .top = 5640, .width = 5655, .height = 195, .look = kOption},
    {.name = "Option4", .kind = Kind::OptionButton, .left = 2640, .top = 5880, .width = 5655, .height = 195, .look = kOption},
    // At a page with no options: how to play again (Timer1 shows it).
    {.name = "lblTheEnd", .kind = Kind::Label, .left = 2640, .top = 5160, .width = 5655, .height = 195,
     .caption = kTheEnd, .visible = false, .look = kTheEndLook},
    {.name = "Label1", .kind = Kind::Label, .left = 120, .top = 4680, .width = 855, .height = 375, .caption = "Score:", .look = kScore},
    {.name = "score", .kind = Kind::Label, .left = 960, .top = 4680, .width = 1215, .height = 375, .caption = "0", .look = kScore},
    {.name = "Picture1", .kind = Kind::PictureBox, .left = 360, .top = 5040, .width = 1815, .height = 375, .look = Button("choose.png"), .toolTip = "Choose"},
    {.name = "Picture3", .kind = Kind::PictureBox, .left = 360, .top = 5400, .width = 1815, .height = 375, .look = Button("inventory.png"), .toolTip = "Inventory"},
    {.name = "Picture5", .kind = Kind::PictureBox, .left = 360, .top = 5760, .width = 1815, .height = 375, .look = Button("character.png"), .toolTip = "Character"},
    {.name = "Image4", .kind = Kind::Image, .left = 480, .top = 3120, .width = 1335, .height = 1395, .look = Button("menubutton.png"), .toolTip = "Menu"},
    {.name = "Label8", .kind = Kind::Label, .left = 0, .top = 0, .width = 855, .height = 375, .caption = "HP:", .visible = false,
     .look = {.foreColor = kWhite, .transparent = true}},
    {.name = "HPPlay", .kind = Kind::ProgressBar, .left = 480, .top = 0, .width = 1695, .height = 255, .visible = false, .toolTip = "Your hit points"},
    {.name = "Label9", .kind = Kind::Label, .left = 0, .top = 240, .width = 855, .height = 375, .caption = "Exp:", .visible = false,
     .look = {.foreColor = kWhite, .transparent = true}},
    {.name = "exp", .kind = Kind::ProgressBar, .left = 480, .top = 240, .width = 1695, .height = 255, .visible = false, .toolTip = "Your experience"},

    // The movie panel.
    {.name = "MovBox", .kind = Kind::PictureBox, .width = 8415, .height = 6255, .visible = false, .look = kPanel, .toolTip = "Movie"},
    {.name = "Movie", .kind = Kind::MediaPlayer, .parent = "MovBox", .width = 8415, .height = 6255, .toolTip = "Movie"},
    {.name = "Timer2", .kind = Kind::Timer, .parent = "MovBox", .interval = 5},

    // The picture menu and its hot zones.
    {.name = "Picture2", .kind = Kind::PictureBox, .width = 8415, .height = 6735, .look = {.art = "picturemenu.png"}, .toolTip = "Picture menu"},
    {.name = "Label2", .kind = Kind::Label, .parent = "Picture2", .left = 5040, .top = 240, .width = 3255, .height = 495,
     .look = {.foreColor = kRed, .transparent = true, .font = {nullptr, 18, true}}, .toolTip = "Picture menu"},
    {.name = "Image1", .kind = Kind::Image, .parent = "Picture2", .left = 720, .top = 1560, .width = 1575, .height = 975, .look = kHotZone, .toolTip = "Load Quest"},
    {.name = "Image11", .kind = Kind::Image, .parent = "Picture2", .left = 720, .top = 1560, .width = 1575, .height = 975,
     .visible = false, .look = kHotZone, .toolTip = "New Game"},
    {.name = "Image2", .kind = Kind::Image, .parent = "Picture2", .left = 2760, .top = 2760, .width = 495, .height = 855, .look = kHotZone, .toolTip = "Load Game"},
    {.name = "Image5", .kind = Kind::Image, .parent = "Picture2", .left = 3360, .top = 0, .width = 1335, .height = 2295, .look = kHotZone, .toolTip = "Resume Game"},
    {.name = "Image6", .kind = Kind::Image, .parent = "Picture2", .left = 3960, .top = 3120, .width = 495, .height = 975, .look = kHotZone, .toolTip = "Save Game"},
    {.name = "Image7", .kind = Kind::Image, .parent = "Picture2", .left = 6720, .top = 2640, .width = 615, .height = 735, .look = kHotZone, .toolTip = "About"},
    {.name = "Image8", .kind = Kind::Image, .parent = "Picture2", .left = 4920, .top = 4080, .width = 3255, .height = 2055, .look = kHotZone, .toolTip = "Create A Quest"},
    {.name = "Image9", .kind = Kind::Image, .parent = "Picture2", .left = 5760, .top = 2280, .width = 615, .height = 735, .look = kHotZone, .toolTip = "Credits"},
    {.name = "Image10", .kind = Kind::Image, .parent = "Picture2", .left = 7560, .top = 3240, .width = 735, .height = 735, .look = kHotZone, .toolTip = "Quit"},
    {.name = "Label14", .kind = Kind::Label, .parent = "Picture2", .left = 0, .top = 5640, .width = 3735, .height = 495,
     .caption = kWebAddress, .look = kMenuLink},
    {.name = "Label15", .kind = Kind::Label, .parent = "Picture2", .left = 0, .top = 0, .width = 1815, .height = 495,
     .caption = "Auto Update", .look = kUpdateLink},

    // The battle panel.
    {.name = "BattleBox", .kind = Kind::PictureBox, .width = 8415, .height = 6255, .visible = false, .look = Panel("battlebox.png"), .toolTip = "Battle"},
    {.name = "Picture4", .kind = Kind::PictureBox, .parent = "BattleBox", .left = 1800, .top = 120, .width = 6495, .height = 3015, .look = kPanel, .toolTip = "The enemy"},
    {.name = "Label4", .kind = Kind::Label, .parent = "BattleBox", .left = 1560, .top = 3120, .width = 3375, .height = 495,
     .caption = "Enemy Hp:", .look = kBattleLabel},
    {.name = "Label6", .kind = Kind::Label, .parent = "BattleBox", .left = 6720, .top = 3240, .width = 1455, .height = 375,
     .caption = "00", .look = kBattleLabel},
    {.name = "ProgressBar2", .kind = Kind::ProgressBar, .parent = "BattleBox", .left = 4920, .top = 3240, .width = 1695, .height = 255, .toolTip = "Enemy hit points"},
    {.name = "Label3", .kind = Kind::Label, .parent = "BattleBox", .left = 0, .top = 5160, .width = 1335, .height = 375,
     .caption = "Your Hp:", .look = kBattleLabel},
    {.name = "Label5", .kind = Kind::Label, .parent = "BattleBox", .left = 0, .top = 5760, .width = 1575, .height = 375,
     .caption = "00", .look = kBattleLabel},
    {.name = "ProgressBar1", .kind = Kind::ProgressBar, .parent = "BattleBox", .left = 0, .top = 5520, .width = 1695, .height = 255, .toolTip = "Your hit points"},
    {.name = "Text2", .kind = Kind::TextBox, .parent = "BattleBox", .left = 1800, .top = 3960, .width = 6375, .height = 1815,
     .look = {.font = kVerdana, .multiLine = true, .scrollBar = true, .readOnly = true}, .toolTip = "Battle report"},
    {.name = "Picture7", .kind = Kind::PictureBox, .parent = "BattleBox", .left = -120, .top = 3840, .width = 1815, .height = 495,
     .look = Button("attack.png"), .toolTip = "Attack"},
    {.name = "Picture8", .kind = Kind::PictureBox, .parent = "BattleBox", .left = -240, .top = 4680, .width = 1815, .height = 495,
     .look = Button("escape.png"), .toolTip = "Escape"},

    // The inventory panel.
    {.name = "InvBox", .kind = Kind::PictureBox, .width = 8415, .height = 6255, .visible = false, .look = Panel("invbox.png"), .toolTip = "Inventory"},
    {.name = "Label7", .kind = Kind::Label, .parent = "InvBox", .left = 3120, .top = 840, .width = 2415, .height = 375,
     .caption = "Your items:", .look = {.foreColor = kWhite, .transparent = true, .font = {nullptr, 14.25f, false}}},
    {.name = "List1", .kind = Kind::ListBox, .parent = "InvBox", .left = 3000, .top = 1200, .width = 1935, .height = 3375, .toolTip = "Your items"},
    {.name = "Picture6", .kind = Kind::PictureBox, .parent = "InvBox", .left = 3000, .top = 4680, .width = 1815, .height = 495,
     .look = Button("close.png"), .toolTip = "Close"},
    {.name = "Command7", .kind = Kind::CommandButton, .parent = "InvBox", .left = 5160, .top = 4680, .width = 1215, .height = 495,
     .caption = "Use", .visible = false, .enabled = false},

    // The character panel.
    {.name = "CharCreate", .kind = Kind::PictureBox, .width = 8415, .height = 6255, .visible = false, .look = Panel("charcreate.png"), .toolTip = "Character"},
    {.name = "Label13", .kind = Kind::Label, .parent = "CharCreate", .left = 1680, .top = 960, .width = 975, .height = 375, .caption = "Name:", .look = kCharLabel},
    {.name = "Text6", .kind = Kind::TextBox, .parent = "CharCreate", .left = 2760, .top = 960, .width = 3975, .height = 375, .look = {.font = kTimesBold}, .toolTip = "Name"},
    {.name = "Label16", .kind = Kind::Label, .parent = "CharCreate", .left = 1680, .top = 1440, .width = 975, .height = 375, .caption = "Level:", .look = kCharLabel},
    {.name = "Text7", .kind = Kind::TextBox, .parent = "CharCreate", .left = 3240, .top = 1440, .width = 855, .height = 375, .caption = "1", .look = kCharText, .toolTip = "Level"},
    {.name = "Label12", .kind = Kind::Label, .parent = "CharCreate", .left = 1680, .top = 1920, .width = 1455, .height = 375, .caption = "Hit Points:", .look = kCharLabel},
    {.name = "Text5", .kind = Kind::TextBox, .parent = "CharCreate", .left = 3240, .top = 1920, .width = 855, .height = 375, .look = kCharText, .toolTip = "Hit Points"},
    {.name = "Label11", .kind = Kind::Label, .parent = "CharCreate", .left = 1680, .top = 2400, .width = 1455, .height = 375, .caption = "Strength:", .look = kCharLabel},
    {.name = "Text4", .kind = Kind::TextBox, .parent = "CharCreate", .left = 3240, .top = 2400, .width = 855, .height = 375, .look = kCharText, .toolTip = "Strength"},
    {.name = "Label10", .kind = Kind::Label, .parent = "CharCreate", .left = 1680, .top = 2880, .width = 1455, .height = 375, .caption = "Defence:", .look = kCharLabel},
    {.name = "Text3", .kind = Kind::TextBox, .parent = "CharCreate", .left = 3240, .top = 2880, .width = 855, .height = 375, .look = kCharText, .toolTip = "Defence"},
    {.name = "Command10", .kind = Kind::CommandButton, .parent = "CharCreate", .left = 1680, .top = 3480, .width = 2175, .height = 495, .caption = "Re-Roll"},
    {.name = "Command9", .kind = Kind::CommandButton, .parent = "CharCreate", .left = 4440, .top = 3480, .width = 2175, .height = 495,
     .caption = "Create", .enabled = false},
    {.name = "Image12", .kind = Kind::Image, .parent = "CharCreate", .left = 3120, .top = 3480, .width = 1815, .height = 465,
     .visible = false, .look = Button("close.png"), .toolTip = "Close"},
    {.name = "Command3", .kind = Kind::CommandButton, .parent = "CharCreate", .left = 1440, .top = 4200, .width = 2415, .height = 495, .caption = "Save Character"},
    {.name = "Command11", .kind = Kind::CommandButton, .parent = "CharCreate", .left = 4440, .top = 4200, .width = 2415, .height = 495, .caption = "Load Character"},
    {.name = "Timer3", .kind = Kind::Timer, .parent = "CharCreate", .interval = 1},

    // The credits, above everything.
    {.name = "credits", .kind = Kind::PictureBox, .width = 8415, .height = 6255, .visible = false, .look = kPanel, .toolTip = "Credits"},
    {.name = "Image3", .kind = Kind::Image, .parent = "credits", .left = 480, .top = 6120, .width = 7470, .height = 14790,
     .look = {.art = "credits.png"}, .toolTip = "Credits"},
    {.name = "Timer4", .kind = Kind::Timer, .parent = "credits", .enabled = false, .interval = 25},
};

// Play without a mouse. Escape closes the panel on top, else goes back to
// the picture menu; a covered or hidden control refuses it, so the first of
// its entries that is on top takes it.
constexpr KeyDecl kKeys[] = {
    {"1", "Option1"},      {"2", "Option2"},      {"3", "Option3"},     {"4", "Option4"},
    {"Return", "Picture1"}, {"Enter", "Picture1"}, {"I", "Picture3"},    {"C", "Picture5"},
    {"A", "Picture7"},     {"E", "Picture8"},     {"Escape", "Image12"}, {"Escape", "Picture6"},
    {"Escape", "Image4"},
};

}  // namespace

const FormDecl kFrmGameTable{
    .name = "FrmGame",
    .caption = "Fablewright 2004 - Beta 5.9",
    .width = 8385,
    .height = 6195,
    .controls = kControls,
    .look = {.handCursor = true, .art = "background.png"},
    .noMaximize = true,
    .keys = kKeys,
};

}  // namespace fw
