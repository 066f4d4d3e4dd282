#include "editor/createquest.h"

#include <iterator>
#include <vector>

#include "editor/author_menu.h"
#include "editor/editor_state.h"
#include "editor/page_fields.h"
#include "forms/program.h"

namespace fw {

EditorState::EditorState(Program& p)
    : pg(p.surface(), "createquest", "pg"),
      filepath(p.surface(), "createquest", "filepath"),
      questfile(p.surface(), "createquest", "questfile"),
      Text13(p.surface(), "createquest", "Text13"),
      Check9(p.surface(), "createquest", "Check9"),
      Command7(p.surface(), "createquest", "Command7") {}

namespace {

using namespace createquest;

// The write-through handlers: each field writes its own key.
#define FW_TEXT_CHANGE(N) \
  void Text##N##_Change(Program& p) { WriteField(p, "Text" #N); }
#define FW_CHECK_CLICK(N) \
  void Check##N##_Click(Program& p) { WriteField(p, "Check" #N); }
FW_TEXT_CHANGE(1) FW_TEXT_CHANGE(2) FW_TEXT_CHANGE(3) FW_TEXT_CHANGE(4) FW_TEXT_CHANGE(5) FW_TEXT_CHANGE(6)
FW_TEXT_CHANGE(7) FW_TEXT_CHANGE(8) FW_TEXT_CHANGE(9) FW_TEXT_CHANGE(10) FW_TEXT_CHANGE(11) FW_TEXT_CHANGE(12)
FW_TEXT_CHANGE(14) FW_TEXT_CHANGE(15) FW_TEXT_CHANGE(16) FW_TEXT_CHANGE(17) FW_TEXT_CHANGE(18)
FW_TEXT_CHANGE(19) FW_TEXT_CHANGE(20) FW_TEXT_CHANGE(21) FW_TEXT_CHANGE(22) FW_TEXT_CHANGE(23)
FW_TEXT_CHANGE(24) FW_TEXT_CHANGE(25) FW_TEXT_CHANGE(26)
FW_CHECK_CLICK(1) FW_CHECK_CLICK(2) FW_CHECK_CLICK(3) FW_CHECK_CLICK(4) FW_CHECK_CLICK(5) FW_CHECK_CLICK(6)
FW_CHECK_CLICK(7) FW_CHECK_CLICK(8) FW_CHECK_CLICK(9) FW_CHECK_CLICK(10) FW_CHECK_CLICK(11)
#undef FW_TEXT_CHANGE
#undef FW_CHECK_CLICK

#define FW_TEXT(N) {"Text" #N, Event::Change, Text##N##_Change}
#define FW_CHECK(N) {"Check" #N, Event::Click, Check##N##_Click}
constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    {"Form", Event::QueryUnload, Form_QueryUnload},
    {"mnunew", Event::Click, mnunew_Click},
    {"mnuloadquest", Event::Click, mnuloadquest_Click},
    {"mnusave", Event::Click, mnusave_Click},
    {"mnuexit", Event::Click, mnuexit_Click},
    {"mnucompile", Event::Click, mnucompile_Click},
    {"mnuquestmap", Event::Click, mnuquestmap_Click},
    {"mnucheckquest", Event::Click, mnucheckquest_Click},
    {"mnuexplorequest", Event::Click, mnuexplorequest_Click},
    {"mnutestfrompage", Event::Click, mnutestfrompage_Click},
    {"mnuundoswitch", Event::Click, mnuundoswitch_Click},
    {"pg", Event::Click, pg_Click},
    {"Command1", Event::Click, Command1_Click},
    {"Command2", Event::Click, Command2_Click},
    {"Timer1", Event::Timer, Timer1_Timer},
    {"Command3", Event::Click, Command3_Click},
    {"Command4", Event::Click, Command4_Click},
    {"Command5", Event::Click, Command5_Click},
    {"Command6", Event::Click, Command6_Click},
    {"Command7", Event::Click, Command7_Click},
    {"Command8", Event::Click, Command8_Click},
    {"Command9", Event::Click, Command9_Click},
    {"Command10", Event::Click, Command10_Click},
    {"Command11", Event::Click, Command11_Click},
    {"Command12", Event::Click, Command12_Click},
    {"Command13", Event::Click, Command13_Click},
    FW_TEXT(1), FW_TEXT(2), FW_TEXT(3), FW_TEXT(4), FW_TEXT(5), FW_TEXT(6), FW_TEXT(7), FW_TEXT(8), FW_TEXT(9),
    FW_TEXT(10), FW_TEXT(11), FW_TEXT(12), FW_TEXT(14), FW_TEXT(15), FW_TEXT(16), FW_TEXT(17), FW_TEXT(18),
    FW_TEXT(19), FW_TEXT(20), FW_TEXT(21), FW_TEXT(22), FW_TEXT(23), FW_TEXT(24), FW_TEXT(25), FW_TEXT(26),
    FW_CHECK(1), FW_CHECK(2), FW_CHECK(3), FW_CHECK(4), FW_CHECK(5), FW_CHECK(6), FW_CHECK(7), FW_CHECK(8),
    FW_CHECK(9), FW_CHECK(10), FW_CHECK(11),
};
#undef FW_TEXT
#undef FW_CHECK

}  // namespace

const FormDef& CreateQuestForm() {
  static const std::vector<HandlerDecl> handlers = [] {
    std::vector<HandlerDecl> all(std::begin(kHandlers), std::end(kHandlers));
    for (const HandlerDecl& h : createquest::FieldHelpHandlers()) all.push_back(h);
    return all;
  }();
  static const FormDef form{&kCreateQuestTable, handlers};
  return form;
}

}  // namespace fw
