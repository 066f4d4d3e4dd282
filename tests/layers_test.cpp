// The layers stay honest: each folder of src/ includes only the folders it
// stands on, and only the desktop binding sees the window toolkit. The build
// refuses an include that points up; this table says, for the reader, which
// layer may include which.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

namespace fw {
namespace {

// What each layer may include, its own folder aside.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"forms", {}},
    {"store", {"forms"}},
    {"media", {"forms"}},
    {"platform", {"forms", "media"}},
    {"play", {"forms", "store", "media"}},
    {"editor", {"forms", "store", "media", "play"}},
    {"packager", {"forms", "store"}},
    {"shell", {"forms", "store", "media", "play", "editor", "packager"}},
    {"bindings/headless", {"forms", "store", "media", "platform", "play", "shell"}},
    {"bindings/terminal", {"forms", "store", "media", "platform", "play", "shell"}},
    {"bindings/qt", {"forms", "store", "media", "platform", "play", "shell"}},
    {"bindings/web", {"forms", "store", "media", "platform", "play", "shell"}},
    // The window binding is a module that app loads by name, never includes.
    {"app", {"forms", "store", "media", "platform", "play", "editor", "packager", "shell", "bindings/headless",
             "bindings/terminal", "bindings/web"}},
};

// The layer a path below src/ belongs to: its folder, or bindings/NAME.
std::string LayerOf(const std::string& path) {
  std::string first = path.substr(0, path.find('/'));
  if (first != "bindings") return first;
  std::size_t second = path.find('/', first.size() + 1);
  return path.substr(0, second);
}

// Every "#include" line of every file below src/, with its file's layer.
struct Include {
  std::string file, layer, line;
};
std::vector<Include> AllIncludes() {
  namespace fs = std::filesystem;
  fs::path src = fs::path(FABLEWRIGHT_SOURCE_DIR) / "src";
  std::vector<Include> includes;
  for (const auto& entry : fs::recursive_directory_iterator(src)) {
    if (!entry.is_regular_file()) continue;
    std::string relative = fs::relative(entry.path(), src).string();
    std::ifstream in(entry.path());
    std::string line;
    for (int n = 1; std::getline(in, line); ++n) {
      auto first = line.find_first_not_of(" \t");
      if (first == std::string::npos || line.compare(first, 8, "#include") != 0) continue;
      includes.push_back({relative + ":" + std::to_string(n), LayerOf(relative), line});
    }
  }
  return includes;
}

TEST(Layers, EachLayerIncludesOnlyWhatItStandsOn) {
  int quoted = 0;
  for (const Include& inc : AllIncludes()) {
    ASSERT_TRUE(kMayInclude.count(inc.layer)) << inc.file << ": a folder that is no layer";
    std::size_t open = inc.line.find('"');
    if (open == std::string::npos) continue;
    std::string target = inc.line.substr(open + 1, inc.line.find('"', open + 1) - open - 1);
    ++quoted;
    EXPECT_EQ(target.find(".."), std::string::npos) << inc.file << ": " << inc.line;
    std::string layer = LayerOf(target);
    if (layer == inc.layer) continue;
    EXPECT_TRUE(kMayInclude.at(inc.layer).count(layer)) << inc.file << ": " << inc.layer << " may not include "
                                                        << target;
  }
  EXPECT_GT(quoted, 100);
}

// A toolkit's headers (the window's, the browser's) belong to its
// binding alone: the layers below build the same for every platform.
TEST(Layers, NoToolkitOutsideItsBinding) {
  struct Toolkit {
    const char* mark;
    const char* binding;
  };
  constexpr Toolkit kToolkits[] = {{"<Q", "bindings/qt"}, {"<qt", "bindings/qt"}, {"<emscripten", "bindings/web"}};
  for (const Include& inc : AllIncludes())
    for (const Toolkit& t : kToolkits)
      EXPECT_TRUE(inc.layer == t.binding || inc.line.find(t.mark) == std::string::npos) << inc.file << ": " << inc.line;
}

}  // namespace
}  // namespace fw
