#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace fw {

// A profile file's text with its sections found once: a read goes straight
// to the first section of its name and searches only that section's lines,
// so it gives what FindProfileValue gives on the whole text at the cost of
// one page. It holds the text and a few words per section, so a long quest
// costs little more than its own size.
class ProfileIndex {
 public:
  explicit ProfileIndex(std::string text);
  ProfileIndex(const ProfileIndex&) = delete;
  ProfileIndex& operator=(const ProfileIndex&) = delete;

  // As FindProfileValue on the text.
  std::string_view Value(std::string_view section, std::string_view key) const;

  const std::string& text() const { return text_; }
  // The bytes it holds, text and index together.
  std::size_t MemoryBytes() const;

 private:
  // A section from its header line's first byte to the next header's.
  struct Span {
    std::size_t begin, end;
  };

  std::string text_;
  std::vector<Span> spans_;
  std::unordered_map<std::string, std::size_t> first_;  // folded name -> first span of that name
};

}  // namespace fw
