// Fuzzes the profile reader and writer on arbitrary bytes. The first bytes
// choose a section, a key and a value (the very first also the size of the
// blocks a read takes the file in); the rest is the file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "store/profile.h"

namespace {

// Takes a field of up to 255 bytes, its length first.
std::string_view Take(std::string_view& in) {
  if (in.empty()) return {};
  std::size_t n = std::min<std::size_t>(static_cast<unsigned char>(in[0]), in.size() - 1);
  std::string_view field = in.substr(1, n);
  in.remove_prefix(1 + n);
  return field;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; }

// A name or value the grammar gives back unchanged: one line, no blanks at
// its ends, and none of the characters that make a line something else.
bool Plain(std::string_view s, std::string_view forbidden) {
  if (s.empty() || IsBlank(s.front()) || IsBlank(s.back())) return false;
  return s.find_first_of(forbidden) == std::string_view::npos;
}

// The store's read, which stops at the value's line and lets go of the
// lines it has searched, given the text in blocks of `block` bytes as a file
// read gives it: the same value as a search of the whole text.
void CheckSeekInBlocks(std::string_view text, std::string_view section, std::string_view key, std::size_t block) {
  fw::ProfileSeek seek(section, key);
  std::size_t from = 0, got = 0;
  bool known = false;
  while (!known && got < text.size()) {
    got = std::min(text.size(), got + block);
    known = seek.Look(text.substr(from, got - from), false);
    from += known ? 0 : seek.letGo();
  }
  if (!known) seek.Look(text.substr(from), true);
  if (seek.value() != fw::FindProfileValue(text, section, key)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view in(reinterpret_cast<const char*>(data), size);
  std::size_t block = in.empty() ? 1 : static_cast<unsigned char>(in[0]) % 16 + 1;
  std::string_view section = Take(in), key = Take(in), value = Take(in), text = in;
  if (fw::FindProfileValue(text, section, key).size() > fw::kMaxValueLength) std::abort();
  CheckSeekInBlocks(text, section, key, block);
  // A read served from the file's image gives what a read of the file gives.
  if (fw::ProfileIndex(std::string(text)).Value(section, key) != fw::FindProfileValue(text, section, key)) std::abort();
  std::string written = fw::SetProfileValue(text, section, key, value);
  bool plainValue = value.empty() || (Plain(value, std::string_view("\r\n", 2)) &&
                                      !(value.size() > 1 && (value[0] == '"' || value[0] == '\'') &&
                                        value.back() == value[0]));
  if (Plain(section, "\r\n]") && Plain(key, "\r\n=") && key[0] != ';' && key[0] != '[' && plainValue &&
      fw::FindProfileValue(written, section, key) != value)
    std::abort();
  // A section taken out is gone for every read; entries of any text read as reads do.
  std::string removed = fw::RemoveProfileSection(written, section);
  if (!section.empty() && !fw::FindProfileValue(removed, section, key).empty()) std::abort();
  for (const fw::ProfileEntry& entry : fw::ProfileEntries(text))
    if (entry.value.size() > fw::kMaxValueLength) std::abort();
  return 0;
}
