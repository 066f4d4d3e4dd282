#include "play/list_find.h"

namespace fw {

std::string ListFind(const ListBox& list, std::string_view text) {
  if (text.empty()) return "found";
  for (int i = 0; i < list.ListCount(); ++i)
    if (list.List(i) == text) return "found";
  return "";
}

}  // namespace fw
