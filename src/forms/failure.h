#pragma once
#include <stdexcept>
#include <string>

namespace fw {

// The failure of one of the operations that the logic lets fail: a value
// conversion, LoadPicture, FileCopy, MkDir, Kill, Shell, ChDir, a ProgressBar
// value out of range, a text the scrambler cannot shift. Nothing else throws it,
// so a skip-on-error statement swallows exactly these and nothing more.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace fw
