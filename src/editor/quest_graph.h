#pragma once
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/profile_image.h"

namespace fw {

// A quest's pages and the ways between them, as the game's own rules see
// them: which option can ever be on screen, where a fight leads, what can be
// reached from the first page. Texts are the file's own (Windows-1252).

struct OptionLink {
  int n = 0;  // 1 to 4
  std::string text, destination, item, score;
  bool needsItem = false;  // shows only while the item is held
  bool gives = false;      // choosing it hands out the item
  bool canShow = false;    // on screen for some set of items the quest can give
  int target = -1;         // index of the destination page, -1 when none
};

struct BattleExit {
  const char* key;  // "BattleWin", "BattleLose", "BattleEscape"
  std::string page;
  bool open = true;  // false for an escape the page closes
  int target = -1;
};

struct PageNode {
  std::string name, location;
  std::size_t line = 0;  // of its header in the file
  std::vector<OptionLink> options;  // those with a text or a destination
  bool battle = false;
  std::string monster;
  std::vector<BattleExit> exits;  // win, loss, escape when a battle
  bool reachable = false;
  // Reachable with no option written and no fight: where a story ends.
  bool ending = false;
  // Reachable with options written, none of which can ever show, and no
  // fight: the player is stuck.
  bool deadEnd = false;
};

struct QuestGraph {
  std::shared_ptr<const ProfileImage> image;
  std::vector<PageNode> pages;      // every page section, in file order
  std::vector<std::string> given;   // every item an option or a win hands out
  bool hasCharacter = false;
  int first = -1;                   // the first page, -1 when missing

  // The index of the page a destination names, -1 when none.
  int PageIndex(const std::string& name) const;

  std::unordered_map<std::size_t, int> byLine;  // header line -> page index
};

// Sections that hold the quest's data rather than a page.
bool IsDataSection(std::string_view name);

QuestGraph BuildQuestGraph(std::shared_ptr<const ProfileImage> image);

}  // namespace fw
