#include "play/list_find.h"

namespace fw {
namespace {

// One rule for the list box and a plain list: `entry(i)` is the i-th entry.
template <class Entry>
std::string FindIn(int count, Entry entry, std::string_view text) {
  if (text.empty()) return "found";
  for (int i = 0; i < count; ++i)
    if (entry(i) == text) return "found";
  return "";
}

}  // namespace

std::string ListFind(const ListBox& list, std::string_view text) {
  return FindIn(list.ListCount(), [&](int i) { return list.List(i); }, text);
}

std::string ListFind(const std::vector<std::string>& list, std::string_view text) {
  return FindIn(static_cast<int>(list.size()), [&](int i) -> const std::string& { return list[i]; }, text);
}

}  // namespace fw
