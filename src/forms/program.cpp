#include "forms/program.h"

#include <algorithm>
#include <limits>

#include "forms/codepage.h"
#include "forms/dialog_folders.h"
#include "forms/paths.h"

namespace fw {
namespace {

// A day in seconds: Timer starts again from 0 at midnight.
constexpr double kDay = 86400;

// True when the first bytes are those of a picture file the binding can show.
bool LooksLikePicture(std::string_view head) {
  auto starts = [&](std::string_view magic) { return head.substr(0, magic.size()) == magic; };
  return starts("\xFF\xD8\xFF") || starts("GIF87a") || starts("GIF89a") || starts("BM") ||
         starts("\x89PNG");
}

// A name typed without an extension in a save dialog gets the dialog's
// own ("*.sav" gives ".sav"), so the open dialog's filter finds it again.
std::string WithDefaultExt(const std::string& path, std::string_view defaultExt) {
  if (defaultExt.starts_with('*')) defaultExt.remove_prefix(1);
  if (!defaultExt.starts_with('.')) return path;
  std::size_t name = path.find_last_of("/\\");
  name = name == std::string::npos ? 0 : name + 1;
  if (name == path.size() || path.find('.', name) != std::string::npos) return path;
  return path + std::string(defaultExt);
}

}  // namespace

Program::Program(Services services, AppInfo app, std::span<const FormDef> forms)
    : services_(services),
      app_(std::move(app)),
      surface_(*this, forms),
      currentDir_(app_.currentDir) {}

bool Program::Over() const {
  if (ended_) return true;
  if (!started_) return false;
  for (int form = 0; form < surface_.FormCount(); ++form)
    if (surface_.IsLoaded(form)) return false;
  return true;
}

void Program::Start() {
  started_ = true;
  RunEvent([&] {
    // The splash shows itself and then the game from its own Form_Load; any
    // other start-up form (the game, or a program's only form) is loaded and
    // shown here.
    int splash = surface_.FindForm("FrmSplash");
    int game = surface_.FindForm("FrmGame");
    if (splash >= 0) {
      surface_.Form(splash);
    } else {
      surface_.Show(game >= 0 ? game : 0);
    }
  });
}

void Program::End() {
  ended_ = true;
  if (wake_) wake_();
  throw EndSignal{};
}

void Program::RunEvent(const std::function<void()>& event) {
  if (ended_) return;
  try {
    event();
  } catch (const EndSignal&) {
  } catch (const Failure&) {
    // A failure that no handler caught ends this event only; the program
    // goes on, as it does past a broken quest.
  }
}

int Program::MsgBox(std::string_view prompt, int style, std::string_view title) {
  return services_.dialogs->MsgBox(prompt, style, title.empty() ? kAppTitle : title);
}

bool Program::ShowOpen(ControlId dialog) { return ShowFileDialog(dialog, false); }

bool Program::ShowSave(ControlId dialog) { return ShowFileDialog(dialog, true); }

bool Program::ShowFileDialog(ControlId dialog, bool save) {
  const Control& c = surface_.At(dialog);
  FileDialogRequest request{surface_.Table(dialog.form).name, c.decl->name, save,
                            c.decl->filter, c.decl->defaultExt, c.initDir, c.fileName, ""};
  std::optional<std::string> answer;
  if (nextFileAnswer_ && nextFileAnswer_->first == dialog) {
    answer = std::exchange(nextFileAnswer_, {})->second;
  } else {
    request.startDir = DialogFolder(*this, request);
    answer = services_.dialogs->FileDialog(request);
  }
  if (!answer) return false;
  if (request.defaultExt == "*.fbw") RememberQuestFolder(*this, *answer);
  surface_.SetFileName(dialog, save ? WithDefaultExt(*answer, c.decl->defaultExt) : *answer);
  return true;
}

void Program::DoEvents() {
  services_.pump->Pump(*this);
  RunDue();
}

void Program::Pause(double seconds) { Pause(seconds, {}); }

void Program::Pause(double seconds, const std::function<bool()>& cut) {
  double start = Timer();
  for (;;) {
    double elapsed = Timer() - start;
    if (elapsed < 0) elapsed += kDay;  // past midnight the clock starts again at 0
    if (!(elapsed < seconds) || (cut && cut())) return;
    DoEvents();
  }
}

void Program::PressAnimation(ControlId control) {
  surface_.SetLeft(control, surface_.At(control).left + 50);
  surface_.SetTop(control, surface_.At(control).top + 50);
  Pause(0.2);
  surface_.SetLeft(control, surface_.At(control).left - 50);
  surface_.SetTop(control, surface_.At(control).top - 50);
}

void Program::Post(double due, std::function<void(Program&)> callback) {
  posted_.push_back({due, postSeq_++, std::move(callback)});
}

double Program::NextDue() const {
  double next = surface_.NextTimerDue();
  for (const Posted& p : posted_) next = std::min(next, p.due);
  return next;
}

double Program::NextWake() const {
  double next = surface_.NextUnsettledTimerDue();
  for (const Posted& p : posted_) next = std::min(next, p.due);
  return next;
}

void Program::RunDue() {
  for (;;) {
    if (ended_) return;
    double now = Timer();
    auto first = std::min_element(posted_.begin(), posted_.end(), [](const Posted& a, const Posted& b) {
      return a.due < b.due || (a.due == b.due && a.seq < b.seq);
    });
    double postedDue = first == posted_.end() ? std::numeric_limits<double>::infinity() : first->due;
    if (postedDue <= now + 1e-7 && postedDue <= surface_.NextTimerDue()) {
      auto callback = std::move(first->callback);
      posted_.erase(first);
      callback(*this);
      continue;
    }
    if (!surface_.FireDueTimer(now)) return;
  }
}

Picture Program::LoadPicture(std::string_view path) {
  if (path.empty()) return {};
  std::string host = HostFile(path);
  if (!services_.files->Exists(host)) throw Failure("File not found");
  if (!LooksLikePicture(services_.files->Head(host, 8))) throw Failure("Invalid picture");
  return {std::string(path), host};
}

void Program::Shell(const std::vector<std::string>& argv, int windowStyle) {
  if (!services_.processes->Start(argv, windowStyle, currentDir_)) throw Failure("File not found");
}

void Program::FileCopy(std::string_view from, std::string_view to) {
  services_.files->Copy(HostFile(from), HostFile(to));
}

void Program::MkDir(std::string_view path) { services_.files->MakeDir(HostFile(path)); }

void Program::Kill(std::string_view path) { services_.files->Remove(HostFile(path)); }

void Program::ChDir(std::string_view path) {
  std::string host = HostFile(path);
  if (!services_.files->IsDirectory(host)) throw Failure("Path not found");
  currentDir_ = host;
}

std::string Program::GetWindowsDir() const { return Cp1252FromUtf8(app_.userDir) + "\\"; }

std::string Program::ResolveMediaFile(std::string_view path) const {
  if (path.empty()) return {};
  std::string host = HostFile(path);
  return services_.files->Exists(host) && !services_.files->IsDirectory(host) ? host : std::string();
}

std::string Program::HostFile(std::string_view path) const {
  std::string host = HostPath(path);
  if (host.empty() || host[0] == '/') return host;
  return currentDir_ + "/" + host;
}

}  // namespace fw
