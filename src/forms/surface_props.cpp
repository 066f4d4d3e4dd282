// Generic, by-name access to properties, for scripts and bindings.
#include <array>
#include <stdexcept>
#include <utility>

#include "forms/convert.h"
#include "forms/surface.h"

namespace fw {
namespace {

constexpr std::array<std::pair<Prop, const char*>, 26> kPropNames = {{
    {Prop::Caption, "Caption"},     {Prop::Text, "Text"},           {Prop::Visible, "Visible"},
    {Prop::Enabled, "Enabled"},     {Prop::Value, "Value"},         {Prop::Left, "Left"},
    {Prop::Top, "Top"},             {Prop::Width, "Width"},         {Prop::Height, "Height"},
    {Prop::Picture, "Picture"},     {Prop::List, "List"},           {Prop::ListCount, "ListCount"},
    {Prop::ListIndex, "ListIndex"}, {Prop::SelStart, "SelStart"},   {Prop::Max, "Max"},
    {Prop::Interval, "Interval"},   {Prop::FileName, "FileName"},   {Prop::FileTitle, "FileTitle"},
    {Prop::InitDir, "InitDir"},     {Prop::Filter, "Filter"},       {Prop::DefaultExt, "DefaultExt"},
    {Prop::PlayCount, "PlayCount"}, {Prop::PlayState, "PlayState"}, {Prop::ReadyState, "ReadyState"},
    {Prop::Icon, "Icon"},           {Prop::Path, "Path"},
}};

// Fails the lookup: the kind has no such property.
[[noreturn]] void NoSuch(Kind kind, Prop prop) {
  throw std::invalid_argument(std::string(KindName(kind)) + " has no property " + PropName(prop));
}

bool HasCaption(Kind k) {
  return k == Kind::Label || k == Kind::OptionButton || k == Kind::CommandButton ||
         k == Kind::CheckBox || k == Kind::Menu || k == Kind::Frame;
}

}  // namespace

std::optional<Prop> PropFromName(std::string_view name) {
  for (auto& [prop, text] : kPropNames)
    if (name == text) return prop;
  return std::nullopt;
}

const char* PropName(Prop prop) {
  for (auto& [p, text] : kPropNames)
    if (p == prop) return text;
  return "?";
}

std::string FormatValue(const PropValue& value) {
  if (auto* s = std::get_if<std::string>(&value)) return *s;
  if (auto* b = std::get_if<bool>(&value)) return *b ? "True" : "False";
  if (auto* f = std::get_if<float>(&value)) return SingleText(*f);
  return NumberText(std::get<double>(value));
}

PropValue FormSurface::Get(ControlId id, Prop prop, int index) {
  const Control& c = At(id);
  Kind k = c.decl->kind;
  switch (prop) {
    case Prop::Caption:
      if (HasCaption(k)) return c.caption;
      break;
    case Prop::Text:
      if (k == Kind::TextBox) return c.caption;
      if (k == Kind::ListBox) return c.listIndex >= 0 ? c.list[c.listIndex] : std::string();
      break;
    case Prop::Visible: return c.visible;
    case Prop::Enabled: return c.enabled;
    case Prop::Value:
      if (k == Kind::CheckBox) return static_cast<double>(c.checkValue);
      if (k == Kind::OptionButton) return c.optionValue;
      if (k == Kind::ProgressBar) return c.barValue;
      break;
    case Prop::Left: return c.left;
    case Prop::Top: return c.top;
    case Prop::Width: return c.width;
    case Prop::Height: return c.height;
    case Prop::Picture:
      if (k == Kind::PictureBox || k == Kind::Image) return c.picture.path;
      break;
    case Prop::List:
      if (k == Kind::ListBox)
        return index >= 0 && index < static_cast<int>(c.list.size()) ? c.list[index] : std::string();
      break;
    case Prop::ListCount:
      if (k == Kind::ListBox) return static_cast<double>(c.list.size());
      break;
    case Prop::ListIndex:
      if (k == Kind::ListBox) return static_cast<double>(c.listIndex);
      break;
    case Prop::SelStart:
      if (k == Kind::TextBox) return static_cast<double>(c.selStart);
      break;
    case Prop::Max:
      if (k == Kind::ProgressBar) return c.barMax;
      break;
    case Prop::Interval:
      if (k == Kind::Timer) return static_cast<double>(c.decl->interval);
      break;
    case Prop::FileName:
      if (k == Kind::FileDialog || k == Kind::MediaPlayer) return c.fileName;
      break;
    case Prop::FileTitle:
      if (k == Kind::FileDialog) return c.fileTitle;
      break;
    case Prop::InitDir:
      if (k == Kind::FileDialog) return c.initDir;
      break;
    case Prop::Filter:
      if (k == Kind::FileDialog) return std::string(c.decl->filter);
      break;
    case Prop::DefaultExt:
      if (k == Kind::FileDialog) return std::string(c.decl->defaultExt);
      break;
    case Prop::PlayCount:
      if (k == Kind::MediaPlayer) return static_cast<double>(c.playCount);
      break;
    case Prop::PlayState:
      if (k == Kind::MediaPlayer) return static_cast<double>(c.playState);
      break;
    case Prop::ReadyState:
      if (k == Kind::MediaPlayer) return static_cast<double>(c.readyState);
      break;
    case Prop::Path:
      if (k == Kind::DirListBox) return c.caption;
      break;
    case Prop::Icon:
      break;
  }
  NoSuch(k, prop);
}

PropValue FormSurface::GetForm(int form, Prop prop) {
  const FormState& f = Form(form);
  switch (prop) {
    case Prop::Caption: return f.caption;
    case Prop::Visible: return f.visible;
    case Prop::Width: return f.width;
    case Prop::Height: return f.height;
    case Prop::Picture: return f.picture.path;
    case Prop::Icon: return f.icon.path;
    default: throw std::invalid_argument(std::string("a form has no property ") + PropName(prop));
  }
}

}  // namespace fw
