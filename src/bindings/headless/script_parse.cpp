#include "bindings/headless/script_parse.h"

#include <cstdlib>

#include "bindings/headless/headless_services.h"

namespace fw {

std::vector<std::string_view> ScriptLines(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    std::size_t end = text.find_first_of("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    std::size_t next = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    text.remove_prefix(next);
  }
  return lines;
}

std::string SubstituteEnvironment(std::string_view line) {
  std::string out;
  std::size_t i = 0;
  while (i < line.size()) {
    std::size_t open = line.find("${", i);
    std::size_t close = open == std::string_view::npos ? open : line.find('}', open + 2);
    if (close == std::string_view::npos) {
      out.append(line.substr(i));
      break;
    }
    out.append(line.substr(i, open - i));
    std::string name(line.substr(open + 2, close - open - 2));
    if (const char* value = std::getenv(name.c_str())) out += value;
    i = close + 1;
  }
  return out;
}

std::vector<std::string> SplitWords(std::string_view line) {
  std::vector<std::string> words;
  std::size_t i = 0;
  while (true) {
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i >= line.size()) break;
    std::string word;
    if (line[i] != '"') {
      while (i < line.size() && line[i] != ' ' && line[i] != '\t') word += line[i++];
      words.push_back(std::move(word));
      continue;
    }
    ++i;
    bool closed = false;
    while (i < line.size()) {
      char c = line[i++];
      if (c == '"') {
        closed = true;
        break;
      }
      if (c != '\\') {
        word += c;
        continue;
      }
      if (i >= line.size()) break;
      switch (char e = line[i++]) {
        case '"': word += '"'; break;
        case '\\': word += '\\'; break;
        case 'r': word += '\r'; break;
        case 'n': word += '\n'; break;
        case 't': word += '\t'; break;
        default: throw ScriptError(std::string("unknown escape \\") + e);
      }
    }
    if (!closed) throw ScriptError("a quoted word has no closing quote");
    words.push_back(std::move(word));
  }
  return words;
}

std::optional<TargetName> ParseTarget(std::string_view text) {
  TargetName t;
  std::size_t first = text.find('.');
  if (first == std::string_view::npos || first == 0) return std::nullopt;
  t.form = text.substr(0, first);
  std::string_view rest = text.substr(first + 1);
  std::size_t second = rest.find('.');
  if (second == std::string_view::npos) {
    t.property = rest;
  } else {
    t.control = rest.substr(0, second);
    t.property = rest.substr(second + 1);
    if (t.control.empty()) return std::nullopt;
  }
  if (t.property.starts_with("List(") && t.property.ends_with(")")) {
    std::string digits = t.property.substr(5, t.property.size() - 6);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    t.index = std::atoi(digits.c_str());
    t.property = "List";
  }
  if (t.property.empty() || t.property.find('.') != std::string::npos) return std::nullopt;
  return t;
}

}  // namespace fw
