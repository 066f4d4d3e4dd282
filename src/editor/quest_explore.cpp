#include "editor/quest_explore.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <deque>
#include <random>
#include <unordered_map>

#include "editor/quest_graph.h"
#include "forms/codepage.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_rules.h"
#include "play/character.h"
#include "play/choose_option.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/page_view.h"
#include "play/start_quest.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

// What the game shows in one state, enough to put it back on the controls.
struct Snapshot {
  std::string pg, score;
  std::vector<std::string> items;  // List1 as it stands, duplicates kept
  std::array<std::string, 4> captions;
  bool battle = false;
  float hp = 0, hpMax = 0, exp = 0;  // the character's, which the fights need
  std::array<std::string, 4> record;  // its numbers in the quest, which a level raises
};

// The character's numbers as the quest holds them, in the order a level
// gain writes them.
constexpr const char* kRecordKeys[4] = {"CharHp", "CharAtk", "CharDef", "CharLevel"};

// The state as the game's rules tell it apart: what shows depends only on
// which items are held, not on their order or repeats.
std::string StateKey(const Snapshot& s) {
  std::vector<std::string> held = s.items;
  std::sort(held.begin(), held.end());
  held.erase(std::unique(held.begin(), held.end()), held.end());
  std::string key = s.pg + '\x1f' + s.score;
  for (const std::string& item : held) key += '\x1f' + item;
  return key;
}

Snapshot Capture(Program& p) {
  GameState g(p);
  frmgame::Timer1_Timer(p);
  Snapshot s;
  s.pg = g.pg.Caption();
  s.score = g.score.Caption();
  for (int i = 0; i < g.List1.ListCount(); ++i) s.items.push_back(g.List1.List(i));
  for (int n = 1; n <= 4; ++n)
    if (g.Option(n).Visible()) s.captions[n - 1] = g.Option(n).Caption();
  s.battle = PictureBox(p.surface(), kForm, "BattleBox").Visible();
  s.hp = g.HPPlay.Value();
  s.hpMax = g.HPPlay.Max();
  s.exp = g.exp.Value();
  for (int i = 0; i < 4; ++i) s.record[i] = QuestKey(p, g, "CharacterData", kRecordKeys[i]);
  return s;
}

void Restore(Program& p, const Snapshot& s) {
  GameState g(p);
  g.pg.SetCaption(s.pg);
  g.score.SetCaption(s.score);
  g.List1.Clear();
  for (const std::string& item : s.items) g.List1.AddItem(item);
  for (int n = 1; n <= 4; ++n) {
    g.Option(n).SetCaption(s.captions[n - 1]);
    g.Option(n).SetVisible(!s.captions[n - 1].empty());
    g.Option(n).SetValue(false);
  }
  g.Text1.SetText("");  // the transcript would only grow
  PictureBox(p.surface(), kForm, "BattleBox").SetVisible(s.battle);
  g.HPPlay.SetMax(s.hpMax);
  g.HPPlay.SetValue(s.hp);
  g.exp.SetValue(s.exp);
  // A level gained on another branch is put back; only then is the file written.
  for (int i = 0; i < 4; ++i)
    if (QuestKey(p, g, "CharacterData", kRecordKeys[i]) != s.record[i])
      WriteINI(p, g.questfil.Caption(), "CharacterData", kRecordKeys[i], s.record[i]);
  // A win keeps the hit points the fight left: here those it began with.
  Label(p.surface(), kForm, "Label5").SetCaption(SingleText(s.hp));
}

// One way on from a state: an option's number, or a fight's outcome.
struct Move {
  int option = 0;           // 1 to 4, or 0 for an outcome
  const char* outcome = ""; // "win", "loss", "escape"
  std::string label;
};

std::vector<Move> MovesOf(Program& p, const Snapshot& s) {
  std::vector<Move> moves;
  if (s.battle) {
    moves.push_back({0, "win", "win the battle"});
    moves.push_back({0, "loss", "lose the battle"});
    Restore(p, s);
    if (PictureBox(p.surface(), kForm, "Picture8").Enabled()) moves.push_back({0, "escape", "escape"});
    return moves;
  }
  for (int n = 1; n <= 4; ++n)
    if (!s.captions[n - 1].empty())
      moves.push_back({n, "", "option " + std::to_string(n) + " \"" + s.captions[n - 1] + "\""});
  return moves;
}

