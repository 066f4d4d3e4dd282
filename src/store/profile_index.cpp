#include "store/profile_index.h"

#include <cstring>

#include "store/profile.h"
#include "store/profile_grammar.h"

namespace fw {
namespace {

using namespace profile_grammar;

// A name that a header can match only as FindProfileValue matches it, not
// by the index: one with a "]" or a line break inside, or blanks at an end.
bool PlainName(std::string_view name) {
  return name.find_first_of("]\r\n") == std::string_view::npos && Trim(name).size() == name.size();
}

// The start of the line the byte at `at` stands in, when only blanks stand
// before it on that line; npos otherwise.
std::size_t LineStartBefore(std::string_view t, std::size_t at) {
  std::size_t start = at;
  while (start > 0 && IsBlank(t[start - 1])) --start;
  bool first = start == 0 || t[start - 1] == '\n' || t[start - 1] == '\r';
  return first ? start : std::string_view::npos;
}

}  // namespace

ProfileIndex::ProfileIndex(std::string text) : text_(std::move(text)) {
  std::string_view t = text_;
  std::size_t skip = t.starts_with(kBom) ? kBom.size() : 0;
  t.remove_prefix(skip);
  // Headers are found as FindProfileValue finds them: a "[" first on its line.
  for (std::size_t pos = 0; pos < t.size();) {
    const void* hit = std::memchr(t.data() + pos, '[', t.size() - pos);
    if (!hit) break;
    std::size_t at = static_cast<const char*>(hit) - t.data();
    pos = at + 1;
    std::size_t start = LineStartBefore(t, at);
    if (start == std::string_view::npos) continue;
    Line line = LineAt(t, start);
    std::string_view rest = t.substr(at + 1, line.end - at - 1);
    std::string_view name = Trim(rest.substr(0, rest.find(']')));
    if (!spans_.empty()) spans_.back().end = skip + start;
    spans_.push_back({skip + start, text_.size()});
    first_.try_emplace(Folded(name), spans_.size() - 1);
    pos = line.next;
  }
}

std::string_view ProfileIndex::Value(std::string_view section, std::string_view key) const {
  if (section.empty() || key.empty()) return {};
  if (!PlainName(section)) return FindProfileValue(text_, section, key);
  auto it = first_.find(Folded(section));
  if (it == first_.end()) return {};
  const Span& s = spans_[it->second];
  return FindProfileValue(std::string_view(text_).substr(s.begin, s.end - s.begin), section, key);
}

std::size_t ProfileIndex::MemoryBytes() const {
  std::size_t bytes = sizeof(*this) + text_.capacity() + spans_.capacity() * sizeof(Span);
  // A node of the map: the name (held apart when longer than a short string), the number, the links.
  for (const auto& [name, _] : first_) bytes += sizeof(std::string) + 3 * sizeof(void*) + (name.size() > 15 ? name.size() + 1 : 0);
  return bytes + first_.bucket_count() * sizeof(void*);
}

}  // namespace fw
