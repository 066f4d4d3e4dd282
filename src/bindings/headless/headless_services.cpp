#include "bindings/headless/headless_services.h"

#include "forms/codepage.h"
#include "forms/paths.h"
#include "platform/program_search.h"

namespace fw {

int QueuedDialogs::MsgBox(std::string_view prompt, int style, std::string_view title) {
  ShownBox box{std::string(prompt), std::string(title), style, 1};
  if (style == 4) {
    if (answers_.empty())
      throw ScriptError("a Yes/No message box has no answer queued: \"" + Utf8FromCp1252(prompt) + "\"");
    box.answer = answers_.front();
    answers_.pop_front();
  }
  if (onBox) onBox(box);
  unchecked_.push_back(box);
  return box.answer;
}

std::optional<std::string> QueuedDialogs::FileDialog(const FileDialogRequest& request) {
  std::string name = request.form + "." + request.dialog;
  auto it = files_.find(name);
  if (it == files_.end() || it->second.empty())
    throw ScriptError("the file dialog " + name + " was shown with no answer queued");
  std::optional<std::string> answer = std::move(it->second.front());
  it->second.pop_front();
  return answer;
}

bool RecordingProcesses::Start(std::string_view command, int windowStyle, const std::string& folder) {
  std::vector<std::string> words = SplitCommand(HostPath(command));
  bool found = !words.empty() && !FindProgram(words[0]).empty();
  if (found) {
    started.emplace_back(command);
    windowStyles.push_back(windowStyle);
    folders.push_back(folder);
  }
  return found;
}

}  // namespace fw
