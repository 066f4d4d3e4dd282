#pragma once
#include <optional>
#include <string>
#include <string_view>

// The calls between the engine and the page's JavaScript (web/page.js, the
// object FwPage). Every text crosses in UTF-8; descriptions cross as JSON.
namespace fw::web {

// -- To the page.
void BuildForm(int form, const std::string& json);
void UpdateForm(int form, const std::string& json);
void UpdateControl(int form, int index, const std::string& json);
void DropForm(int form);
void ShowMessageBox(const std::string& json);
void ShowFileChooser(const std::string& json);
void Announce(const std::string& text);
void MediaLoad(int form, int index, const std::string& file, bool face);
void MediaPlay(int form, int index, bool loop);
void MediaStop(int form, int index);
void MediaUnload(int form, int index);
void TunePlay(const std::string& file, double fromSeconds, double toSeconds);
void TuneStop();
void OpenAddress(const std::string& target);
void Ended();

// -- From the page: the next event the player made, waiting for one at most
// ms milliseconds while the browser runs (a negative ms takes only an event
// already queued, without letting the browser run); nullopt when none came. Fields
// are tab-separated, the first names the event.
std::optional<std::string> WaitEvent(double ms);

// A small JSON writer for the descriptions.
class Json {
 public:
  Json& Key(std::string_view key);
  Json& Str(std::string_view utf8);
  Json& Num(double v);
  Json& Bool(bool v);
  Json& Open(char bracket);  // '{' or '['
  Json& Close(char bracket);
  Json& Field(std::string_view key, std::string_view utf8) { return Key(key).Str(utf8); }
  Json& Field(std::string_view key, double v) { return Key(key).Num(v); }
  Json& Flag(std::string_view key, bool v) { return Key(key).Bool(v); }
  const std::string& Text() const { return text_; }

 private:
  void Comma();
  std::string text_;
  bool first_ = true;
};

}  // namespace fw::web
