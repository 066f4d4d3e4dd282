#include "forms/controls.h"

#include <stdexcept>

#include "forms/media_player.h"

namespace fw {

ControlHandle::ControlHandle(FormSurface& surface, std::string_view form, std::string_view name,
                             Kind kind)
    : s_(&surface), id_(surface.Id(form, name)) {
  if (surface.Decl(id_).kind != kind)
    throw std::logic_error(std::string(form) + "." + std::string(name) + " is no " + KindName(kind));
}

std::string ListBox::List(int i) const {
  const Control& k = c();
  return i >= 0 && i < static_cast<int>(k.list.size()) ? k.list[i] : std::string();
}

void MediaPlayer::SetFileName(std::string_view file) const { SetPlayerFileName(s_->program(), id_, file); }
void MediaPlayer::Play() const { PlayerPlay(s_->program(), id_); }
void MediaPlayer::Stop() const { PlayerStop(s_->program(), id_); }
void MediaPlayer::SetPlayCount(int count) const { SetPlayerPlayCount(s_->program(), id_, count); }

FormHandle::FormHandle(FormSurface& surface, std::string_view form)
    : s_(&surface), form_(surface.FindForm(form)) {
  if (form_ < 0) throw std::logic_error("no form " + std::string(form));
}

}  // namespace fw
