#include "editor/quest_check.h"

#include <algorithm>
#include <cstdio>
#include <unordered_map>

#include "forms/codepage.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_rules.h"
#include "play/page_keys.h"
#include "play/page_rules.h"
#include "play/quest_paths.h"
#include "play/undo.h"
#include "store/program_store.h"

namespace fw {
namespace {

using Level = Finding::Level;

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

const char* kOrdinals[] = {"", "one", "two", "three", "four"};

std::string OptionName(const OptionLink& o) {
  std::string name = "option " + std::string(kOrdinals[o.n]);
  return o.text.empty() ? name : name + " " + Quoted(o.text);
}

struct Checker {
  Program& p;
  const QuestGraph& g;
  std::string folder;
  std::vector<Finding> out;

  void Add(const std::string& page, Level level, std::string message) {
    out.push_back({page, level, std::move(message)});
  }
  std::string Key(const PageNode& page, std::string_view key) const {
    return std::string(g.image->Value(page.name, key));
  }

  // Why an option can never be on screen, by the case the gating rules left.
  std::string NeverShows(const PageNode& page, const OptionLink& o) const {
    std::string add = Key(page, KeysOf(o.n).add);
    if (o.text.empty()) return OptionName(o) + " has a destination but no text: it never shows";
    if (o.item.empty()) return OptionName(o) + " has Add set and no key item: it never shows";
    if (o.needsItem && AddHides(true, add))
      return OptionName(o) + " requires and adds the same item " + Quoted(o.item) + ": it never shows";
    return OptionName(o) + " requires the key item " + Quoted(o.item) + ", which nothing in the quest gives";
  }

  void Options(const PageNode& page) {
    for (const OptionLink& o : page.options) {
      if (!o.canShow) Add(page.name, Level::Error, NeverShows(page, o));
      if (o.text.empty()) continue;
      if (o.destination.empty())
        Add(page.name, Level::Error, OptionName(o) + " has no destination page");
      else if (o.target < 0)
        Add(page.name, Level::Error,
            OptionName(o) + " leads to page " + Quoted(o.destination) + ", which the quest does not have");
      if (!o.score.empty() && !ParseNumber(o.score))
        Add(page.name, Level::Error,
            OptionName(o) + " has the score " + Quoted(o.score) + ", which is no number: the score stays as it was");
    }
  }

  void MonsterHitPoints(const PageNode& page) {
    std::string hp = Key(page, "BattleMonHp");
    std::optional<double> value = ParseNumber(hp);
    if (!value) {
      Add(page.name, Level::Error,
          hp.empty() ? "the monster has no hit points (BattleMonHp is blank): a first round in which the player misses wins the fight"
                     : "the monster's hit points " + Quoted(hp) + " are no number");
    } else if (*value <= 0) {
      Add(page.name, Level::Warning,
          "the monster's hit points " + Quoted(hp) + " are at or below zero: the first round wins the fight");
    } else if (AtOrBelowZero(hp)) {
      Add(page.name, Level::Warning,
          "the monster's hit points " + Quoted(hp) +
              " count as already beaten, since the fight tests the text, which sorts before \"0\": a first round in "
              "which the player misses wins the fight; write " + NumberText(*value) + " instead");
    }
  }

  void Battle(const PageNode& page) {
    if (!page.battle) return;
    if (!g.hasCharacter)
      Add(page.name, Level::Error,
          "a battle on a quest without a character (CharCreateAllow is not 1): the player fights with 0 hit "
          "points and loses the first round");
    for (const BattleExit& e : page.exits) {
      if (!e.open) continue;
      if (e.page.empty()) Add(page.name, Level::Error, "the battle has no " + std::string(e.key) + " page");
      else if (e.target < 0)
        Add(page.name, Level::Error,
            "the battle's " + std::string(e.key) + " page " + Quoted(e.page) + " is not in the quest");
    }
    MonsterHitPoints(page);
    std::string atk = Key(page, "BattleMonAtk");
    if (!ParseNumber(atk))
      Add(page.name, Level::Error,
          (atk.empty() ? std::string("the monster has no attack (BattleMonAtk is blank)")
                       : "the monster's attack " + Quoted(atk) + " is no number") +
              ": its blows deal only the dice's 2 to 9");
    std::string exp = Key(page, "BattleMonExp");
    if (!exp.empty() && !ParseNumber(exp))
      Add(page.name, Level::Warning, "the monster's experience " + Quoted(exp) + " is no number: a win gives none");
  }

