#pragma once
#include "forms/form_table.h"

namespace fw {

class Program;

// The character window of the editor: the quest's character rules and its
// starting character, in CharacterData of the working file.
extern const FormDecl kFrmCharCreateTable;
const FormDef& FrmCharCreateForm();

namespace frmcharcreate {

void Form_Load(Program& p);
// The picker of the character's picture.
void Command1_Click(Program& p);

}  // namespace frmcharcreate
}  // namespace fw
