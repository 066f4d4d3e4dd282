#pragma once
#include "forms/form_table.h"

namespace fw {

// The splash, the start-up form: it loads the game window behind itself,
// shows for three seconds (or until a key or a click on it) and hands over.
const FormDef& FrmSplashForm();

// The words the splash's picture shows: the program's title and version.
inline constexpr const char* kSplashText = "Fablewright 2004, Beta 5.9: tales told by your choices";

// The What's New window: a fixed text and its OK button.
const FormDef& FrmUpdatesForm();

namespace frmsplash {
void Form_Load(Program& p);
void Form_Click(Program& p);
}  // namespace frmsplash

namespace frmupdates {
void Command1_Click(Program& p);
}  // namespace frmupdates

}  // namespace fw
