#pragma once

namespace fw {

class Program;

// Compile of the packager's window: makes the game folder from the form's
// name, parent folder and pictures, every step skipped on error, then the two
// closing boxes once the folder holds all a game needs, else one box that
// says what was not made and why. A name that can't be a folder's is refused
// before any step. It compiles nothing: the game is a copy of this program.
void CompileGame(Program& p);

}  // namespace fw
