// The quest editor's window: every control, where it lies (twips), and how
// it looks.
#include "editor/createquest.h"

namespace fw {
namespace {

constexpr std::int32_t kBlack = Rgb(0, 0, 0);
constexpr std::int32_t kWhite = Rgb(255, 255, 255);
constexpr std::int32_t kNavy = Rgb(0, 0, 128);
constexpr std::int32_t kGreen = Rgb(0, 255, 0);
constexpr std::int32_t kRed = Rgb(255, 0, 0);

constexpr Font kBoxFont{"MS Sans Serif", 9.75f, true};
constexpr Font kLabelFont{"MS Sans Serif", 12, true};

// A text box: navy with green text; lines for a box of several lines,
// scroll for one with a vertical scroll bar.
constexpr Look Box(bool lines, bool scroll) {
  return Look{.foreColor = kGreen, .backColor = kNavy, .font = kBoxFont, .multiLine = lines, .scrollBar = scroll};
}
constexpr Look kLines = Box(true, false);
constexpr Look kScroll = Box(false, true);
constexpr Look kLabel{.foreColor = kWhite, .transparent = true, .font = kLabelFont};
// The help note in a smaller hand than the labels: its longest texts keep to
// four lines above the page text's label.
constexpr Look kHelp{.foreColor = kWhite, .transparent = true, .font = {"MS Sans Serif", 9.75f, true}};
constexpr Look kCheck{.foreColor = kWhite, .backColor = kBlack, .font = {"MS Sans Serif", 8.25f, false}};

constexpr const char* kFirstPage[] = {"1"};

// A check box of the binding table.
constexpr ControlDecl Check(const char* name, float left, float top, float width, const char* caption) {
  return {.name = name, .kind = Kind::CheckBox, .left = left, .top = top, .width = width, .height = 255,
          .caption = caption, .look = kCheck};
}

// A text box of one option row: its column's left, width and limit.
constexpr ControlDecl RowBox(const char* name, float left, float top, float width, int limit) {
  return {.name = name, .kind = Kind::TextBox, .left = left, .top = top, .width = width, .height = 360,
          .look = kLines, .maxLength = limit};
}

// A one-line box with a scroll bar and the limit of 1000.
constexpr ControlDecl ScrollBox(const char* name, float left, float top, float width) {
  return {.name = name, .kind = Kind::TextBox, .left = left, .top = top, .width = width, .height = 375,
          .look = kScroll, .maxLength = 1000};
}

constexpr ControlDecl Caption(const char* name, float left, float top, float width, const char* caption) {
  return {.name = name, .kind = Kind::Label, .left = left, .top = top, .width = width, .height = 375,
          .caption = caption, .look = kLabel};
}

// A small button of the media rows: a picker "X", a try-out ">" or its stop.
constexpr ControlDecl MediaButton(const char* name, float left, float top, const char* caption) {
  return {.name = name, .kind = Kind::CommandButton, .left = left, .top = top, .width = 375, .height = 375,
          .caption = caption};
}

constexpr ControlDecl kControls[] = {
    // Menu bar.
    {.name = "mnufile", .kind = Kind::Menu, .caption = "&File"},
    {.name = "mnunew", .kind = Kind::Menu, .parent = "mnufile", .caption = "&New"},
    {.name = "mnuloadquest", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Load A Quest File"},
    {.name = "mnusave", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Save A Quest File"},
    {.name = "mnuexit", .kind = Kind::Menu, .parent = "mnufile", .caption = "&Exit"},
    {.name = "mnucompile", .kind = Kind::Menu, .caption = "&Compile"},
    // The author tools on the working file: src/editor/author_menu.cpp.
    {.name = "mnuauthortools", .kind = Kind::Menu, .caption = "&Author Tools"},
    {.name = "mnuquestmap", .kind = Kind::Menu, .parent = "mnuauthortools", .caption = "Quest &Map"},
    {.name = "mnucheckquest", .kind = Kind::Menu, .parent = "mnuauthortools", .caption = "&Check the Quest"},
    {.name = "mnuexplorequest", .kind = Kind::Menu, .parent = "mnuauthortools", .caption = "&Explore the Quest"},
    {.name = "mnutestfrompage", .kind = Kind::Menu, .parent = "mnuauthortools",
     .caption = "&Test Play from the Selected Page"},
    {.name = "mnuundoswitch", .kind = Kind::Menu, .parent = "mnuauthortools",
     .caption = "Turn Players' &Undo On or Off"},

    // Dialogs and the timer.
    {.name = "questfile", .kind = Kind::FileDialog, .filter = "*.fbw|*.fbw", .defaultExt = "*.fbw"},
    {.name = "CommonDialog1", .kind = Kind::FileDialog, .filter = "*.mid|*.mid", .defaultExt = "*.mid"},
    {.name = "CommonDialog2", .kind = Kind::FileDialog, .filter = "*.jpg|*.jpg", .defaultExt = "*.jpg"},
    {.name = "CommonDialog3", .kind = Kind::FileDialog, .filter = "*.avi|*.avi", .defaultExt = "*.avi"},
    {.name = "CommonDialog4", .kind = Kind::FileDialog, .filter = "*.mp3|*.mp3|*.wav|*.wav", .defaultExt = "*.mp3"},
    {.name = "Timer1", .kind = Kind::Timer, .interval = 5},

    // The frame behind the heal and battle controls.
    {.name = "Shape1", .kind = Kind::Shape, .left = 6000, .top = 2760, .width = 3495, .height = 1095,
     .look = {.foreColor = kRed, .borderWidth = 1}},

    // Labels.
    Caption("Label1", 120, 120, 855, "Page #"),
    Caption("Label2", 1680, 1200, 1335, "Page Text:"),
    Caption("Label3", 120, 4200, 2055, "Players Options:"),
    Caption("Label4", 4680, 4320, 975, "Page #"),
    Caption("Label5", 6000, 120, 735, "Title:"),
    Caption("Label6", 6000, 960, 975, "Author:"),
    Caption("Label7", 6000, 1920, 1095, "Version:"),
    Caption("Label8", 5640, 4320, 855, "Score:"),
    Caption("Label9", 0, 2520, 1335, "Play MIDI:"),
    Caption("Label10", 4200, 3960, 2055, "Player Location:"),
    Caption("Label11", 120, 3720, 855, "Image:"),
    Caption("Label12", 6480, 4320, 1215, "Key Item:"),
    Caption("Label13", 0, 2880, 1455, "Play Movie:"),
    Caption("Label14", 0, 3240, 1455, "Play Mp3:"),
    {.name = "filepath", .kind = Kind::Label, .left = 0, .top = 6480, .width = 9615, .height = 375, .look = kLabel},
    {.name = "info", .kind = Kind::Label, .left = 2160, .top = 0, .width = 3135, .height = 1695,
     .caption = "Note: There is a limit to how many characters can be in an option and on a page.",
     .look = kHelp},

    // The page list and its buttons.
    {.name = "pg", .kind = Kind::ListBox, .left = 1080, .top = 120, .width = 615, .height = 1230,
     .look = {.foreColor = kGreen, .backColor = kNavy, .font = kBoxFont}, .items = kFirstPage},
    {.name = "Text13", .kind = Kind::TextBox, .left = 1680, .top = 120, .width = 495, .height = 360, .look = kLines},
    {.name = "Command1", .kind = Kind::CommandButton, .left = 120, .top = 600, .width = 855, .height = 375,
     .caption = "Add Page"},
    {.name = "Command2", .kind = Kind::CommandButton, .left = 120, .top = 960, .width = 855, .height = 375,
     .caption = "Delete", .toolTip = "Click to delete the selected page"},

    // The page.
    {.name = "Text1", .kind = Kind::TextBox, .left = 120, .top = 1560, .width = 5055, .height = 975,
     .look = Box(true, true), .maxLength = 1000},
    ScrollBox("Text18", 1440, 2520, 3255),
    ScrollBox("Text25", 1440, 2880, 3255),
    ScrollBox("Text26", 1440, 3240, 3255),
    ScrollBox("Text20", 960, 3720, 2175),
    ScrollBox("Text19", 6240, 3960, 3255),
    Check("Check9", 7440, 3120, 1215, "Battle Page"),
    Check("Check10", 6120, 2880, 2655, "This page will heal the character"),
    Check("Check11", 4320, 3600, 1575, "Auto Repeat MP3"),
    {.name = "Command7", .kind = Kind::CommandButton, .left = 7440, .top = 3360, .width = 1815, .height = 375,
     .caption = "Open Battle Window", .enabled = false},

    // The media rows' pickers and try-outs, and the buttons of the battle
    // and character windows and of test play.
    MediaButton("Command3", 4800, 2520, "X"),
    MediaButton("Command4", 5160, 2520, ">"),
    MediaButton("Command5", 5520, 2520, "[=]"),
    MediaButton("Command9", 4800, 2880, "X"),
    MediaButton("Command10", 4800, 3240, "X"),
    MediaButton("Command11", 5160, 3240, ">"),
    MediaButton("Command12", 5520, 3240, "[=]"),
    MediaButton("Command6", 3240, 3720, "X"),
    {.name = "Command8", .kind = Kind::CommandButton, .left = 6120, .top = 3240, .width = 1215, .height = 495,
     .caption = "Character Window"},
    {.name = "Command13", .kind = Kind::CommandButton, .left = 2160, .top = 4200, .width = 1335, .height = 375,
     .caption = "Test Game"},

    // The story.
    ScrollBox("Text10", 6000, 480, 3135),
    ScrollBox("Text11", 6000, 1320, 3135),
    ScrollBox("Text12", 6000, 2280, 3255),

    // The four option rows: text, destination, score, key item, Add, Required.
    RowBox("Text2", 120, 4680, 4695, 60),
    RowBox("Text6", 5040, 4680, 495, 0),
    RowBox("Text17", 5640, 4680, 495, 3),
    RowBox("Text21", 6240, 4680, 1335, 60),
    Check("Check1", 7680, 4680, 735, "Add"),
    Check("Check5", 8520, 4680, 975, "Required"),
    RowBox("Text3", 120, 5160, 4695, 60),
    RowBox("Text7", 5040, 5160, 495, 0),
    RowBox("Text16", 5640, 5160, 495, 3),
    RowBox("Text22", 6240, 5160, 1335, 60),
    Check("Check2", 7680, 5160, 735, "Add"),
    Check("Check6", 8520, 5160, 975, "Required"),
    RowBox("Text4", 120, 5640, 4695, 60),
    RowBox("Text8", 5040, 5640, 495, 0),
    RowBox("Text15", 5640, 5640, 495, 3),
    RowBox("Text23", 6240, 5640, 1335, 60),
    Check("Check3", 7680, 5640, 735, "Add"),
    Check("Check7", 8520, 5640, 975, "Required"),
    RowBox("Text5", 120, 6120, 4695, 60),
    RowBox("Text9", 5040, 6120, 495, 0),
    RowBox("Text14", 5640, 6120, 495, 3),
    RowBox("Text24", 6240, 6120, 1335, 60),
    Check("Check4", 7680, 6120, 735, "Add"),
    Check("Check8", 8520, 6120, 975, "Required"),
};

}  // namespace

const FormDecl kCreateQuestTable{
    .name = "createquest",
    .caption = "Create 'A' Quest",
    .width = 9570,
    .height = 6870,
    .controls = kControls,
    .look = {.backColor = kBlack},
    .fixedBorder = true,
    .owner = "FrmGame",
};

}  // namespace fw
