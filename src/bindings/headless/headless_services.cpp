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

bool RecordingProcesses::Start(const std::vector<std::string>& argv, int windowStyle, const std::string& folder) {
  bool found = !argv.empty() && !FindProgram(HostPath(argv[0])).empty();
  if (found) {
    started.push_back(argv);
    windowStyles.push_back(windowStyle);
    folders.push_back(folder);
  }
  return found;
}

}  // namespace fw
