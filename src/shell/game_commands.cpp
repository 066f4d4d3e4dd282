#include "shell/game_commands.h"

#include "forms/program.h"
#include "forms/user_actions.h"
#include "play/undo.h"

namespace fw {

const GameCommand* FindGameCommand(std::string_view word) {
  for (const GameCommand& c : kGameCommands)
    if (word == c.word) return &c;
  return nullptr;
}

std::string RunGameCommand(Program& p, const GameCommand& command, std::string_view file) {
  FormSurface& s = p.surface();
  ControlId id = s.Id("FrmGame", command.control);
  if (std::string_view(command.control) == "mnuundo") {
    if (std::string why = WhyNoUndo(p); !why.empty()) return why;
  }
  if (command.dialog && !file.empty()) p.AnswerNextFileDialog(s.Id("FrmGame", command.dialog), std::string(file));
  if (!Act(p, id, UserAction::Click).empty()) return "That is not possible here.";
  return "";
}

}  // namespace fw