Snapshot Play(Program& p, const Snapshot& from, const Move& move) {
  Restore(p, from);
  std::string_view outcome = move.outcome;
  if (move.option) {
    // The Choose button's work without its press: the press only waits.
    GameState(p).Option(move.option).SetValue(true);
    ChooseSelectedOption(p);
  } else if (outcome == "win") {
    WinBattle(p);
  } else if (outcome == "loss") {
    LoseBattle(p);
  } else {
    EscapeBattle(p);
  }
  return Capture(p);
}

struct Node {
  Snapshot snap;
  int parent = -1;
  std::string via;
  std::vector<int> next;  // every state a move leads to, those met before included
  bool open = false;      // a move's state was left out at the bound, or the node never played
};

// Walks back from a node to the start: the choices in the order made.
std::vector<std::string> PathTo(const std::vector<Node>& nodes, int at) {
  std::vector<std::string> path;
  for (; nodes[at].parent >= 0; at = nodes[at].parent) path.push_back(nodes[at].via);
  std::reverse(path.begin(), path.end());
  return path;
}

// What the walk has seen, turned into the report at the end.
struct Tally {
  const QuestGraph& graph;
  std::unordered_map<std::string, std::size_t> reached;  // page -> states
  std::map<std::string, ExploreReport::End> ends;
  std::map<std::string, std::size_t> battles;
  // page -> the character's numbers on arrival -> a state that has them
  std::map<std::string, std::map<std::string, Snapshot>> arrivals;

  void See(const std::vector<Node>& nodes, int at, bool stuck) {
    const Snapshot& s = nodes[at].snap;
    ++reached[s.pg];
    if (s.battle) {
      ++battles[s.pg];
      arrivals[s.pg].try_emplace(SingleText(s.hp) + "/" + SingleText(s.hpMax) + "/" + s.record[1], s);
    }
    if (!stuck) return;
    int score = static_cast<int>(NumberOr0(s.score));
    int page = graph.PageIndex(s.pg);
    auto [it, fresh] = ends.try_emplace(s.pg);
    ExploreReport::End& end = it->second;
    std::vector<std::string> path = PathTo(nodes, at);
    if (fresh) {
      end.page = s.pg;
      end.deadEnd = page < 0 || !graph.pages[page].options.empty();
      end.minScore = end.maxScore = score;
      end.path = path;
    }
    end.minScore = std::min(end.minScore, score);
    end.maxScore = std::max(end.maxScore, score);
    if (path.size() < end.path.size()) end.path = path;
  }

  ExploreReport Report() const {
    ExploreReport r;
    for (const PageNode& page : graph.pages) (reached.count(page.name) ? r.reached : r.neverReached).push_back(page.name);
    for (const PageNode& page : graph.pages)
      if (auto it = ends.find(page.name); it != ends.end()) r.ends.push_back(it->second);
    for (const auto& [page, end] : ends)
      if (graph.PageIndex(page) < 0) r.ends.push_back(end);  // a page the quest does not have
    r.battles = battles;
    return r;
  }
};

// A new game, with the character it rolls created as a player would.
Snapshot Start(Program& p, std::string_view quest) {
  GameState g(p);
  g.questfil.SetCaption(std::string(quest));
  StartQuest(p, QuestEntry::LoadQuestFile);
  if (PictureBox(p.surface(), kForm, "CharCreate").Visible()) Skip([&] { frmgame::Command9_Click(p); });
  return Capture(p);
}

bool Stopped(const ExploreOptions& o) { return o.stopped && o.stopped(); }

// Each battle met, fought for each way of arriving that the walk found.
void Balance(Program& p, const Tally& tally, const ExploreOptions& o, ExploreReport& report) {
  if (o.fights <= 0) return;
  for (const auto& [page, ways] : tally.arrivals)
    for (const auto& [numbers, snap] : ways) {
      if (Stopped(o)) return;
      Restore(p, snap);
      report.balance.push_back(FightOften(p, page, snap.hp, snap.hpMax, o.fights));
    }
}

// The root of a group in a union of groups.
int Root(std::vector<int>& up, int i) {
  while (up[i] != i) i = up[i] = up[up[i]];
  return i;
}

// What decides the moves of a state: its page and the items held. The
// score never does, so states that differ only by it go the same ways.
std::string WayKey(const Snapshot& s) {
  Snapshot unscored = s;
  unscored.score.clear();
  return StateKey(unscored);
}

// The ways between states told apart by page and items, as the search met
// them: a way's moves are known once one state of it was played to the end.
struct Ways {
  std::vector<int> of;                  // node -> way
  std::vector<int> first;               // way -> its first node (the shortest run)
  std::vector<std::set<int>> next;      // way -> ways its moves lead to
  std::vector<char> known, stuck;       // played to the end; with no move

