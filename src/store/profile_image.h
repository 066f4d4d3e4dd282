#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace fw {

// A whole profile file read once and indexed, for tools that look at every
// key of a quest: a value read here is the value ReadINI gives for the same
// file, section and key, without a pass over the file for each read.
class ProfileImage {
 public:
  explicit ProfileImage(std::string text);
  ProfileImage(const ProfileImage&) = delete;
  ProfileImage& operator=(const ProfileImage&) = delete;

  // As FindProfileValue on the text: "" when the section or key is missing.
  std::string_view Value(std::string_view section, std::string_view key) const;

  struct Key {
    std::string_view name, value;
    std::size_t line;  // 1-based
  };
  // A line inside a section that is neither a key, a comment nor blank: the
  // tail of a value that was written with a line break in it.
  struct Stray {
    std::string_view text;
    std::size_t line;
    std::string_view afterKey;  // the key line it follows, "" when none
  };
  struct Section {
    std::string_view name;  // as its header writes it, up to the first "]"
    std::size_t line;
    std::vector<Key> keys;  // in file order, repeats included
    std::vector<Stray> strays;
  };
  // Every section in file order, a repeated name included (reads go to the
  // first one).
  const std::vector<Section>& Sections() const { return sections_; }

  // The section a read of `name` lands in, or null.
  const Section* Find(std::string_view name) const;

 private:
  void Index();

  std::string text_;
  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t> first_;  // folded name -> first section of that name
};

// The image of a profile file's text (as QuestStore reads it from disk).
std::shared_ptr<const ProfileImage> MakeProfileImage(std::string text);

}  // namespace fw
