// The editor's hover help: a field tells what it is for in info as the
// mouse moves over it, and info keeps the last text.
#include <vector>

#include "editor/createquest.h"
#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

constexpr const char* kOptionText = "The text for an option or choice the user get's in the story";
constexpr const char* kDestination =
    "The destination page for the option once clicked. Leave blank if no option is given.";
constexpr const char* kScore = "The score change the person get's for that choice. Example: +2 or -2";
constexpr const char* kKeyItem = "This Key Item is linked to this option.";
constexpr const char* kAdds = "When checked, the key item is added to the users inventory when they make this choice.";
constexpr const char* kRequires = "When checked, the key item is required for this option to be available.";
constexpr const char* kPlay = "Play File.";
constexpr const char* kStop = "Stop File.";

void ShowHelp(Program& p, const char* text) { Label(p.surface(), "createquest", "info").SetCaption(text); }

#define FW_HELP(CONTROL, TEXT) \
  void CONTROL##_MouseMove(Program& p) { ShowHelp(p, TEXT); }
FW_HELP(pg, "This is the page you are working on.")
FW_HELP(Text13, "Specific page number to add. If not specified a page is added in increments.")
FW_HELP(Command1, "Click to add a new page")
FW_HELP(Command2, "Click to delete the selected page")
FW_HELP(Text1, "The text for the page. Don't make it too long!")
FW_HELP(Text2, kOptionText) FW_HELP(Text3, kOptionText) FW_HELP(Text4, kOptionText) FW_HELP(Text5, kOptionText)
FW_HELP(Text6, kDestination) FW_HELP(Text7, kDestination) FW_HELP(Text8, kDestination) FW_HELP(Text9, kDestination)
FW_HELP(Text14, kScore) FW_HELP(Text15, kScore) FW_HELP(Text16, kScore) FW_HELP(Text17, kScore)
FW_HELP(Text21, kKeyItem) FW_HELP(Text22, kKeyItem) FW_HELP(Text23, kKeyItem) FW_HELP(Text24, kKeyItem)
FW_HELP(Check1, kAdds) FW_HELP(Check2, kAdds) FW_HELP(Check3, kAdds) FW_HELP(Check4, kAdds)
FW_HELP(Check5, kRequires) FW_HELP(Check6, kRequires) FW_HELP(Check7, kRequires) FW_HELP(Check8, kRequires)
FW_HELP(Text10, "Title of the story.")
FW_HELP(Text11, "Author of the story.")
FW_HELP(Text12, "Version of the story.")
FW_HELP(Text18, "MiDi file to play on this page.")
FW_HELP(Text19, "The room or place the character is currently in.")
FW_HELP(Text20, "Image to display on this page. 150 X 375 Max display area.")
FW_HELP(Text25, "Movie to play on this page.")
FW_HELP(Text26, "MP3 to play on this page.")
FW_HELP(Command4, kPlay) FW_HELP(Command11, kPlay)
FW_HELP(Command5, kStop) FW_HELP(Command12, kStop)
FW_HELP(filepath, "The file path and file name of the quest file. If blank the file was not saved.")
#undef FW_HELP

#define FW_MOVE(CONTROL) {#CONTROL, Event::MouseMove, CONTROL##_MouseMove}
constexpr HandlerDecl kHandlers[] = {
    FW_MOVE(pg),      FW_MOVE(Text13),  FW_MOVE(Command1), FW_MOVE(Command2), FW_MOVE(Text1),
    FW_MOVE(Text2),   FW_MOVE(Text3),   FW_MOVE(Text4),    FW_MOVE(Text5),    FW_MOVE(Text6),
    FW_MOVE(Text7),   FW_MOVE(Text8),   FW_MOVE(Text9),    FW_MOVE(Text14),   FW_MOVE(Text15),
    FW_MOVE(Text16),  FW_MOVE(Text17),  FW_MOVE(Text21),   FW_MOVE(Text22),   FW_MOVE(Text23),
    FW_MOVE(Text24),  FW_MOVE(Check1),  FW_MOVE(Check2),   FW_MOVE(Check3),   FW_MOVE(Check4),
    FW_MOVE(Check5),  FW_MOVE(Check6),  FW_MOVE(Check7),   FW_MOVE(Check8),   FW_MOVE(Text10),
    FW_MOVE(Text11),  FW_MOVE(Text12),  FW_MOVE(Text18),   FW_MOVE(Text19),   FW_MOVE(Text20),
    FW_MOVE(Text25),  FW_MOVE(Text26),  FW_MOVE(Command4), FW_MOVE(Command11), FW_MOVE(Command5),
    FW_MOVE(Command12), FW_MOVE(filepath),
};
#undef FW_MOVE

}  // namespace

std::span<const HandlerDecl> createquest::FieldHelpHandlers() { return kHandlers; }

}  // namespace fw