  explicit Ways(const std::vector<Node>& nodes) : of(nodes.size()) {
    std::unordered_map<std::string, int> ids;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      auto [it, fresh] = ids.try_emplace(WayKey(nodes[i].snap), static_cast<int>(first.size()));
      if (fresh) first.push_back(static_cast<int>(i)), next.emplace_back(), known.push_back(0), stuck.push_back(0);
      of[i] = it->second;
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (nodes[i].open) continue;
      int w = of[i];
      known[w] = 1;
      stuck[w] |= nodes[i].next.empty();
      for (int to : nodes[i].next) next[w].insert(of[to]);
    }
  }
};

// The ways that lead to no state without moves (nor to one the search left
// unplayed), grouped by the moves between them and by the pages they go round.
std::vector<ExploreReport::Trap> Traps(const std::vector<Node>& nodes, const QuestGraph& graph) {
  Ways ways(nodes);
  std::size_t n = ways.first.size();
  std::vector<std::vector<int>> back(n);
  std::vector<int> queue;
  std::vector<char> escapes(n, 0);
  for (std::size_t w = 0; w < n; ++w) {
    for (int to : ways.next[w]) back[to].push_back(static_cast<int>(w));
    if (!ways.known[w] || ways.stuck[w]) escapes[w] = 1, queue.push_back(static_cast<int>(w));
  }
  for (std::size_t q = 0; q < queue.size(); ++q)
    for (int from : back[queue[q]])
      if (!escapes[from]) escapes[from] = 1, queue.push_back(from);
  std::vector<int> up(n);
  for (std::size_t w = 0; w < n; ++w) up[w] = static_cast<int>(w);
  for (std::size_t w = 0; w < n; ++w)
    if (!escapes[w])
      for (int to : ways.next[w]) up[Root(up, static_cast<int>(w))] = Root(up, to);
  // Ways are numbered in breadth-first order: a group's first has its shortest way in.
  std::map<int, ExploreReport::Trap> groups;
  std::map<int, std::set<int>> pages;
  std::vector<int> order;
  for (std::size_t w = 0; w < n; ++w) {
    if (escapes[w]) continue;
    int root = Root(up, static_cast<int>(w));
    auto [it, fresh] = groups.try_emplace(root);
    if (fresh) it->second.path = PathTo(nodes, ways.first[w]), order.push_back(root);
    ++it->second.states;
    pages[root].insert(graph.PageIndex(nodes[ways.first[w]].snap.pg));
  }
  // Groups that go round the same pages (with other items or scores) are one trap.
  std::vector<ExploreReport::Trap> traps;
  std::map<std::set<int>, std::size_t> byPages;
  for (int root : order) {
    auto [it, fresh] = byPages.try_emplace(pages[root], traps.size());
    if (!fresh) {
      traps[it->second].states += groups[root].states;
      continue;
    }
    ExploreReport::Trap trap = std::move(groups[root]);
    for (int page : pages[root])
      if (page >= 0) trap.pages.push_back(graph.pages[page].name);
    traps.push_back(std::move(trap));
  }
  return traps;
}

ExploreReport Search(Program& p, Tally& tally, const Snapshot& start, const ExploreOptions& o) {
  std::vector<Node> nodes{{start, -1, ""}};
  std::unordered_map<std::string, int> seen{{StateKey(start), 0}};
  bool bounded = false;
  std::size_t at = 0;
  for (; at < nodes.size() && !Stopped(o); ++at) {
    Snapshot here = nodes[at].snap;
    std::vector<Move> moves = MovesOf(p, here);
    tally.See(nodes, static_cast<int>(at), moves.empty());
    for (const Move& move : moves) {
      Snapshot next = Play(p, here, move);
      auto [it, fresh] = seen.try_emplace(StateKey(next), static_cast<int>(nodes.size()));
      if (!fresh) {
        nodes[at].next.push_back(it->second);
        continue;
      }
      if (nodes.size() >= o.maxStates) {
        seen.erase(it);
        bounded = true;
        nodes[at].open = true;
        continue;
      }
      nodes[at].next.push_back(static_cast<int>(nodes.size()));
      nodes.push_back({std::move(next), static_cast<int>(at), move.label, {}, false});
    }
    if (o.progress && at % 1000 == 999) o.progress(nodes.size(), o.maxStates);
  }
  for (; at < nodes.size(); ++at) nodes[at].open = true;  // a run stopped midway
  ExploreReport r = tally.Report();
  r.states = nodes.size();
  r.bounded = bounded;
  r.traps = Traps(nodes, tally.graph);
  return r;
}

