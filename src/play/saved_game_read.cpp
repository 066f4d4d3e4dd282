#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "forms/convert.h"
#include "forms/failure.h"
#include "forms/program.h"
#include "play/saved_game.h"
#include "store/program_store.h"
#include "store/records.h"
#include "store/scrambler.h"

namespace fw {
namespace {

// A list holds at most this many items, which also bounds a damaged count.
constexpr long kMaxItems = 32767;

// The values of the item keys -1 up to below kMaxItems, by index + 1 (none
// past the last key): for a key written twice the first, as a read finds it. One pass over the section
// read once, so a long list loads in a time that grows with its length.
std::vector<std::optional<std::string_view>> ItemValues(const ProfileImage& image) {
  std::vector<std::optional<std::string_view>> values;
  const ProfileImage::Section* section = image.Find(kListDataSection);
  if (!section) return values;
  for (const ProfileImage::Key& k : section->keys) {
    long n = 0;
    const char* end = k.name.data() + k.name.size();
    auto [stop, error] = std::from_chars(k.name.data(), end, n);
    // Only the key a read of the index names: its decimal text exactly.
    if (error != std::errc() || stop != end || n < -1 || n >= kMaxItems || std::to_string(n) != k.name) continue;
    auto at = static_cast<std::size_t>(n + 1);
    if (at >= values.size()) values.resize(at + 1);
    if (!values[at]) values[at] = k.value;
  }
  return values;
}

// The key items: with a count, the indices from -1 up to below it that hold
// an item; with none, indices from 0 up to the first blank one.
std::vector<std::string> ReadItems(const ProfileImage& image) {
  std::vector<std::string> items;
  std::string count(image.Value("saved game", "HowMuchInList"));
  auto n = ParseNumber(count);
  bool counted = n && *n >= 0 && *n == std::floor(*n) && NumberText(*n) == count;
  // The bound comes before the cast, as a count such as 1E+300 fits no integer.
  long end = counted ? static_cast<long>(std::min<double>(*n, kMaxItems)) : kMaxItems;
  std::vector<std::optional<std::string_view>> values = ItemValues(image);
  for (long i = counted ? -1 : 0; i < end; ++i) {
    auto at = static_cast<std::size_t>(i + 1);
    std::string_view item = at < values.size() ? values[at].value_or("") : "";
    if (!item.empty()) items.emplace_back(item);
    else if (!counted) break;
  }
  return items;
}

// The values of the record's keys from `first` up to before `last`, decoded
// into their fields; false when one cannot be decoded.
bool DecodeKeys(const ProfileImage& image, std::size_t first, std::size_t last, std::string* const fields[]) {
  try {
    for (std::size_t i = first; i < last; ++i)
      if (fields[i]) *fields[i] = Decode(image.Value(kSavedGameKeys[i].section, kSavedGameKeys[i].key));
  } catch (const Failure&) {
    return false;
  }
  return true;
}

}  // namespace

std::optional<SavedGame> ReadSavedGame(Program& p, const std::string& file, SaveRead what) {
  // The validity test reads its two keys alone: a file that is no saved game
  // (a quest of 100 MB, say) is never read whole.
  if (ReadINI(p, file, "saved game", "room").empty() && ReadINI(p, file, "saved game", "option 1").empty())
    return std::nullopt;
  std::shared_ptr<const ProfileImage> image = ReadINIImage(p, file);
  if (!image) return std::nullopt;
  SavedGame g;
  // The fields in the order of kSavedGameKeys: the page's seven, the count
  // (read with the items), then the character's five.
  std::string* const fields[] = {&g.room,  &g.options[0], &g.options[1], &g.options[2], &g.options[3],
                                 &g.page,  &g.score,      nullptr,       &g.name,       &g.hp,
                                 &g.attack, &g.defence,   &g.level};
  constexpr std::size_t kCharacter = 8, kAll = std::size(kSavedGameKeys);
  if (!DecodeKeys(*image, 0, kCharacter, fields)) return std::nullopt;
  if (what == SaveRead::Page) return g;
  if (!DecodeKeys(*image, kCharacter, kAll, fields)) return std::nullopt;
  if (!g.hp.empty() && !ParseNumber(g.hp)) return std::nullopt;
  g.items = ReadItems(*image);
  return g;
}

}  // namespace fw
