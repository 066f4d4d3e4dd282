// The profile grammar on a file's bytes: finding a value and writing one.
#include <cstring>

#include "store/profile.h"
#include "store/profile_grammar.h"

namespace fw {
namespace {

using namespace profile_grammar;

// True when a header's name, from `at` (just behind its "["), is the section:
// the name runs to the first "]" or the line's end, blanks trimmed.
bool HeaderNames(std::string_view t, std::size_t at, std::string_view section) {
  while (at < t.size() && IsBlank(t[at])) ++at;
  if (t.size() - at < section.size() || !SameNoCase(t.substr(at, section.size()), section)) return false;
  at += section.size();
  while (at < t.size() && IsBlank(t[at])) ++at;
  return at == t.size() || t[at] == ']' || t[at] == '\r' || t[at] == '\n';
}

// Where the lines of the first section with that name begin, or npos. Only
// a "[" that stands first on its line can open a section, so the scan jumps
// from one "[" to the next and looks no further than the name.
std::size_t FindSection(std::string_view t, std::string_view section, std::size_t pos = 0) {
  while (pos < t.size()) {
    const void* hit = std::memchr(t.data() + pos, '[', t.size() - pos);
    if (!hit) return std::string_view::npos;
    std::size_t at = static_cast<const char*>(hit) - t.data();
    std::size_t start = at;
    while (start > 0 && IsBlank(t[start - 1])) --start;
    bool firstOnLine = start == 0 || t[start - 1] == '\n' || t[start - 1] == '\r';
    if (firstOnLine && HeaderNames(t, at + 1, section)) return LineAt(t, start).next;
    pos = at + 1;
  }
  return std::string_view::npos;
}

// A key line of the section that starts at `from`: the key line found, or
// the end of the section (a line whose begin is the next header or the end).
struct KeyHit {
  bool found = false;
  Line line{};
  std::size_t keyBegin = 0, keyEnd = 0;  // the stored key, trimmed
  std::size_t afterLastText = 0;         // behind the section's last non-blank line
  bool atHeader = false;                 // the scan stopped at the next header
};

KeyHit FindKey(std::string_view t, std::size_t from, std::string_view key) {
  KeyHit hit;
  hit.afterLastText = from;
  for (std::size_t pos = from; pos < t.size();) {
    Line line = LineAt(t, pos);
    std::string_view text = t.substr(line.begin, line.end - line.begin);
    char lead = Lead(text);
    if (lead == '[') {
      hit.atHeader = true;
      break;
    }
    if (lead != 0) hit.afterLastText = line.next;
    std::string_view stored;
    if (KeyOfLine(text, stored)) {
      if (SameNoCase(stored, key)) {
        hit.found = true;
        hit.line = line;
        hit.keyBegin = line.begin + (stored.data() - text.data());
        hit.keyEnd = hit.keyBegin + stored.size();
        return hit;
      }
    }
    pos = line.next;
  }
  return hit;
}

// The line end a file already uses; CR LF for a new one.
std::string_view LineEnd(std::string_view t) {
  std::size_t at = t.find_first_of("\r\n");
  if (at == std::string_view::npos) return "\r\n";
  if (t[at] == '\n') return "\n";
  return at + 1 < t.size() && t[at + 1] == '\n' ? "\r\n" : "\r";
}

bool EndsWithLineEnd(std::string_view t) { return !t.empty() && (t.back() == '\n' || t.back() == '\r'); }

bool HasLineBreak(std::string_view s) { return s.find_first_of("\r\n") != std::string_view::npos; }

// How much of a text that is still arriving is whole lines: up to its last
// line end, where a CR at the very end might yet be the first half of a CR LF.
std::size_t SettledSize(std::string_view t) {
  if (t.empty() || t.back() == '\n') return t.size();
  if (t.size() < 2) return 0;
  std::size_t last = t.find_last_of("\r\n", t.size() - 2);
  return last == std::string_view::npos ? 0 : last + 1;
}

}  // namespace

ProfileSeek::ProfileSeek(std::string_view section, std::string_view key) : section_(section), key_(key) {
  if (section_.empty() || key_.empty()) done_ = true;
}

bool ProfileSeek::Finish(std::string_view value) {
  value_ = value;
  done_ = true;
  return true;
}

bool ProfileSeek::Look(std::string_view text, bool atEnd) {
  letGo_ = 0;
  if (done_) return true;
  // A name holding a line break can match across lines: it waits for the whole text.
  if (!atEnd && (HasLineBreak(section_) || HasLineBreak(key_))) return false;
  std::size_t settled = atEnd ? text.size() : SettledSize(text);
  std::size_t bom = 0;
  if (atFileStart_) {
    if (settled < kBom.size() && !atEnd) return false;
    bom = text.starts_with(kBom) ? kBom.size() : 0;
  }
  std::string_view body = text.substr(bom, settled - std::min(settled, bom));
  std::size_t pos = 0;
  if (!inSection_) {
    pos = FindSection(body, section_, 0);
    if (pos == std::string_view::npos) return atEnd ? Finish({}) : LetGo(settled);
    inSection_ = true;
  }
  KeyHit hit = FindKey(body, pos, key_);
  if (hit.found)
    return Finish(ValueOfLine(body.substr(hit.line.begin, hit.line.end - hit.line.begin), kMaxValueLength));
  if (hit.atHeader || atEnd) return Finish({});
  return LetGo(settled);
}

bool ProfileSeek::LetGo(std::size_t searched) {
  // The next text starts at a line's start, where a header may open.
  letGo_ = searched;
  if (searched > 0) atFileStart_ = false;
  return false;
}

std::string_view FindProfileValue(std::string_view text, std::string_view section, std::string_view key) {
  ProfileSeek seek(section, key);
  seek.Look(text, true);
  return seek.value();
}

bool SetProfileValueIn(std::string& text, std::string_view section, std::string_view key, std::string_view value) {
  if (section.empty() || key.empty()) return false;
  std::size_t bom = std::string_view(text).starts_with(kBom) ? kBom.size() : 0;
  std::string_view body = std::string_view(text).substr(bom);
  std::string eol(LineEnd(body));
  std::size_t from = FindSection(body, section);
  if (from == std::string_view::npos) {
    if (!text.empty() && !EndsWithLineEnd(text) && text.size() > bom) text += eol;
    text.append("[").append(section).append("]").append(eol);
    text.append(key).append("=").append(value).append(eol);
    return true;
  }
  KeyHit hit = FindKey(body, from, key);
  bool changed = true;
  if (hit.found) {
    std::string line(body.substr(hit.keyBegin, hit.keyEnd - hit.keyBegin));
    line.append("=").append(value);
    changed = body.substr(hit.keyBegin, hit.line.end - hit.keyBegin) != line;
    if (changed) text.replace(bom + hit.keyBegin, hit.line.end - hit.keyBegin, line);
  } else {
    std::size_t at = bom + hit.afterLastText;
    std::string entry = std::string(key) + "=" + std::string(value) + eol;
    if (at == text.size() && !EndsWithLineEnd(text)) entry = eol + entry;
    text.insert(at, entry);
  }
  if (!EndsWithLineEnd(text)) {
    text += eol;
    changed = true;
  }
  return changed;
}

std::string SetProfileValue(std::string_view text, std::string_view section, std::string_view key,
                            std::string_view value) {
  std::string out(text);
  SetProfileValueIn(out, section, key, value);
  return out;
}

namespace {

// The "[" that opens a header line, or npos for any other line.
std::size_t HeaderBracket(std::string_view t, const Line& line) {
  std::size_t at = line.begin;
  while (at < line.end && IsBlank(t[at])) ++at;
  return at < line.end && t[at] == '[' ? at : std::string_view::npos;
}

// A value as a read gives it: blanks trimmed, one pair of quotes taken off.
std::string_view ReadValue(std::string_view raw) {
  std::string_view value = Trim(raw);
  if (value.size() > 1 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
    value = value.substr(1, value.size() - 2);
  return value.substr(0, kMaxValueLength);
}

}  // namespace

std::string RemoveProfileSection(std::string_view text, std::string_view section) {
  if (section.empty()) return std::string(text);
  std::string out(text.starts_with(kBom) ? kBom : "");
  text.remove_prefix(out.size());
  out.reserve(text.size() + out.size());
  bool dropping = false;
  for (std::size_t pos = 0; pos < text.size();) {
    Line line = LineAt(text, pos);
    std::size_t bracket = HeaderBracket(text, line);
    // A name may run past its line, as a read matches it.
    if (bracket != std::string_view::npos) dropping = HeaderNames(text, bracket + 1, section);
    if (!dropping) out.append(text.substr(line.begin, line.next - line.begin));
    pos = line.next;
  }
  return out;
}

std::vector<ProfileEntry> ProfileEntries(std::string_view text) {
  std::vector<ProfileEntry> entries;
  if (text.starts_with(kBom)) text.remove_prefix(kBom.size());
  std::string section;
  bool inSection = false;
  for (std::size_t pos = 0; pos < text.size();) {
    Line line = LineAt(text, pos);
    pos = line.next;
    std::string_view content = text.substr(line.begin, line.end - line.begin);
    std::size_t bracket = HeaderBracket(text, line);
    if (bracket != std::string_view::npos) {
      std::string_view name = text.substr(bracket + 1, line.end - bracket - 1);
      section = Trim(name.substr(0, name.find(']')));
      inSection = true;
      continue;
    }
    std::size_t eq = content.find('=');
    if (!inSection || Lead(content) == ';' || Lead(content) == 0 || eq == std::string_view::npos) continue;
    entries.push_back({section, std::string(Trim(content.substr(0, eq))), std::string(ReadValue(content.substr(eq + 1)))});
  }
  return entries;
}

}  // namespace fw
