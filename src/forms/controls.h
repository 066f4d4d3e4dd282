#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "forms/surface.h"

namespace fw {

// Typed handles over the values the surface holds, so that handler code reads
// like the forms: questfil.Caption(), Option1.SetValue(true). A handle is two
// indices; copying it copies no state. Each access loads the form first.
class ControlHandle {
 public:
  ControlHandle(FormSurface& surface, std::string_view form, std::string_view name, Kind kind);
  ControlId id() const { return id_; }
  bool Visible() const { return s_->At(id_).visible; }
  void SetVisible(bool v) const { s_->SetVisible(id_, v); }
  bool Enabled() const { return s_->At(id_).enabled; }
  void SetEnabled(bool v) const { s_->SetEnabled(id_, v); }
  float Left() const { return s_->At(id_).left; }
  void SetLeft(float v) const { s_->SetLeft(id_, v); }
  float Top() const { return s_->At(id_).top; }
  void SetTop(float v) const { s_->SetTop(id_, v); }
  float Width() const { return s_->At(id_).width; }
  void SetWidth(float v) const { s_->SetWidth(id_, v); }
  float Height() const { return s_->At(id_).height; }
  void SetHeight(float v) const { s_->SetHeight(id_, v); }
  void Click() const { s_->Raise(id_, Event::Click); }

 protected:
  Control& c() const { return s_->At(id_); }
  FormSurface* s_;
  ControlId id_;
};

// Declares a handle type for one kind of control.
#define FW_HANDLE(Type)                                                                          \
  Type(FormSurface& surface, std::string_view form, std::string_view name)                        \
      : ControlHandle(surface, form, name, Kind::Type) {}

class Label : public ControlHandle {
 public:
  FW_HANDLE(Label)
  const std::string& Caption() const { return c().caption; }
  void SetCaption(std::string_view v) const { s_->SetCaption(id_, v); }
};

class TextBox : public ControlHandle {
 public:
  FW_HANDLE(TextBox)
  const std::string& Text() const { return c().caption; }
  void SetText(std::string_view v) const { s_->SetText(id_, v); }
  int SelStart() const { return c().selStart; }
  void SetSelStart(int v) const { s_->SetSelStart(id_, v); }
};

class CommandButton : public ControlHandle {
 public:
  FW_HANDLE(CommandButton)
};

class CheckBox : public ControlHandle {
 public:
  FW_HANDLE(CheckBox)
  int Value() const { return c().checkValue; }
  void SetValue(int v) const { s_->SetCheckValue(id_, v); }
};

class OptionButton : public ControlHandle {
 public:
  FW_HANDLE(OptionButton)
  const std::string& Caption() const { return c().caption; }
  void SetCaption(std::string_view v) const { s_->SetCaption(id_, v); }
  bool Value() const { return c().optionValue; }
  void SetValue(bool v) const { s_->SetOptionValue(id_, v); }
};

class ListBox : public ControlHandle {
 public:
  FW_HANDLE(ListBox)
  // "" at or past the end, as the logic relies on.
  std::string List(int i) const;
  int ListCount() const { return static_cast<int>(c().list.size()); }
  int ListIndex() const { return c().listIndex; }
  void SetSelected(int i, bool v) const { s_->SetSelected(id_, i, v); }
  void AddItem(std::string_view item) const { s_->AddItem(id_, item); }
  void RemoveItem(int i) const { s_->RemoveItem(id_, i); }
  void Clear() const { s_->ClearList(id_); }
};

class PictureBox : public ControlHandle {
 public:
  FW_HANDLE(PictureBox)
  // Where the click being answered fell, in twips; -1 when it had no point.
  float ClickX() const { return c().clickX; }
  float ClickY() const { return c().clickY; }
  const fw::Picture& Picture() const { return c().picture; }
  void SetPicture(fw::Picture p) const { s_->SetPicture(id_, std::move(p)); }
};

class Image : public ControlHandle {
 public:
  FW_HANDLE(Image)
  const fw::Picture& Picture() const { return c().picture; }
  void SetPicture(fw::Picture p) const { s_->SetPicture(id_, std::move(p)); }
};

class Timer : public ControlHandle {
 public:
  FW_HANDLE(Timer)
};

class Menu : public ControlHandle {
 public:
  FW_HANDLE(Menu)
};

class ProgressBar : public ControlHandle {
 public:
  FW_HANDLE(ProgressBar)
  float Value() const { return c().barValue; }
  void SetValue(float v) const { s_->SetBarValue(id_, v); }  // outside 0..Max fails
  float Max() const { return c().barMax; }
  void SetMax(float v) const { s_->SetBarMax(id_, v); }
};

class FileDialog : public ControlHandle {
 public:
  FW_HANDLE(FileDialog)
  const std::string& FileName() const { return c().fileName; }
  void SetFileName(std::string_view v) const { s_->SetFileName(id_, v); }
  const std::string& FileTitle() const { return c().fileTitle; }
  const std::string& InitDir() const { return c().initDir; }
  void SetInitDir(std::string_view v) const { s_->SetInitDir(id_, v); }
};

class DirListBox : public ControlHandle {
 public:
  FW_HANDLE(DirListBox)
  const std::string& Path() const { return c().caption; }
  void SetPath(std::string_view v) const { s_->SetPath(id_, v); }
  void Refresh() const { s_->RefreshDir(id_); }
};

class MediaPlayer : public ControlHandle {
 public:
  FW_HANDLE(MediaPlayer)
  const std::string& FileName() const { return c().fileName; }
  void SetFileName(std::string_view file) const;  // loads; a file that cannot be loaded fails
  void Play() const;
  void Stop() const;
  int PlayCount() const { return c().playCount; }
  void SetPlayCount(int count) const;
  int PlayState() const { return c().playState; }
  int ReadyState() const { return c().readyState; }
};

#undef FW_HANDLE

// A form's own properties and methods.
class FormHandle {
 public:
  FormHandle(FormSurface& surface, std::string_view form);
  int index() const { return form_; }
  // The window handle that MIDI notifications are addressed to.
  std::int32_t hWnd() const { return form_ + 1; }
  const std::string& Caption() const { return s_->Form(form_).caption; }
  void SetCaption(std::string_view v) const { s_->SetFormCaption(form_, v); }
  bool Visible() const { return s_->Form(form_).visible; }
  float Height() const { return s_->Form(form_).height; }
  void SetHeight(float v) const { s_->SetFormHeight(form_, v); }
  const Picture& Icon() const { return s_->Form(form_).icon; }
  void SetIcon(Picture p) const { s_->SetFormIcon(form_, std::move(p)); }
  void SetPicture(Picture p) const { s_->SetFormPicture(form_, std::move(p)); }
  void Show() const { s_->Show(form_); }
  void Hide() const { s_->Hide(form_); }
  bool Unload() const { return s_->Unload(form_, false); }

 private:
  FormSurface* s_;
  int form_;
};

}  // namespace fw
