// The battle window: the monster's frame, the frame of what follows the
// battle, the pickers and the monster's preview (twips, inside the frames).
#include "editor/frmbattle.h"

namespace fw {
namespace {

constexpr std::int32_t kBlack = Rgb(0, 0, 0);
constexpr std::int32_t kInk = Rgb(58, 36, 20);       // the brown ink of the game's parchment
constexpr std::int32_t kPaper = Rgb(246, 234, 208);  // a field on the parchment

constexpr Look kLabel{.foreColor = kBlack, .transparent = true, .font = {"MS Sans Serif", 12, true}};
constexpr Look kBox{.foreColor = kBlack, .backColor = kPaper};
constexpr Look kFrame{.foreColor = kInk, .font = {"MS Sans Serif", 8.25f, true}};

constexpr ControlDecl Caption(const char* name, const char* parent, float left, float top, float width,
                              const char* caption, bool visible = true) {
  return {.name = name, .kind = Kind::Label, .parent = parent, .left = left, .top = top, .width = width,
          .height = 285, .caption = caption, .visible = visible, .look = kLabel};
}

constexpr ControlDecl Field(const char* name, const char* parent, float left, float top, float width,
                            bool visible = true) {
  return {.name = name, .kind = Kind::TextBox, .parent = parent, .left = left, .top = top, .width = width,
          .height = 285, .visible = visible, .look = kBox};
}

constexpr ControlDecl Picker(const char* name, float top) {
  return {.name = name, .kind = Kind::CommandButton, .parent = "Frame1", .left = 2760, .top = top, .width = 495,
          .height = 375, .caption = "X"};
}

constexpr ControlDecl kControls[] = {
    {.name = "CommonDialog1", .kind = Kind::FileDialog, .filter = "*.mid|*.mid"},
    {.name = "CommonDialog2", .kind = Kind::FileDialog, .filter = "*.jpg|*.jpg"},
    {.name = "CommonDialog3", .kind = Kind::FileDialog, .filter = "*.mp3|*.mp3"},

    // The monster's preview; its drawing stands until a picture is given.
    {.name = "Image1", .kind = Kind::Image, .left = 3480, .top = 0, .width = 2805, .height = 1410,
     .look = {.art = "monster.svg"}},

    {.name = "Frame1", .kind = Kind::Frame, .left = 0, .top = 0, .width = 3495, .height = 2895,
     .caption = "Monster", .look = kFrame},
    Caption("Label2", "Frame1", 120, 240, 855, "Name:"),
    Field("Text1", "Frame1", 960, 240, 2415),
    Caption("Label1", "Frame1", 120, 600, 855, "HP:"),
    Field("Text2", "Frame1", 960, 600, 2415),
    Caption("Label3", "Frame1", 120, 960, 855, "ATK:"),
    Field("Text3", "Frame1", 960, 960, 2415),
    Caption("Label4", "Frame1", 120, 1320, 855, "DEF:"),
    Field("Text4", "Frame1", 960, 1320, 2415),
    Caption("Label5", "Frame1", 120, 1680, 855, "Image:"),
    Field("Text5", "Frame1", 960, 1680, 1695),
    Picker("Command6", 1680),
    Caption("Label6", "Frame1", 120, 2040, 855, "Midi:"),
    Field("Text6", "Frame1", 960, 2040, 1695),
    Picker("Command1", 2040),
    Caption("Label15", "Frame1", 120, 2400, 855, "Mp3:"),
    Field("Text15", "Frame1", 960, 2400, 1695),
    Picker("Command2", 2400),
    // Kept in the quest but out of the author's reach: nothing at play
    // reads them.
    Caption("Label12", "Frame1", 120, 2760, 2415, "Attack Message:", false),
    Field("Text12", "Frame1", 120, 3000, 3255, false),
    Caption("Label13", "Frame1", 120, 3360, 2415, "Alt. Atk or spell:", false),
    Field("Text13", "Frame1", 120, 3600, 3255, false),
    Caption("Label14", "Frame1", 120, 4080, 1215, "Damage:", false),
    Field("Text14", "Frame1", 1320, 4080, 1215, false),

    {.name = "Frame2", .kind = Kind::Frame, .left = 3480, .top = 1800, .width = 4095, .height = 2175,
     .caption = "After Battle", .look = kFrame},
    Caption("Label7", "Frame2", 120, 240, 2160, "Recieve Key Item:"),
    Field("Text7", "Frame2", 2280, 240, 1695),
    Caption("Label8", "Frame2", 120, 600, 2160, "Recieve EXP:"),
    Field("Text8", "Frame2", 2280, 600, 1695),
    Caption("Label9", "Frame2", 120, 960, 2880, "On success go to page:"),
    Field("Text9", "Frame2", 3000, 960, 855),
    Caption("Label10", "Frame2", 120, 1320, 2880, "On failure go to page:"),
    Field("Text10", "Frame2", 3000, 1320, 855),
    {.name = "Check1", .kind = Kind::CheckBox, .parent = "Frame2", .left = 120, .top = 1680, .width = 1335,
     .height = 375, .caption = "Allow escape", .look = {.foreColor = kBlack, .transparent = true, .font = {"MS Sans Serif", 8.25f, false}}},
    Caption("Label11", "Frame2", 1560, 1680, 1560, "Escape Page:"),
    Field("Text11", "Frame2", 3120, 1680, 735),
};

}  // namespace

const FormDecl kFrmBattleTable{
    .name = "FrmBattle",
    .caption = "Battle Creation",
    .width = 7575,
    .height = 3975,
    .controls = kControls,
    .look = {.backColor = Rgb(226, 203, 152), .art = "parchment.svg"},
    .fixedBorder = true,
    .owner = "createquest",
};

}  // namespace fw