  void Media(const PageNode& page) {
    std::vector<const char*> keys = {"Image", "Movie", "Music", "Mp3"};
    if (page.battle) keys.insert(keys.end(), {"BattleImage", "BattleMusic", "BattleMp3"});
    for (const char* key : keys) {
      std::string name = Key(page, key);
      if (name.empty() || !p.ResolveMediaFile(FindQuestFile(p, name, folder)).empty()) continue;
      Add(page.name, Level::Error, std::string(key) + " names " + Quoted(name) + ", which cannot be found");
    }
  }

  void Reach(const PageNode& page) {
    if (!page.reachable)
      Add(page.name, Level::Warning, "no option, battle outcome or start reaches this page");
    if (page.deadEnd)
      Add(page.name, Level::Warning, "dead end: none of its options can ever show, and there is no battle");
  }

  // Reachable pages from which the links, gating ignored, reach no page that
  // ends the story: a player there can only go round. A link to a page the
  // quest lacks ends on an empty page, so it counts as a way out.
  void Traps() {
    std::size_t n = g.pages.size();
    std::vector<std::vector<int>> back(n);
    std::vector<int> queue;
    std::vector<char> out(n, 0);
    for (std::size_t i = 0; i < n; ++i) {
      const PageNode& page = g.pages[i];
      bool end = page.options.empty() && !page.battle;
      for (const OptionLink& o : page.options) {
        if (o.text.empty()) continue;
        if (o.target < 0) end = true;
        else back[o.target].push_back(static_cast<int>(i));
      }
      for (const BattleExit& e : page.exits) {
        if (!e.open) continue;
        if (e.target < 0) end = true;
        else back[e.target].push_back(static_cast<int>(i));
      }
      if (end) out[i] = 1, queue.push_back(static_cast<int>(i));
    }
    for (std::size_t q = 0; q < queue.size(); ++q)
      for (int from : back[queue[q]])
        if (!out[from]) out[from] = 1, queue.push_back(from);
    for (std::size_t i = 0; i < n; ++i)
      if (g.pages[i].reachable && !out[i] && !g.pages[i].deadEnd)
        Add(g.pages[i].name, Level::Warning,
            "trap: no page that ends the story can be reached from here, whatever items the player holds");
  }

  // The editor lists pages "1" to Number Of Pages and nothing else.
  void EditorReach() {
    std::string count(g.image->Value("Quest Data", "Number Of Pages"));
    std::optional<double> n = ParseNumber(count);
    if (!n) {
      Add("Quest Data", Level::Error,
          "Number Of Pages " + (count.empty() ? std::string("is missing") : Quoted(count) + " is no number") +
              ": the editor cannot load the quest");
      return;
    }
    for (const PageNode& page : g.pages) {
      std::optional<double> k = ParseNumber(page.name);
      bool listed = k && *k >= 1 && *k <= *n && *k == RoundHalfEven(*k) && NumberText(*k) == page.name;
      if (!listed)
        Add(page.name, Level::Warning,
            "the editor cannot reach this page: its list holds pages 1 to " + NumberText(*n) +
                " (Number Of Pages)");
    }
  }

  // Story Info's switch of undo: "1" turns it off, blank or "0" leaves it on.
  void UndoSwitch() {
    std::string_view value = g.image->Value("Story Info", kNoUndoKey);
    if (!value.empty() && value != "0" && value != "1")
      Add("Story Info", Level::Warning,
          std::string(kNoUndoKey) + " " + Quoted(value) + " is neither 1 nor 0: players may undo their steps");
  }

