#pragma once
#include <span>
#include <string_view>

#include "forms/form_table.h"

namespace fw {

class Program;

// The quest editor's window: its table and its handlers.
extern const FormDecl kCreateQuestTable;
const FormDef& CreateQuestForm();

// Opens the editor as FrmGame's menu does: the window shows, loading first
// when it has not loaded yet. A second editor on the machine is told so
// instead and nothing is opened.
void OpenEditor(Program& p);

// Opens the editor on a quest file, as Load does without its dialog: false,
// after a box that says why, when the quest could not be opened.
bool OpenEditorOn(Program& p, std::string_view quest);

namespace createquest {

// The working file's lifecycle: the menu and the window's close.
void Form_Load(Program& p);
void Form_QueryUnload(Program& p, bool& cancel);
void mnunew_Click(Program& p);
void mnuloadquest_Click(Program& p);
void mnusave_Click(Program& p);
void mnuexit_Click(Program& p);
void mnucompile_Click(Program& p);

// The page editor: the page list and its buttons.
void pg_Click(Program& p);
void Command1_Click(Program& p);
void Command2_Click(Program& p);
void Timer1_Timer(Program& p);

// The media pickers of the page's tune, picture, movie and MP3.
void Command3_Click(Program& p);
void Command6_Click(Program& p);
void Command9_Click(Program& p);
void Command10_Click(Program& p);
// The try-outs: the tune (locked until its stop) and the MP3 track.
void Command4_Click(Program& p);
void Command5_Click(Program& p);
void Command11_Click(Program& p);
void Command12_Click(Program& p);
// The battle window, the character window and test play.
void Command7_Click(Program& p);
void Command8_Click(Program& p);
void Command13_Click(Program& p);

// The hover help of every field that has one.
std::span<const HandlerDecl> FieldHelpHandlers();

}  // namespace createquest
}  // namespace fw
