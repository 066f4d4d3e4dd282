#include "packager/frmcompile.h"

#include "forms/controls.h"
#include "forms/program.h"
#include "packager/compile.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmCompile";

constexpr const char* kMediaWarning =
    "This compiler does not yet understand how to locate files used in your quest file such as images and audio. "
    "To add your images and audio for the time being go through your quest file and remove the file paths to each "
    "of the media used and leave ONLY the filename of the media. Then copy these files to the directory for your "
    "game.";

// Pictures as a friend's machine shows them, and any file for an author who
// knows better.
constexpr const char* kPictureFilter = "Pictures|*.jpg *.jpeg *.gif *.bmp *.png|All files|*";

constexpr ControlDecl kControls[] = {
    {.name = "Label1", .kind = Kind::Label, .left = 240, .top = 240, .width = 1095, .height = 255,
     .caption = "Game Name:"},
    {.name = "Text1", .kind = Kind::TextBox, .left = 1560, .top = 240, .width = 3255, .height = 285},
    {.name = "Label2", .kind = Kind::Label, .left = 120, .top = 600, .width = 1455, .height = 1935,
     .caption = "Pick a folder, your game will be compiled in a subfolder of the game name you type above...."},
    {.name = "Dir1", .kind = Kind::DirListBox, .left = 1560, .top = 480, .width = 3255, .height = 2340},
    {.name = "Command1", .kind = Kind::CommandButton, .left = 4920, .top = 240, .width = 1215, .height = 375,
     .caption = "Compile"},
    {.name = "Command3", .kind = Kind::CommandButton, .left = 4920, .top = 720, .width = 1215, .height = 375,
     .caption = "Open Directory"},
    {.name = "Command2", .kind = Kind::CommandButton, .left = 4920, .top = 1200, .width = 1215, .height = 375,
     .caption = "Close"},
    {.name = "Label3", .kind = Kind::Label, .left = 120, .top = 2760, .width = 1455, .height = 255,
     .caption = "Game Background:"},
    {.name = "Text2", .kind = Kind::TextBox, .left = 1560, .top = 2760, .width = 3255, .height = 405},
    {.name = "Command4", .kind = Kind::CommandButton, .left = 4800, .top = 2760, .width = 975, .height = 375,
     .caption = "Select"},
    {.name = "Label4", .kind = Kind::Label, .left = 480, .top = 3240, .width = 975, .height = 255,
     .caption = "Menu Button:"},
    {.name = "Text3", .kind = Kind::TextBox, .left = 1560, .top = 3120, .width = 3255, .height = 405},
    {.name = "Command5", .kind = Kind::CommandButton, .left = 4800, .top = 3120, .width = 975, .height = 375,
     .caption = "Select"},
    {.name = "Check1", .kind = Kind::CheckBox, .left = 0, .top = 3840, .width = 6135, .height = 375,
     .caption = "Include ALL Runtime files in case your friends don't have them. <RECOMMENDED>", .value = 1},
    {.name = "pic1", .kind = Kind::FileDialog, .filter = kPictureFilter},
    {.name = "Pic2", .kind = Kind::FileDialog, .filter = kPictureFilter},
};

void Form_Load(Program& p) {
  FormSurface& s = p.surface();
  if (s.FindForm("FrmGame") >= 0) Skip([&] { FormHandle(s, kForm).SetIcon(FormHandle(s, "FrmGame").Icon()); });
  p.MsgBox(kMediaWarning, 0);
}

// A picker forgets the last choice first, so a cancel clears it.
void PickPicture(Program& p, const char* dialog, const char* shownIn) {
  FileDialog picker(p.surface(), kForm, dialog);
  picker.SetFileName("");
  p.ShowOpen(picker.id());
  TextBox(p.surface(), kForm, shownIn).SetText(picker.FileName());
}

void Command4_Click(Program& p) { PickPicture(p, "pic1", "Text2"); }
void Command5_Click(Program& p) { PickPicture(p, "Pic2", "Text3"); }

void Command1_Click(Program& p) { CompileGame(p); }

void Command2_Click(Program& p) { FormHandle(p.surface(), kForm).Hide(); }

// The parent folder, not the game folder, in the desktop's file manager.
void Command3_Click(Program& p) { p.ShellExecute(DirListBox(p.surface(), kForm, "Dir1").Path()); }

// It closes by hiding, and stays loaded.
void Form_QueryUnload(Program& p, bool& cancel) {
  cancel = true;
  FormHandle(p.surface(), kForm).Hide();
}

constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    {"Form", Event::QueryUnload, Form_QueryUnload},
    {"Command1", Event::Click, Command1_Click},
    {"Command2", Event::Click, Command2_Click},
    {"Command3", Event::Click, Command3_Click},
    {"Command4", Event::Click, Command4_Click},
    {"Command5", Event::Click, Command5_Click},
};

}  // namespace

const FormDecl kFrmCompileTable{
    .name = kForm,
    .caption = "Compile",
    .width = 6195,
    .height = 4635,
    .controls = kControls,
    .look = {.font = {"MS Sans Serif", 8.25f, false}},
    .fixedBorder = true,
    .owner = "createquest",
};

const FormDef& FrmCompileForm() {
  static const FormDef form{&kFrmCompileTable, kHandlers};
  return form;
}

}  // namespace fw
