#include "forms/media_player.h"

#include "forms/program.h"

namespace fw {

std::optional<double> MediaPlayers::SecondsLeft(Program&, ControlId) { return std::nullopt; }

void SetPlayerFileName(Program& p, ControlId player, std::string_view file) {
  FormSurface& s = p.surface();
  MediaPlayers& backend = *p.services().players;
  backend.Unload(p, player);
  s.SetMedia(player, Prop::PlayState, kPlayStopped);
  s.SetMedia(player, Prop::ReadyState, 0);
  if (file.empty()) {
    s.SetMediaFile(player, "");
    return;
  }
  std::string host = p.ResolveMediaFile(file);
  if (host.empty() || !backend.Load(p, player, host)) throw Failure("Cannot play the file");
  s.SetMediaFile(player, file);
  s.SetMedia(player, Prop::ReadyState, kReadyComplete);
}

void PlayerPlay(Program& p, ControlId player) {
  FormSurface& s = p.surface();
  if (s.At(player).readyState != kReadyComplete) return;
  s.SetMedia(player, Prop::PlayState, kPlayPlaying);
  p.services().players->Play(p, player, s.At(player).playCount);
}

void PlayerStop(Program& p, ControlId player) {
  p.services().players->Stop(p, player);
  p.surface().SetMedia(player, Prop::PlayState, kPlayStopped);
}

void SetPlayerPlayCount(Program& p, ControlId player, int count) {
  p.surface().SetMedia(player, Prop::PlayCount, count);
  p.services().players->SetPlayCount(p, player, count);
}

}  // namespace fw
