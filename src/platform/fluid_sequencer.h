#pragma once
#include <map>
#include <string>

#include "forms/services.h"
#include "platform/soundfont.h"

// FluidSynth's types, kept out of the headers of the logic.
typedef struct _fluid_hashtable_t fluid_settings_t;
typedef struct _fluid_synth_t fluid_synth_t;
typedef struct _fluid_audio_driver_t fluid_audio_driver_t;
typedef struct _fluid_player_t fluid_player_t;

namespace fw {

// The MIDI voice on this machine: FluidSynth with a General MIDI soundfont.
// One synth for the program, made at the first tune and not before. No sound
// card, no soundfont, or a file FluidSynth refuses all mean silence; the
// tune's end is known from its own length, so it arrives on time with or
// without sound.
class FluidSequencer : public Sequencer {
 public:
  // withAudio false: no audio driver; Render pulls the samples instead. An
  // audioFile sends the sound to that WAV file instead of the sound card.
  explicit FluidSequencer(bool withAudio = true, std::string soundfont = FindSoundfont(), std::string audioFile = "");
  ~FluidSequencer() override;
  FluidSequencer(const FluidSequencer&) = delete;
  FluidSequencer& operator=(const FluidSequencer&) = delete;

  bool Open(const std::string& file) override;
  bool Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
            std::uint32_t tune) override;
  void Close(const std::string& file) override;

  // Renders seconds of the tune by hand (only without audio) and gives the
  // loudest sample: a test's proof that notes sound.
  float Render(double seconds);

 private:
  bool EnsureSynth();
  void DropPlayer();
  void StartAudio();
  void StopAudio();

  bool withAudio_;
  std::string soundfont_;
  std::string audioFile_;
  bool synthFailed_ = false;
  bool audioFailed_ = false;
  fluid_settings_t* settings_ = nullptr;
  fluid_synth_t* synth_ = nullptr;
  fluid_audio_driver_t* driver_ = nullptr;
  fluid_player_t* player_ = nullptr;
  std::map<std::string, std::string> open_;  // open files and their bytes
};

}  // namespace fw
