#include "forms/form_table.h"

namespace fw {

const char* KindName(Kind kind) {
  switch (kind) {
    case Kind::Label: return "Label";
    case Kind::TextBox: return "TextBox";
    case Kind::CommandButton: return "CommandButton";
    case Kind::CheckBox: return "CheckBox";
    case Kind::OptionButton: return "OptionButton";
    case Kind::ListBox: return "ListBox";
    case Kind::PictureBox: return "PictureBox";
    case Kind::Image: return "Image";
    case Kind::Timer: return "Timer";
    case Kind::Menu: return "Menu";
    case Kind::DirListBox: return "DirListBox";
    case Kind::ProgressBar: return "ProgressBar";
    case Kind::FileDialog: return "FileDialog";
    case Kind::MediaPlayer: return "MediaPlayer";
    case Kind::Shape: return "Shape";
    case Kind::Frame: return "Frame";
  }
  return "?";
}

const char* EventName(Event event) {
  switch (event) {
    case Event::Click: return "Click";
    case Event::Change: return "Change";
    case Event::MouseMove: return "MouseMove";
    case Event::Timer: return "Timer";
    case Event::Load: return "Load";
    case Event::Resize: return "Resize";
    case Event::QueryUnload: return "QueryUnload";
  }
  return "?";
}

bool KindRaises(Kind kind, Event event) {
  switch (kind) {
    case Kind::Label:
    case Kind::CommandButton:
    case Kind::CheckBox:
    case Kind::ListBox:
    case Kind::PictureBox:
    case Kind::Image:
      return event == Event::Click || event == Event::MouseMove;
    case Kind::TextBox:
      return event == Event::Change || event == Event::MouseMove;
    case Kind::Timer:
      return event == Event::Timer;
    case Kind::Menu:
      return event == Event::Click;
    case Kind::DirListBox:
      return event == Event::Change;
    case Kind::OptionButton:
    case Kind::ProgressBar:
    case Kind::FileDialog:
    case Kind::MediaPlayer:
    case Kind::Shape:
    case Kind::Frame:
      return false;
  }
  return false;
}

}  // namespace fw
