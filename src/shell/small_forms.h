#pragma once
#include "forms/form_table.h"

namespace fw {

// The splash, the start-up form: it loads the game window behind itself,
// shows for three seconds and hands over.
const FormDef& FrmSplashForm();

// The What's New window: a fixed text and its OK button.
const FormDef& FrmUpdatesForm();

namespace frmsplash {
void Form_Load(Program& p);
}  // namespace frmsplash

namespace frmupdates {
void Command1_Click(Program& p);
}  // namespace frmupdates

}  // namespace fw
