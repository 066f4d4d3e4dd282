#include "bindings/web/web_bridge.h"

#include <emscripten.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

EM_JS(void, fw_js_call, (const char* name, const char* args), {
  FwPage.fromEngine(UTF8ToString(name), JSON.parse(UTF8ToString(args)));
});

// Resolves with the event's text, or null after ms milliseconds.
EM_ASYNC_JS(char*, fw_js_wait_event, (double ms), {
  const text = await FwPage.nextEvent(ms);
  return text === null ? 0 : allocateUTF8(text);
});

// The next event already queued, or null: no wait, and no unwinding.
EM_JS(char*, fw_js_take_event, (), {
  const text = FwPage.takeEvent();
  return text === null ? 0 : allocateUTF8(text);
});

void Call(const char* name, const fw::web::Json& args) { fw_js_call(name, args.Text().c_str()); }

fw::web::Json Args() {
  fw::web::Json j;
  j.Open('[');
  return j;
}

}  // namespace

namespace fw::web {

void Json::Comma() {
  if (!first_) text_ += ',';
  first_ = false;
}

Json& Json::Key(std::string_view key) {
  Str(key);
  text_ += ':';
  first_ = true;
  return *this;
}

Json& Json::Str(std::string_view utf8) {
  Comma();
  text_ += '"';
  for (char c : utf8) {
    unsigned char u = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text_ += '\\';
      text_ += c;
    } else if (u < 0x20) {
      char esc[8];
      std::snprintf(esc, sizeof esc, "\\u%04x", u);
      text_ += esc;
    } else {
      text_ += c;
    }
  }
  text_ += '"';
  return *this;
}

Json& Json::Num(double v) {
  Comma();
  if (!std::isfinite(v)) v = 0;
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.10g", v);
  text_ += buf;
  return *this;
}

Json& Json::Bool(bool v) {
  Comma();
  text_ += v ? "true" : "false";
  return *this;
}

Json& Json::Open(char bracket) {
  Comma();
  text_ += bracket;
  first_ = true;
  return *this;
}

Json& Json::Close(char bracket) {
  text_ += bracket == '{' ? '}' : ']';
  first_ = false;
  return *this;
}

void BuildForm(int form, const std::string& json) {
  fw_js_call("buildForm", ("[" + std::to_string(form) + "," + json + "]").c_str());
}

void UpdateForm(int form, const std::string& json) {
  fw_js_call("updateForm", ("[" + std::to_string(form) + "," + json + "]").c_str());
}

void UpdateControl(int form, int index, const std::string& json) {
  fw_js_call("updateControl", ("[" + std::to_string(form) + "," + std::to_string(index) + "," + json + "]").c_str());
}

void DropForm(int form) { Call("dropForm", Args().Num(form).Close('[')); }
void ShowMessageBox(const std::string& json) { fw_js_call("messageBox", ("[" + json + "]").c_str()); }
void ShowFileChooser(const std::string& json) { fw_js_call("fileChooser", ("[" + json + "]").c_str()); }
void Announce(const std::string& text) { Call("announce", Args().Str(text).Close('[')); }

void MediaLoad(int form, int index, const std::string& file, bool face) {
  Call("mediaLoad", Args().Num(form).Num(index).Str(file).Bool(face).Close('['));
}
void MediaPlay(int form, int index, bool loop) { Call("mediaPlay", Args().Num(form).Num(index).Bool(loop).Close('[')); }
void MediaStop(int form, int index) { Call("mediaStop", Args().Num(form).Num(index).Close('[')); }
void MediaUnload(int form, int index) { Call("mediaUnload", Args().Num(form).Num(index).Close('[')); }
void TunePlay(const std::string& file, double from, double to) {
  Call("tunePlay", Args().Str(file).Num(from).Num(to).Close('['));
}
void TuneStop() { Call("tuneStop", Args().Close('[')); }
void OpenAddress(const std::string& target) { Call("openAddress", Args().Str(target).Close('[')); }
void Ended() { Call("ended", Args().Close('[')); }

std::optional<std::string> WaitEvent(double ms) {
  char* text = ms < 0 ? fw_js_take_event() : fw_js_wait_event(ms);
  if (!text) return std::nullopt;
  std::string event(text);
  std::free(text);
  return event;
}

}  // namespace fw::web
