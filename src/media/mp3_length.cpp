#include "media/mp3_length.h"

// The web build has no libmpg123 (a browser has no library to open) and
// measures no MP3.
#if !__has_include(<mpg123.h>)
namespace fw {
std::optional<double> Mp3Length(MediaBytes&) { return std::nullopt; }
}  // namespace fw
#else

#include <dlfcn.h>
#include <mpg123.h>

#include <cstdio>
#include <cstring>

namespace fw {
namespace {

// The few calls of libmpg123 that a length needs. The library is opened by
// name at the first MP3 and never closed, so that a start that measures no
// MP3 (a key read, a script without one, the window, which plays MP3 through
// its own player) never loads it; a machine without it measures no MP3.
struct Mpg123 {
  decltype(&mpg123_init) init = nullptr;
  decltype(&mpg123_new) make = nullptr;
  decltype(&mpg123_delete) drop = nullptr;
  decltype(&mpg123_param) param = nullptr;
  decltype(&mpg123_replace_reader_handle) reader = nullptr;
  decltype(&mpg123_open_handle) open = nullptr;
  decltype(&mpg123_getformat) format = nullptr;
  decltype(&mpg123_scan) scan = nullptr;
  decltype(&mpg123_length) length = nullptr;

  bool Loaded() const { return init && make && drop && param && reader && open && format && scan && length; }
};

template <class Fn>
void Find(void* library, const char* name, Fn& fn) {
  fn = reinterpret_cast<Fn>(dlsym(library, name));
}

Mpg123 Load() {
  Mpg123 lib;
  void* library = dlopen("libmpg123.so.0", RTLD_NOW | RTLD_LOCAL);
  if (!library) return lib;
  Find(library, "mpg123_init", lib.init);
  Find(library, "mpg123_new", lib.make);
  Find(library, "mpg123_delete", lib.drop);
  Find(library, "mpg123_param", lib.param);
  Find(library, "mpg123_replace_reader_handle", lib.reader);
  Find(library, "mpg123_open_handle", lib.open);
  Find(library, "mpg123_getformat", lib.format);
  Find(library, "mpg123_scan", lib.scan);
  Find(library, "mpg123_length", lib.length);
  if (lib.Loaded() && lib.init() != MPG123_OK) lib = {};
  return lib;
}

const Mpg123& Library() {
  static const Mpg123 lib = Load();
  return lib;
}

// The file as libmpg123 reads it: a position and the bytes from there.
struct Reading {
  MediaBytes& file;
  std::uint64_t at = 0;
};

mpg123_ssize_t ReadBytes(void* handle, void* buffer, std::size_t n) {
  auto* r = static_cast<Reading*>(handle);
  std::string_view got = r->file.Read(r->at, n);
  if (!got.empty()) std::memcpy(buffer, got.data(), got.size());
  r->at += got.size();
  return static_cast<mpg123_ssize_t>(got.size());
}

off_t SeekBytes(void* handle, off_t offset, int whence) {
  auto* r = static_cast<Reading*>(handle);
  auto from = static_cast<off_t>(whence == SEEK_END ? r->file.Size() : whence == SEEK_CUR ? r->at : 0);
  if (offset < -from) return -1;
  r->at = static_cast<std::uint64_t>(from + offset);
  return static_cast<off_t>(r->at);
}

// How far past a tag or junk the first frame is looked for, as far as a
// player that finds it would look.
constexpr long kResyncLimit = 64 << 10;

}  // namespace

std::optional<double> Mp3Length(MediaBytes& file) {
  const Mpg123& lib = Library();
  if (!lib.Loaded()) return std::nullopt;
  mpg123_handle* mh = lib.make(nullptr, nullptr);
  if (!mh) return std::nullopt;
  Reading reading{file};
  std::optional<double> seconds;
  long rate = 0;
  int channels = 0, encoding = 0;
  // Every frame counts, none is trimmed as an encoder's delay: the length is
  // the frames times their samples, for a CBR file what its size and bit rate
  // give. The scan counts the frames where no header does.
  if (lib.param(mh, MPG123_ADD_FLAGS, MPG123_QUIET, 0) == MPG123_OK &&
      lib.param(mh, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0) == MPG123_OK &&
      lib.param(mh, MPG123_RESYNC_LIMIT, kResyncLimit, 0) == MPG123_OK &&
      lib.reader(mh, ReadBytes, SeekBytes, nullptr) == MPG123_OK && lib.open(mh, &reading) == MPG123_OK &&
      lib.format(mh, &rate, &channels, &encoding) == MPG123_OK && rate > 0 && lib.scan(mh) == MPG123_OK) {
    off_t samples = lib.length(mh);
    if (samples >= 0) seconds = static_cast<double>(samples) / static_cast<double>(rate);
  }
  lib.drop(mh);
  return seconds;
}

}  // namespace fw

#endif
