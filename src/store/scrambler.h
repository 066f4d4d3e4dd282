#pragma once
#include <string>
#include <string_view>

namespace fw {

// The shift that keeps a casual reader from editing saved numbers: every
// character's code moves by 4, with no wrap. A code that would leave 0..255, or
// a text over 32,767 characters, throws Failure and returns nothing.
std::string Encode(std::string_view text);
std::string Decode(std::string_view text);

}  // namespace fw
