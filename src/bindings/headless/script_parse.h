#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fw {

// The lines of a script's text: a UTF-8 byte-order mark at the start is
// dropped, and CR LF, LF and a lone CR each end a line.
std::vector<std::string_view> ScriptLines(std::string_view text);

// Replaces each ${NAME} with the environment variable NAME ("" when unset).
std::string SubstituteEnvironment(std::string_view line);

// Splits a command line into words: blanks separate them, a word in double
// quotes may hold blanks and the escapes \" \\ \r \n \t. Throws ScriptError
// on an unterminated quote or an unknown escape.
std::vector<std::string> SplitWords(std::string_view line);

// A property named in a script: FORM.PROPERTY, FORM.CONTROL.PROPERTY or
// FORM.CONTROL.List(i).
struct TargetName {
  std::string form, control, property;
  int index = 0;  // for List(i)
};

// Parses a target; nullopt when it has not one of those shapes.
std::optional<TargetName> ParseTarget(std::string_view text);

}  // namespace fw
