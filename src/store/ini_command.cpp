#include "store/ini_command.h"

#include <optional>

#include "forms/codepage.h"
#include "forms/failure.h"
#include "forms/paths.h"
#include "store/profile.h"
#include "store/scrambler.h"

namespace fw {

int RunIniCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  bool scrambled = false;
  std::string home;
  std::vector<std::string> words;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--scrambled") {
      scrambled = true;
    } else if (args[i] == "--home" && i + 1 < args.size()) {
      home = args[++i];
    } else if (args[i].starts_with("--")) {
      err << "fablewright ini: unknown option " << args[i] << "\n";
      return 2;
    } else {
      words.push_back(Cp1252FromUtf8(args[i]));
    }
  }
  bool get = !words.empty() && words[0] == "get" && words.size() == 4;
  bool set = !words.empty() && words[0] == "set" && words.size() == 5;
  if (!get && !set) {
    err << "fablewright ini: usage: ini get FILE SECTION KEY | ini set FILE SECTION KEY VALUE\n";
    return 2;
  }
  QuestStore store(home.empty() ? DefaultUserDir() : home);
  try {
    if (get) {
      std::optional<std::string> value = store.TryReadINI(words[1], words[2], words[3]);
      if (!value) {
        err << "fablewright ini: cannot read " << Utf8FromCp1252(words[1]) << "\n";
        return 1;
      }
      out << Utf8FromCp1252(scrambled ? Decode(*value) : *value) << "\n";
    } else {
      std::string value = scrambled ? Encode(words[4]) : words[4];
      const QuestStore::Entry entry{words[2], words[3], value};
      if (!store.WriteINIKeys(words[1], {&entry, 1})) {
        err << "fablewright ini: cannot write " << Utf8FromCp1252(words[1]) << "\n";
        return 1;
      }
    }
  } catch (const Failure&) {
    err << "fablewright ini: the text holds a character that cannot be "
        << (get ? "unscrambled" : "scrambled") << "; nothing was " << (get ? "read" : "written") << "\n";
    return 1;
  }
  return 0;
}

}  // namespace fw
