#pragma once
#include "forms/form_table.h"

namespace fw {

class Program;

// The battle window of the editor: the monster and the battle's outcomes
// of the page selected in the editor.
extern const FormDecl kFrmBattleTable;
const FormDef& FrmBattleForm();

namespace frmbattle {

void Form_Load(Program& p);

// Brings the window's fields to the page selected in the editor, whether it
// shows or not, loading it when it is not loaded.
void FollowPage(Program& p);

// The pickers of the monster's picture, tune and MP3.
void Command6_Click(Program& p);
void Command1_Click(Program& p);
void Command2_Click(Program& p);

}  // namespace frmbattle
}  // namespace fw
