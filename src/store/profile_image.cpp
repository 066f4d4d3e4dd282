#include "store/profile_image.h"

#include "store/profile.h"
#include "store/profile_grammar.h"

namespace fw {
namespace {

using namespace profile_grammar;

// A header's name: behind its "[", up to the first "]" or the line's end.
std::string_view HeaderName(std::string_view line) {
  std::string_view rest = line.substr(line.find('[') + 1);
  return Trim(rest.substr(0, rest.find(']')));
}

// A name a header can only match as FindProfileValue matches it, not by the
// index: one with a "]" or line break inside, or blanks at an end.
bool PlainName(std::string_view name) {
  return name.find_first_of("]\r\n") == std::string_view::npos && Trim(name).size() == name.size();
}

}  // namespace

ProfileImage::ProfileImage(std::string text) : text_(std::move(text)) { Index(); }

void ProfileImage::Index() {
  std::string_view t = text_;
  if (t.starts_with(kBom)) t.remove_prefix(kBom.size());
  std::size_t number = 0;
  for (std::size_t pos = 0; pos < t.size();) {
    Line line = LineAt(t, pos);
    ++number;
    pos = line.next;
    std::string_view text = t.substr(line.begin, line.end - line.begin);
    char lead = Lead(text);
    if (lead == '[') {
      sections_.push_back({HeaderName(text), number, {}, {}});
      first_.try_emplace(Folded(sections_.back().name), sections_.size() - 1);
      continue;
    }
    if (sections_.empty() || lead == 0) continue;
    Section& section = sections_.back();
    std::string_view key;
    if (KeyOfLine(text, key)) section.keys.push_back({key, ValueOfLine(text, kMaxValueLength), number});
    else if (lead != ';') section.strays.push_back({text, number, section.keys.empty() ? "" : section.keys.back().name});
  }
}

const ProfileImage::Section* ProfileImage::Find(std::string_view name) const {
  auto it = first_.find(Folded(name));
  return it == first_.end() ? nullptr : &sections_[it->second];
}

std::string_view ProfileImage::Value(std::string_view section, std::string_view key) const {
  if (section.empty() || key.empty()) return {};
  if (!PlainName(section)) return FindProfileValue(text_, section, key);
  const Section* s = Find(section);
  if (!s) return {};
  for (const Key& k : s->keys)
    if (SameNoCase(k.name, key)) return k.value;
  return {};
}

std::shared_ptr<const ProfileImage> MakeProfileImage(std::string text) {
  return std::make_shared<const ProfileImage>(std::move(text));
}

}  // namespace fw
