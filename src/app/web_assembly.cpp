#include "app/web_assembly.h"

#include <filesystem>

#include "forms/codepage.h"
#include "shell/forms.h"

namespace fw {

std::unique_ptr<Program> WebBuildAssembly::Make(Services own) {
  if (!own.clock) own.clock = &clock_;
  if (!own.files) own.files = &files_;
  if (!own.random) {
    if (launch_.seed) random_.FixSeed(*launch_.seed);
    random_.Randomize(own.clock->Now());
    own.random = &random_;
  }
  if (!own.sequencer) own.sequencer = &sequencer_;
  if (!own.graphs) own.graphs = &graphs_;
  std::error_code ec;
  AppInfo app{Cp1252FromUtf8(launch_.appDir), Cp1252FromUtf8(launch_.exeName), launch_.home,
              std::filesystem::current_path(ec).string()};
  return std::make_unique<Program>(own, std::move(app), AllForms());
}

}  // namespace fw
