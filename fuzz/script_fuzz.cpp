// Fuzzes the scenario language's parser: lines, words and targets. A bad
// line is a script error, never anything worse.
#include <cstdint>
#include <cstdlib>

#include "bindings/headless/script_parse.h"
#include "bindings/headless/headless_services.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  std::size_t total = 0;
  for (std::string_view line : fw::ScriptLines(text)) {
    if (line.find_first_of("\r\n") != std::string_view::npos) std::abort();
    total += line.size();
    try {
      for (const std::string& word : fw::SplitWords(line)) fw::ParseTarget(word);
    } catch (const fw::ScriptError&) {
    }
  }
  if (total > size) std::abort();
  return 0;
}
