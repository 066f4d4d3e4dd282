#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "forms/controls.h"

namespace fw {

// "found" when the list holds the text exactly (letter case counts), else "".
// A blank text counts as found whatever the list holds, so an option without a
// key item is never held back by it.
std::string ListFind(const ListBox& list, std::string_view text);
// The same rule on a list of entries outside any control.
std::string ListFind(const std::vector<std::string>& list, std::string_view text);

}  // namespace fw
