#pragma once
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "store/store_disk.h"

namespace fw {

// Turns the text a file holds ("" when missing) into the text it should
// hold, in place; false when it leaves the text as it was.
using TextEdit = std::function<bool(std::string& text)>;

// Rewrites the file that `path` names (links followed) under a lock on its
// folder, so that two writers never lose each other's change. The file on
// disk is the old one or the new one after a crash, a full disk or any other
// failure, and keeps its mode. False, and the old file untouched, when it
// cannot be read, when its permissions forbid writing, or when the new text
// could not be written whole.
bool RewriteFile(StoreDisk& disk, const std::string& path, const TextEdit& edit);
// The same, giving the text written to `written` when the file was rewritten
// (left as it was otherwise), so that a caller that keeps it need not copy it.
bool RewriteFile(StoreDisk& disk, const std::string& path, const TextEdit& edit, std::optional<std::string>& written);

}  // namespace fw
