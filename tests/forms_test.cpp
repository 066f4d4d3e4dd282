// The form tables and handler registries hang together.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "shell/forms.h"

namespace fw {
namespace {

bool IsContainer(Kind k) { return k == Kind::PictureBox || k == Kind::Frame; }

TEST(Forms, EveryHandlerNamesAControlOfAKindThatRaisesItsEvent) {
  for (const FormDef& form : AllForms()) {
    const FormDecl& t = *form.table;
    for (const HandlerDecl& h : form.handlers) {
      std::string where = std::string(t.name) + "." + h.control + "_" + EventName(h.event);
      if (std::string_view(h.control) == "Form") {
        EXPECT_TRUE(h.event == Event::Load || h.event == Event::Resize || h.event == Event::QueryUnload ||
                    h.event == Event::Click)
            << where;
        EXPECT_EQ(h.unload != nullptr, h.event == Event::QueryUnload) << where;
        continue;
      }
      const ControlDecl* c = nullptr;
      for (const ControlDecl& d : t.controls)
        if (std::string_view(d.name) == h.control) c = &d;
      ASSERT_NE(c, nullptr) << where << ": no such control";
      EXPECT_TRUE(KindRaises(c->kind, h.event)) << where << ": a " << KindName(c->kind) << " does not raise it";
      EXPECT_NE(h.plain, nullptr) << where;
    }
  }
}

TEST(Forms, TablesHaveUniqueNamesAndFittingParents) {
  std::set<std::string> formNames;
  for (const FormDef& form : AllForms()) {
    const FormDecl& t = *form.table;
    EXPECT_TRUE(formNames.insert(t.name).second) << t.name;
    std::set<std::string> names;
    for (const ControlDecl& c : t.controls) {
      EXPECT_TRUE(names.insert(c.name).second) << t.name << "." << c.name << " twice";
      if (!*c.parent) continue;
      const ControlDecl* parent = nullptr;
      for (const ControlDecl& d : t.controls)
        if (std::string_view(d.name) == c.parent) parent = &d;
      ASSERT_NE(parent, nullptr) << t.name << "." << c.name << ": no parent " << c.parent;
      if (c.kind == Kind::Menu) EXPECT_EQ(parent->kind, Kind::Menu) << c.name;
      else EXPECT_TRUE(IsContainer(parent->kind)) << c.name << " lies in a " << KindName(parent->kind);
      if (c.kind == Kind::Timer) {
        EXPECT_GT(c.interval, 0) << c.name;
      }
    }
  }
}

}  // namespace
}  // namespace fw
