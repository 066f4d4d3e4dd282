#include "play/transcript.h"

#include <string>

#include "play/game_state.h"

namespace fw {

void AppendLine(const GameState& g, std::string_view text) {
  g.Text1.SetText(g.Text1.Text() + std::string(text) + "\r\n");
}

void AppendBlock(const GameState& g, std::string_view text) {
  g.Text1.SetText(g.Text1.Text() + "\r\n>\r\n" + std::string(text));
}

}  // namespace fw
