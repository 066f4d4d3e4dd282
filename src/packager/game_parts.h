#pragma once
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace fw {

class Program;

// What a game folder must hold for the game to run (its folder, the copy of
// the program, the program's own files, the quest and a game.dat that names
// it), and what the steps that make them met. After Compile it tells what
// was not made and why.
class GameParts {
 public:
  // `folder`: the game folder, a program path ending in a separator.
  GameParts(Program& p, std::string folder) : p_(p), folder_(std::move(folder)) {}

  // Runs the step that makes the game folder, skipped on error; a folder
  // that is there already does.
  void MakeFolder(const std::function<void()>& step);
  bool FolderMade() const;
  // Runs the step that makes one file of the folder, skipped on error.
  void Make(const std::string& file, const std::function<void()>& step);

  // "" when every part is there as its step made it, and game.dat names the
  // quest file; else what was not made and why, as sentences.
  std::string Failures(const std::string& questFile) const;

 private:
  struct Part {
    std::string file, failure;  // the failure "" when its step did not fail
  };
  Program& p_;
  std::string folder_, folderFailure_;
  std::vector<Part> parts_;
};

}  // namespace fw
