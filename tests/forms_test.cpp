// The form tables and handler registries hang together.
#include <gtest/gtest.h>

#include <cctype>
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

// The letter after a caption's "&", lower case; 0 for none.
char KeyLetter(std::string_view caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] != '&') return static_cast<char>(std::tolower(static_cast<unsigned char>(caption[i + 1])));
    ++i;
  }
  return 0;
}

// Names are unique and parents fit; the entries of one menu each have a key
// letter of their own; every key names a control; every window but the
// game's and the start-up splash belongs to a form there is.
TEST(Forms, TablesHaveUniqueNamesKeyLettersAndFittingParents) {
  std::set<std::string> formNames;
  for (const FormDef& form : AllForms()) formNames.insert(form.table->name);
  for (const FormDef& form : AllForms()) {
    const FormDecl& t = *form.table;
    bool mainWindow = std::string_view(t.name) == "FrmGame" || std::string_view(t.name) == "FrmSplash";
    EXPECT_EQ(*t.owner == '\0', mainWindow) << t.name << " belongs to '" << t.owner << "'";
    if (*t.owner) {
      EXPECT_TRUE(formNames.count(t.owner) && t.owner != std::string_view(t.name)) << t.name;
    }
    std::set<std::string> names;
    std::set<std::pair<std::string, char>> letters;
    for (const ControlDecl& c : t.controls) {
      EXPECT_TRUE(names.insert(c.name).second) << t.name << "." << c.name << " twice";
      if (c.kind == Kind::Menu && KeyLetter(c.caption)) {
        EXPECT_TRUE(letters.insert({c.parent, KeyLetter(c.caption)}).second)
            << t.name << "." << c.name << " \"" << c.caption << "\" shares its key letter";
      }
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
    for (const KeyDecl& k : t.keys) EXPECT_TRUE(names.count(k.control)) << t.name << " key " << k.key;
  }
  EXPECT_EQ(formNames.size(), AllForms().size()) << "a form name twice";
}

}  // namespace
}  // namespace fw
