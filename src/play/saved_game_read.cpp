#include <algorithm>
#include <cmath>
#include <string>

#include "forms/convert.h"
#include "forms/failure.h"
#include "forms/program.h"
#include "play/saved_game.h"
#include "store/program_store.h"
#include "store/records.h"
#include "store/scrambler.h"

namespace fw {
namespace {

// The key items: with a count, the indices from -1 up to below it that hold
// an item; with none, indices from 0 up to the first blank one.
std::vector<std::string> ReadItems(Program& p, const std::string& file) {
  std::vector<std::string> items;
  std::string count = ReadINI(p, file, "saved game", "HowMuchInList");
  auto n = ParseNumber(count);
  bool counted = n && *n >= 0 && *n == std::floor(*n) && NumberText(*n) == count;
  // A list holds at most 32,767 items, which also bounds a damaged count; the
  // bound comes before the cast, as a count such as 1E+300 fits no integer.
  long end = counted ? static_cast<long>(std::min(*n, 32767.0)) : 32767L;
  for (long i = counted ? -1 : 0; i < end; ++i) {
    std::string item = ReadINI(p, file, kListDataSection, std::to_string(i));
    if (!item.empty()) items.push_back(item);
    else if (!counted) break;
  }
  return items;
}

}  // namespace

std::optional<SavedGame> ReadSavedGame(Program& p, const std::string& file) {
  auto read = [&](const char* section, const char* key) { return ReadINI(p, file, section, key); };
  if (read("saved game", "room").empty() && read("saved game", "option 1").empty()) return std::nullopt;
  SavedGame g;
  std::string* fields[] = {&g.room, &g.options[0], &g.options[1], &g.options[2], &g.options[3], &g.page,
                           &g.score, nullptr, &g.name, &g.hp, &g.attack, &g.defence, &g.level};
  int i = 0;
  try {
    for (const RecordKey& k : kSavedGameKeys) {
      if (std::string* field = fields[i++]) *field = Decode(read(k.section, k.key));
    }
  } catch (const Failure&) {
    return std::nullopt;
  }
  if (!g.hp.empty() && !ParseNumber(g.hp)) return std::nullopt;
  g.items = ReadItems(p, file);
  return g;
}

}  // namespace fw
