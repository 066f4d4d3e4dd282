#pragma once
#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "forms/services.h"
#include "forms/surface.h"

class QAudioOutput;
class QMediaPlayer;
class QTimer;
class QVideoWidget;
class QWidget;

namespace fw {

// The media player controls on the desktop: Qt Multimedia (GStreamer
// underneath). A movie control draws into a video widget inside the widget
// that videoParent gives for it; a sound player has none.
class QtMediaPlayers : public QObject, public MediaPlayers {
 public:
  explicit QtMediaPlayers(std::function<QWidget*(ControlId)> videoParent = {});
  ~QtMediaPlayers() override;

  bool Load(Program& program, ControlId player, const std::string& file) override;
  void Unload(Program& program, ControlId player) override;
  void Play(Program& program, ControlId player, int playCount) override;
  void Stop(Program& program, ControlId player) override;
  void SetPlayCount(Program& program, ControlId player, int playCount) override;

  // Milliseconds into the file loaded in the player; -1 with none loaded.
  qint64 Position(ControlId player) const;

  // Seconds without progress after which a playing file counts as stalled
  // and ends, so a movie cannot cover the game for ever.
  static constexpr int kStallSeconds = 5;

 private:
  struct Player;
  using Key = std::pair<int, int>;
  // A signal of a file since replaced or unloaded must not end the file the
  // control holds now: the handlers act only while the control holds theirs.
  bool Holds(ControlId player, const Player* p) const;
  void Ended(Program& program, ControlId player, Player* from);
  void Watch(Program& program, ControlId player, Player* from);

  std::function<QWidget*(ControlId)> videoParent_;
  std::map<Key, std::unique_ptr<Player>> players_;
};

}  // namespace fw
