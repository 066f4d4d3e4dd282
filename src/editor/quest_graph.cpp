#include "editor/quest_graph.h"

#include <algorithm>
#include <deque>
#include <set>

#include "play/list_find.h"
#include "play/page_keys.h"
#include "play/page_rules.h"

namespace fw {
namespace {

std::string Key(const ProfileImage& q, std::string_view section, std::string_view key) {
  return std::string(q.Value(section, key));
}

OptionLink ReadOption(const ProfileImage& q, std::string_view page, int n) {
  const OptionKeys& k = KeysOf(n);
  OptionLink o;
  o.n = n;
  o.text = Key(q, page, k.text);
  o.destination = Key(q, page, k.destination);
  o.item = Key(q, page, k.item);
  o.score = Key(q, page, k.score);
  std::string add = Key(q, page, k.add), required = Key(q, page, k.required);
  o.needsItem = RequiredHides(false, required) && !o.item.empty();
  o.gives = GivesItem(o.item, add);
  return o;
}

// Whether the option can be on screen: with its item not held (possible
// unless the item is blank, which counts as held) or held (possible when
// something gives it), by the page's own gating.
bool CanShow(const OptionLink& o, const std::string& add, const std::string& required,
             const std::vector<std::string>& given) {
  static const std::vector<std::string> kNothing;
  bool shows = false;
  if (ListFind(kNothing, o.item) != "found") shows = shows || OptionShows(o.text, required, false, add);
  if (ListFind(given, o.item) == "found") shows = shows || OptionShows(o.text, required, true, add);
  return shows;
}

PageNode ReadPage(const ProfileImage& q, const ProfileImage::Section& s) {
  PageNode page;
  page.name = std::string(s.name);
  page.line = s.line;
  page.location = Key(q, page.name, "Location");
  for (int n = 1; n <= 4; ++n) {
    OptionLink o = ReadOption(q, page.name, n);
    if (!o.text.empty() || !o.destination.empty()) page.options.push_back(std::move(o));
  }
  page.battle = StartsBattle(Key(q, page.name, "Battle"));
  if (page.battle) {
    page.monster = Key(q, page.name, "BattleMonName");
    bool escape = !EscapeClosed(Key(q, page.name, "BattleEscapecheck"));
    for (const char* key : {"BattleWin", "BattleLose", "BattleEscape"})
      page.exits.push_back({key, Key(q, page.name, key), std::string_view(key) != "BattleEscape" || escape});
  }
  return page;
}

void MarkReachable(QuestGraph& g) {
  if (g.first < 0) return;
  std::deque<int> todo{g.first};
  g.pages[g.first].reachable = true;
  auto visit = [&](int to) {
    if (to >= 0 && !g.pages[to].reachable) {
      g.pages[to].reachable = true;
      todo.push_back(to);
    }
  };
  while (!todo.empty()) {
    PageNode& page = g.pages[todo.front()];
    todo.pop_front();
    for (const OptionLink& o : page.options)
      if (o.canShow) visit(o.target);
    for (const BattleExit& e : page.exits)
      if (e.open) visit(e.target);
  }
}

}  // namespace

bool IsDataSection(std::string_view name) {
  auto fold = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; };
  for (std::string_view data : {"Story Info", "Quest Data", "CharacterData"}) {
    if (std::equal(name.begin(), name.end(), data.begin(), data.end(),
                   [&](char a, char b) { return fold(a) == fold(b); }))
      return true;
  }
  return false;
}

int QuestGraph::PageIndex(const std::string& name) const {
  if (name.empty() || IsDataSection(name)) return -1;
  const ProfileImage::Section* s = image->Find(name);
  if (!s) return -1;
  // Pages are the sections a read lands in, so the first of a repeated name.
  auto it = byLine.find(s->line);
  return it == byLine.end() ? -1 : it->second;
}

QuestGraph BuildQuestGraph(std::shared_ptr<const ProfileImage> image) {
  QuestGraph g;
  g.image = image;
  const ProfileImage& q = *image;
  g.hasCharacter = AsksForCharacter(q.Value("CharacterData", "CharCreateAllow"));
  std::set<std::string> given;
  for (const ProfileImage::Section& s : q.Sections()) {
    if (IsDataSection(s.name) || q.Find(s.name) != &s) continue;
    g.byLine[s.line] = static_cast<int>(g.pages.size());
    g.pages.push_back(ReadPage(q, s));
    const PageNode& page = g.pages.back();
    for (const OptionLink& o : page.options)
      if (o.gives) given.insert(o.item);
    if (std::string item = Key(q, page.name, "BattleMonKeyItem"); page.battle && !item.empty()) given.insert(item);
  }
  g.given.assign(given.begin(), given.end());
  for (PageNode& page : g.pages) {
    for (OptionLink& o : page.options) {
      o.target = g.PageIndex(o.destination);
      const OptionKeys& k = KeysOf(o.n);
      o.canShow = CanShow(o, Key(q, page.name, k.add), Key(q, page.name, k.required), g.given);
    }
    for (BattleExit& e : page.exits) e.target = g.PageIndex(e.page);
  }
  g.first = g.PageIndex(std::string(kFirstPage));
  MarkReachable(g);
  for (PageNode& page : g.pages) {
    bool choice = false;
    for (const OptionLink& o : page.options) choice = choice || o.canShow;
    page.ending = page.reachable && page.options.empty() && !page.battle;
    page.deadEnd = page.reachable && !page.options.empty() && !choice && !page.battle;
  }
  return g;
}

}  // namespace fw
