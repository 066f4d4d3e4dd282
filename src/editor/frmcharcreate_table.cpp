// The character window (twips). The picture row lies below the window's
// edge and its preview to the right of it: they load and work, unseen.
#include "editor/frmcharcreate.h"

namespace fw {
namespace {

constexpr std::int32_t kBlack = Rgb(0, 0, 0);
constexpr std::int32_t kWhite = Rgb(255, 255, 255);
constexpr std::int32_t kNavy = Rgb(0, 0, 128);
constexpr std::int32_t kGreen = Rgb(0, 255, 0);

constexpr Look kLabel{.foreColor = kWhite, .transparent = true, .font = {"Tahoma", 14.25f, false}};
// The fields look as the editor's own.
constexpr Look kBox{.foreColor = kGreen, .backColor = kNavy, .font = {"MS Sans Serif", 9.75f, true}};
constexpr Look kCheck{.foreColor = kWhite, .backColor = kBlack, .font = {"MS Sans Serif", 8.25f, false}};

constexpr ControlDecl Caption(const char* name, float top, float width, const char* caption, float left = 120) {
  return {.name = name, .kind = Kind::Label, .left = left, .top = top, .width = width, .height = 405,
          .caption = caption, .look = kLabel};
}

constexpr ControlDecl Field(const char* name, float left, float top) {
  return {.name = name, .kind = Kind::TextBox, .left = left, .top = top, .width = 2775, .height = 405, .look = kBox};
}

constexpr ControlDecl kControls[] = {
    {.name = "CommonDialog2", .kind = Kind::FileDialog, .filter = "*.jpg|*.jpg"},
    {.name = "Check1", .kind = Kind::CheckBox, .left = 120, .top = 120, .width = 2895, .height = 375,
     .caption = "Allow Load Saved Characters", .look = kCheck},
    {.name = "Check2", .kind = Kind::CheckBox, .left = 120, .top = 480, .width = 4335, .height = 375,
     .caption = "Allow Player to create / name character REQUIRED!", .look = kCheck},
    Caption("Label1", 840, 2160, "Character Name:"),
    Field("Text1", 2280, 840),
    Caption("Label2", 1320, 2100, "Hp:"),
    Field("Text2", 2280, 1320),
    Caption("Label3", 1800, 2100, "Atk:"),
    Field("Text3", 2280, 1800),
    Caption("Label4", 2280, 2100, "Def:"),
    Field("Text4", 2280, 2280),
    Caption("Label5", 2880, 960, "Image:"),
    Field("Text5", 1080, 2880),
    {.name = "Command1", .kind = Kind::CommandButton, .left = 3960, .top = 2880, .width = 495, .height = 375,
     .caption = "X"},
    {.name = "Image1", .kind = Kind::Image, .left = 5280, .top = 0, .width = 5055, .height = 3855},
};

}  // namespace

const FormDecl kFrmCharCreateTable{
    .name = "FrmCharCreate",
    .caption = "Character Creation",
    .width = 5205,
    .height = 2805,
    .controls = kControls,
    .look = {.backColor = kBlack},
    .fixedBorder = true,
    .owner = "createquest",
};

}  // namespace fw
