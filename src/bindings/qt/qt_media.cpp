#include "bindings/qt/qt_media.h"

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <QVideoWidget>
#include <QWidget>

#include "forms/media_player.h"
#include "forms/program.h"
#include "media/media_file.h"

namespace fw {

struct QtMediaPlayers::Player {
  std::unique_ptr<QMediaPlayer> media;
  std::unique_ptr<QAudioOutput> audio;
  std::unique_ptr<QVideoWidget> video;
  QTimer watchdog;
  bool playWhenLoaded = false;
  qint64 lastPosition = -1;
  int stalledSeconds = 0;
};

QtMediaPlayers::QtMediaPlayers(std::function<QWidget*(ControlId)> videoParent)
    : videoParent_(std::move(videoParent)) {}

QtMediaPlayers::~QtMediaPlayers() = default;

bool QtMediaPlayers::Load(Program& program, ControlId player, const std::string& file) {
  if (SniffMediaFile(file) == MediaKind::None) return false;
  auto p = std::make_unique<Player>();
  p->media = std::make_unique<QMediaPlayer>();
  p->audio = std::make_unique<QAudioOutput>();
  p->media->setAudioOutput(p->audio.get());
  if (QWidget* parent = videoParent_ ? videoParent_(player) : nullptr) {
    // The video fills its control, and follows it when the window's zoom
    // resizes it.
    p->video = std::make_unique<QVideoWidget>(parent);
    if (!parent->layout()) new QVBoxLayout(parent);
    parent->layout()->setContentsMargins(0, 0, 0, 0);
    parent->layout()->addWidget(p->video.get());
    p->video->show();
    p->media->setVideoOutput(p->video.get());
  }
  Player* raw = p.get();
  Program* prog = &program;
  // Playing before the file is loaded sometimes stalls a movie for good.
  QObject::connect(raw->media.get(), &QMediaPlayer::mediaStatusChanged, this,
                   [this, raw, prog, player](QMediaPlayer::MediaStatus status) {
                     if (status == QMediaPlayer::LoadedMedia && raw->playWhenLoaded) {
                       raw->playWhenLoaded = false;
                       raw->media->play();
                     } else if (status == QMediaPlayer::EndOfMedia || status == QMediaPlayer::InvalidMedia) {
                       Ended(*prog, player, raw);
                     }
                   });
  QObject::connect(&raw->watchdog, &QTimer::timeout, this, [this, raw, prog, player] { Watch(*prog, player, raw); });
  raw->media->setSource(QUrl::fromLocalFile(QString::fromStdString(file)));
  players_[{player.form, player.index}] = std::move(p);
  return true;
}

void QtMediaPlayers::Unload(Program&, ControlId player) { players_.erase({player.form, player.index}); }

void QtMediaPlayers::Play(Program&, ControlId player, int playCount) {
  auto it = players_.find({player.form, player.index});
  if (it == players_.end()) return;
  Player& p = *it->second;
  p.media->setLoops(std::max(playCount, 1));
  p.media->setPosition(0);
  p.lastPosition = -1;
  p.stalledSeconds = 0;
  p.watchdog.start(1000);
  if (p.media->mediaStatus() == QMediaPlayer::LoadingMedia) p.playWhenLoaded = true;
  else p.media->play();
}

void QtMediaPlayers::Stop(Program&, ControlId player) {
  auto it = players_.find({player.form, player.index});
  if (it == players_.end()) return;
  it->second->playWhenLoaded = false;
  it->second->watchdog.stop();
  it->second->media->stop();
}

void QtMediaPlayers::SetPlayCount(Program&, ControlId player, int playCount) {
  auto it = players_.find({player.form, player.index});
  if (it != players_.end()) it->second->media->setLoops(std::max(playCount, 1));
}

qint64 QtMediaPlayers::Position(ControlId player) const {
  auto it = players_.find({player.form, player.index});
  return it == players_.end() ? -1 : it->second->media->position();
}

bool QtMediaPlayers::Holds(ControlId player, const Player* p) const {
  auto it = players_.find({player.form, player.index});
  return it != players_.end() && it->second.get() == p;
}

void QtMediaPlayers::Ended(Program& program, ControlId player, Player* from) {
  if (!Holds(player, from)) return;
  from->watchdog.stop();
  program.surface().SetMedia(player, Prop::PlayState, kPlayStopped);
}

void QtMediaPlayers::Watch(Program& program, ControlId player, Player* from) {
  if (!Holds(player, from)) return;
  Player& p = *from;
  qint64 position = p.media->position();
  p.stalledSeconds = position == p.lastPosition ? p.stalledSeconds + 1 : 0;
  p.lastPosition = position;
  if (p.stalledSeconds >= kStallSeconds) {
    p.media->stop();
    Ended(program, player, from);
  }
}

}  // namespace fw
