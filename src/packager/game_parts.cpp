#include "packager/game_parts.h"

#include <algorithm>

#include "forms/failure.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

// What a step met: "" when it went through.
std::string Run(const std::function<void()>& step) {
  try {
    step();
    return "";
  } catch (const Failure& failure) {
    return failure.what();
  }
}

}  // namespace

void GameParts::MakeFolder(const std::function<void()>& step) { folderFailure_ = Run(step); }

bool GameParts::FolderMade() const { return p_.services().files->IsDirectory(p_.HostFile(folder_)); }

void GameParts::Make(const std::string& file, const std::function<void()>& step) {
  parts_.push_back({file, Run(step)});
}

std::string GameParts::Failures(const std::string& questFile) const {
  if (!FolderMade()) {
    if (folderFailure_.empty()) return "its folder could not be made.";
    return "its folder could not be made (" + folderFailure_ + ").";
  }
  // A step that failed leaves what an earlier Compile put there, if anything.
  std::vector<Part> missing;
  FileSystem& files = *p_.services().files;
  for (const Part& part : parts_) {
    std::string host = p_.HostFile(folder_ + part.file);
    if (!part.failure.empty() || !files.Exists(host) || files.IsDirectory(host)) missing.push_back(part);
  }
  // The four keys have no failure of their own: the packaged game's reading counts.
  if (ReadINI(p_, folder_ + "game.dat", "loaddat", "QuestFile") != questFile) missing.push_back({"game.dat", ""});
  if (missing.empty()) return "";
  // The first failure told is the box's why; one that differs is told beside its file.
  auto told = std::find_if(missing.begin(), missing.end(), [](const Part& part) { return !part.failure.empty(); });
  const std::string why = told != missing.end() ? told->failure : "its files could not be written";
  std::string names;
  for (const Part& part : missing) {
    if (!names.empty()) names += ", ";
    names += part.file;
    if (!part.failure.empty() && part.failure != why) names += " (" + part.failure + ")";
  }
  return why + ".\r\nNot made: " + names + ".";
}

}  // namespace fw
