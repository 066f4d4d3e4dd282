#include "app/command_args.h"

#include <filesystem>
#include <iostream>

#include "forms/paths.h"

namespace fw {

bool ReadFolders(const std::vector<std::string>& args, std::size_t& i, Launch& launch) {
  const std::string& a = args[i];
  if ((a != "--app-dir" && a != "--home") || i + 1 >= args.size()) return false;
  std::string dir = std::filesystem::absolute(args[++i]).lexically_normal().string();
  if (dir.size() > 1 && dir.back() == '/') dir.pop_back();
  (a == "--app-dir" ? launch.appDir : launch.home) = dir;
  return true;
}

bool MakeUserDir(Launch& launch) {
  if (launch.home.empty()) {
    launch.home = DefaultUserDir();
    return true;
  }
  std::error_code ec;
  std::filesystem::create_directories(launch.home, ec);
  if (std::filesystem::is_directory(launch.home, ec)) return true;
  std::cerr << "fablewright: --home " << launch.home << " is not a folder\n";
  return false;
}

void RefuseArgument(const std::vector<std::string>& args, std::size_t i, const std::string& job) {
  const std::string& a = args[i];
  if ((a == "--home" || a == "--app-dir") && i + 1 >= args.size())
    std::cerr << "fablewright: " << a << " needs a folder\n";
  else if (a == "--seed")
    std::cerr << "fablewright: --seed needs a whole number of one to nine digits\n";
  else
    std::cerr << "fablewright: unknown argument" << (job.empty() ? "" : " for " + job) << ": " << a << "\n";
}

int ScriptCommand(const std::vector<std::string>& args, Launch launch, const ScriptRun& run) {
  std::string file;
  ScriptOptions options;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (ReadFolders(args, i, launch)) continue;
    if (a == "--transcript") {
      options.transcript = true;
    } else if (file.empty() && !a.starts_with("--")) {
      file = a;
    } else {
      RefuseArgument(args, i, "script");
      return 2;
    }
  }
  if (file.empty()) {
    std::cerr << "fablewright: script needs a FILE\n";
    return 2;
  }
  if (!MakeUserDir(launch)) return 2;
  return run(launch, file, options);
}

}  // namespace fw