  void LineBreaks() {
    for (const ProfileImage::Section& s : g.image->Sections())
      for (const ProfileImage::Stray& stray : s.strays)
        Add(std::string(s.name), Level::Warning,
            (stray.afterKey.empty() ? std::string("line ") + std::to_string(stray.line) + " is no key"
                                    : "the value of " + std::string(stray.afterKey) + " has a line break in the file") +
                ": only the line before it is read, and " + Quoted(stray.text) + " is lost");
  }
};

// Number-named pages are listed by number; findings keep the file's order.
void SortByPage(std::vector<Finding>& findings, const ProfileImage& image) {
  std::unordered_map<std::string, std::size_t> order;
  for (const ProfileImage::Section& s : image.Sections()) order.try_emplace(std::string(s.name), s.line);
  std::stable_sort(findings.begin(), findings.end(), [&](const Finding& a, const Finding& b) {
    return order[a.page] < order[b.page];
  });
}

std::string JsonString(std::string_view utf8) {
  std::string out = "\"";
  for (char c : utf8) {
    unsigned char u = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') out += '\\', out += c;
    else if (u < 0x20) {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\u%04x", u);
      out += buf;
    } else out += c;
  }
  return out + "\"";
}

const char* LevelName(Level level) { return level == Level::Error ? "error" : "warning"; }

}  // namespace

std::vector<Finding> CheckQuestGraph(Program& p, const QuestGraph& graph, std::string_view folder) {
  Checker c{p, graph, std::string(folder), {}};
  if (graph.first < 0)
    c.Add(std::string(kFirstPage), Level::Error, "the quest has no page 1, where every game starts");
  c.EditorReach();
  c.UndoSwitch();
  c.LineBreaks();
  c.Traps();
  for (const PageNode& page : graph.pages) {
    c.Reach(page);
    c.Options(page);
    c.Battle(page);
    c.Media(page);
  }
  SortByPage(c.out, *graph.image);
  return std::move(c.out);
}

std::optional<std::vector<Finding>> CheckQuest(Program& p, std::string_view quest) {
  std::shared_ptr<const ProfileImage> image = ReadINIImage(p, quest);
  if (!image) return std::nullopt;
  return CheckQuestGraph(p, BuildQuestGraph(image), QuestFolder(p, quest));
}

GameDatCheck CheckGameDat(Program& p, std::string_view folder) {
  GameDatCheck c;
  std::string dat = std::string(folder) + "\\game.dat";
  for (const char* key : {"Background", "MenuButton"}) {
    std::string name = ReadINI(p, dat, "Image", key);
    if (!name.empty() && InsideFolder(p, folder, name).empty())
      c.findings.push_back({"Image", Level::Warning,
                            std::string(key) + " " + Quoted(name) +
                                " is outside the game folder: the game ignores it and keeps its own picture"});
  }
  c.questName = ReadINI(p, dat, "loaddat", "QuestFile");
  c.quest = InsideFolder(p, folder, c.questName);
  if (c.questName.empty())
    c.findings.push_back({"loaddat", Level::Warning,
                          "QuestFile is blank: this is no packaged game, and the program starts as the full system"});
  else if (c.quest.empty())
    c.findings.push_back({"loaddat", Level::Warning,
                          "QuestFile " + Quoted(c.questName) +
                              " is outside the game folder: the game ignores it and starts as the full system"});
  return c;
}

bool HasError(const std::vector<Finding>& findings) {
  return std::any_of(findings.begin(), findings.end(), [](const Finding& f) { return f.level == Level::Error; });
}

std::string FindingsText(std::string_view quest, const std::vector<Finding>& findings) {
  std::string out;
  for (const Finding& f : findings)
    out += std::string(quest) + ":" + Utf8FromCp1252(f.page) + ": " + LevelName(f.level) + ": " +
           Utf8FromCp1252(f.message) + "\n";
  return out;
}

std::string FindingsJson(const std::vector<FileFindings>& files) {
  std::string out = "[";
  bool first = true;
  for (const FileFindings& file : files) {
    for (const Finding& f : file.findings) {
      out += first ? "\n " : ",\n ";
      first = false;
      out += "{\"quest\": " + JsonString(file.file) + ", \"page\": " + JsonString(Utf8FromCp1252(f.page)) +
             ", \"level\": \"" + LevelName(f.level) + "\", \"message\": " + JsonString(Utf8FromCp1252(f.message)) +
             "}";
    }
  }
  return out + (first ? "]\n" : "\n]\n");
}

std::string FindingsJson(std::string_view quest, const std::vector<Finding>& findings) {
  return FindingsJson({FileFindings{std::string(quest), findings}});
}

}  // namespace fw