ExploreReport RandomGames(Program& p, Tally& tally, const Snapshot& start, const ExploreOptions& o) {
  std::mt19937 dice(o.seed);
  std::unordered_map<std::string, int> seen;
  for (int game = 0; game < o.randomGames && !Stopped(o); ++game) {
    std::vector<Node> nodes{{start, -1, ""}};
    seen.try_emplace(StateKey(start), 0);
    for (std::size_t step = 0;; ++step) {
      int at = static_cast<int>(nodes.size()) - 1;
      std::vector<Move> moves = MovesOf(p, nodes[at].snap);
      tally.See(nodes, at, moves.empty());
      if (moves.empty() || step >= o.maxSteps) break;
      const Move& move = moves[std::uniform_int_distribution<std::size_t>(0, moves.size() - 1)(dice)];
      Snapshot next = Play(p, nodes[at].snap, move);
      seen.try_emplace(StateKey(next), 0);
      nodes.push_back({std::move(next), at, move.label});
    }
    if (o.progress && game % 100 == 99) o.progress(game + 1, static_cast<std::size_t>(o.randomGames));
  }
  ExploreReport r = tally.Report();
  r.states = seen.size();
  r.games = static_cast<std::size_t>(o.randomGames);
  return r;
}

}  // namespace

ExploreReport ExploreQuest(Program& p, std::string_view quest, const ExploreOptions& options) {
  std::shared_ptr<const ProfileImage> image = ReadINIImage(p, quest);
  QuestGraph graph = BuildQuestGraph(image ? image : MakeProfileImage(""));
  Tally tally{graph, {}, {}, {}, {}};
  // The file stands still while it is played, so one image serves the reads.
  ServeFromImage(p, quest);
  Snapshot start = Start(p, quest);
  ExploreReport report =
      options.randomGames > 0 ? RandomGames(p, tally, start, options) : Search(p, tally, start, options);
  Balance(p, tally, options, report);
  StopServingFromImage(p);
  return report;
}

std::string ExploreReportText(const ExploreReport& r) {
  auto list = [](const std::vector<std::string>& pages) {
    std::string out;
    for (const std::string& page : pages) out += (out.empty() ? "" : ", ") + Utf8FromCp1252(page);
    return out.empty() ? std::string("none") : out;
  };
  std::string out;
  if (r.games) out += "Random games: " + std::to_string(r.games) + ", ";
  out += "States: " + std::to_string(r.states) + (r.bounded ? " (bound reached: coverage is partial)" : "") + "\n";
  // A long list of pages reached says less than the few never reached.
  out += "Pages reached (" + std::to_string(r.reached.size()) + ")" +
         (r.reached.size() <= 50 ? ": " + list(r.reached) : std::string()) + "\n";
  out += "Pages never reached (" + std::to_string(r.neverReached.size()) + "): " + list(r.neverReached) + "\n";
  for (const ExploreReport::End& end : r.ends) {
    out += (end.deadEnd ? "Dead end at page " : "Ending at page ") + Utf8FromCp1252(end.page) + ": score " +
           std::to_string(end.minScore) +
           (end.maxScore != end.minScore ? " to " + std::to_string(end.maxScore) : std::string()) + "\n";
    out += "  shortest way:";
    if (end.path.empty()) out += " (the first page)";
    for (const std::string& step : end.path) out += "\n    " + Utf8FromCp1252(step);
    out += "\n";
  }
  for (const ExploreReport::Trap& trap : r.traps) {
    out += "Trap: " + std::to_string(trap.states) + (trap.states == 1 ? " state" : " states") +
           " from which no ending can be reached, going round pages " + list(trap.pages) + "\n";
    out += "  shortest way in:";
    if (trap.path.empty()) out += " (the first page)";
    for (const std::string& step : trap.path) out += "\n    " + Utf8FromCp1252(step);
    out += "\n";
  }
  for (const auto& [page, arrivals] : r.battles) {
    std::string monster;
    for (const FightOdds& odds : r.balance)
      if (odds.page == page) monster = " (" + Utf8FromCp1252(odds.monster) + ")";
    out += "Battle at page " + Utf8FromCp1252(page) + monster + ": met " +
           (r.games ? std::to_string(arrivals) + " times" : "in " + std::to_string(arrivals) + " states") + "\n";
    for (const FightOdds& odds : r.balance)
      if (odds.page == page) out += "  " + FightOddsText(odds) + "\n";
  }
  return out;
}

}  // namespace fw
