#include "media/smf.h"

#include <algorithm>
#include <vector>

namespace fw {
namespace {

// Reads big-endian numbers and variable-length quantities from a span of
// bytes; every read past the end sets failed instead of reading.
struct Reader {
  std::string_view b;
  std::size_t pos = 0;
  bool failed = false;

  std::uint32_t Byte() {
    if (pos >= b.size()) {
      failed = true;
      return 0;
    }
    return static_cast<unsigned char>(b[pos++]);
  }
  std::uint32_t Big(int bytes) {
    std::uint32_t v = 0;
    for (int i = 0; i < bytes; ++i) v = (v << 8) | Byte();
    return v;
  }
  std::uint32_t Vlq() {
    std::uint32_t v = 0;
    for (int i = 0; i < 4; ++i) {
      std::uint32_t c = Byte();
      v = (v << 7) | (c & 0x7F);
      if (!(c & 0x80)) return v;
    }
    failed = true;
    return v;
  }
  void Skip(std::size_t n) {
    if (n > b.size() - std::min(pos, b.size())) failed = true;
    else pos += n;
  }
};

// A change of tempo: from its tick on, a quarter lasts `micros`; `seconds`
// is the time from the start of the tune to the tick.
struct Tempo {
  std::uint64_t tick;
  std::uint32_t micros;
  double seconds = 0;
};

// Walks one track: gives its last tick, and adds its tempo changes.
std::optional<std::uint64_t> ScanTrack(std::string_view track, std::vector<Tempo>& tempos) {
  Reader r{track};
  std::uint64_t tick = 0;
  std::uint32_t status = 0;
  while (r.pos < track.size()) {
    tick += r.Vlq();
    std::uint32_t c = r.Byte();
    if (c == 0xFF) {
      std::uint32_t type = r.Byte();
      std::uint32_t len = r.Vlq();
      if (type == 0x51 && len == 3) tempos.push_back({tick, r.Big(3)});
      else r.Skip(len);
      if (type == 0x2F) break;
    } else if (c == 0xF0 || c == 0xF7) {
      r.Skip(r.Vlq());
    } else {
      if (c & 0x80) status = c;
      else if (status) --r.pos;  // running status: c was the first data byte
      else return std::nullopt;
      std::uint32_t kind = status & 0xF0;
      r.Skip(kind == 0xC0 || kind == 0xD0 ? 1 : 2);
    }
    if (r.failed) return std::nullopt;
  }
  return tick;
}

void PutBig(std::string& out, std::uint32_t v, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>((v >> (8 * i)) & 0xFF);
}

void PutVlq(std::string& out, std::uint32_t v) {
  std::string tmp(1, static_cast<char>(v & 0x7F));
  while (v >>= 7) tmp.insert(tmp.begin(), static_cast<char>(0x80 | (v & 0x7F)));
  out += tmp;
}

}  // namespace

namespace {

// A file's timing: ticks per quarter, the tempo changes in order of their
// ticks (the first at tick 0), the last tick.
struct Timing {
  std::uint32_t division = 0;
  std::vector<Tempo> tempos{{0, 500000}};
  std::uint64_t last = 0;
};

// Puts the changes of all tracks in order of their ticks, keeps the last
// one read at each tick, and times each from the one before: every later
// question about a tick is then one search.
void OrderTempos(Timing& t) {
  std::stable_sort(t.tempos.begin(), t.tempos.end(), [](const Tempo& a, const Tempo& b) { return a.tick < b.tick; });
  std::vector<Tempo>& all = t.tempos;
  std::size_t kept = 1;
  for (std::size_t i = 1; i < all.size(); ++i) {
    if (all[i].tick != all[kept - 1].tick) ++kept;
    all[kept - 1] = all[i];
  }
  all.resize(kept);
  for (std::size_t i = 1; i < all.size(); ++i)
    all[i].seconds =
        all[i - 1].seconds + static_cast<double>(all[i].tick - all[i - 1].tick) * all[i - 1].micros / 1e6 / t.division;
}

std::optional<Timing> ReadTiming(std::string_view bytes) {
  Reader r{bytes};
  if (bytes.substr(0, 4) != "MThd") return std::nullopt;
  r.pos = 4;
  std::uint32_t headerLength = r.Big(4);
  r.Big(2);  // format
  std::uint32_t tracks = r.Big(2);
  Timing t;
  t.division = r.Big(2);
  if (r.failed || headerLength < 6 || t.division == 0 || (t.division & 0x8000)) return std::nullopt;
  r.pos = 8 + headerLength;
  for (std::uint32_t i = 0; i < tracks; ++i) {
    if (r.pos + 8 > bytes.size() || bytes.substr(r.pos, 4) != "MTrk") return std::nullopt;
    r.pos += 4;
    std::uint32_t length = r.Big(4);
    if (length > bytes.size() - r.pos) return std::nullopt;
    auto end = ScanTrack(bytes.substr(r.pos, length), t.tempos);
    if (!end) return std::nullopt;
    t.last = std::max(t.last, *end);
    r.pos += length;
  }
  OrderTempos(t);
  return t;
}

// Seconds from the start to a tick, each stretch at its own tempo.
double SecondsAt(const Timing& t, std::uint64_t tick) {
  // The last change before the tick; the first, at tick 0, when none is.
  auto after = std::lower_bound(t.tempos.begin() + 1, t.tempos.end(), tick,
                                [](const Tempo& change, std::uint64_t at) { return change.tick < at; });
  const Tempo& in = *(after - 1);
  return in.seconds + static_cast<double>(tick - in.tick) * in.micros / 1e6 / t.division;
}

}  // namespace

std::optional<double> MidiLength(std::string_view bytes) {
  auto t = ReadTiming(bytes);
  if (!t) return std::nullopt;
  return SecondsAt(*t, t->last);
}

std::optional<std::uint64_t> MidiTickAt(std::string_view bytes, double seconds) {
  auto t = ReadTiming(bytes);
  if (!t) return std::nullopt;
  // Few tunes are long: a binary search over the ticks is plenty.
  std::uint64_t lo = 0, hi = t->last;
  while (lo < hi) {
    std::uint64_t mid = (lo + hi) / 2;
    if (SecondsAt(*t, mid) < seconds) lo = mid + 1;
    else hi = mid;
  }
  return lo;
}

std::string WriteMidi(const std::vector<MidiNote>& notes, std::uint16_t ticksPerQuarter,
                      std::uint32_t microsPerQuarter, std::uint8_t program) {
  struct Ev {
    std::uint32_t tick;
    int order;  // note-offs before note-ons at the same tick
    std::string bytes;
  };
  std::vector<Ev> events;
  std::vector<bool> channels(16, false);
  for (const MidiNote& n : notes) {
    std::uint8_t ch = n.channel & 0x0F;
    channels[ch] = true;
    events.push_back({n.start, 1, {char(0x90 | ch), char(n.key & 0x7F), char(n.velocity & 0x7F)}});
    events.push_back({n.start + n.length, 0, {char(0x80 | ch), char(n.key & 0x7F), char(0)}});
  }
  std::stable_sort(events.begin(), events.end(),
                   [](const Ev& a, const Ev& b) { return a.tick < b.tick || (a.tick == b.tick && a.order < b.order); });
  std::string track;
  track += '\0';
  track += "\xFF\x51\x03";
  PutBig(track, microsPerQuarter, 3);
  for (int ch = 0; ch < 16; ++ch) {
    if (!channels[ch] || ch == 9) continue;  // channel 10 is percussion and takes no program
    track += '\0';
    track += static_cast<char>(0xC0 | ch);
    track += static_cast<char>(program & 0x7F);
  }
  std::uint32_t at = 0;
  for (const Ev& e : events) {
    PutVlq(track, e.tick - at);
    at = e.tick;
    track += e.bytes;
  }
  track += std::string("\0\xFF\x2F\0", 4);
  std::string out = "MThd";
  PutBig(out, 6, 4);
  PutBig(out, 0, 2);
  PutBig(out, 1, 2);
  PutBig(out, ticksPerQuarter, 2);
  out += "MTrk";
  PutBig(out, static_cast<std::uint32_t>(track.size()), 4);
  return out + track;
}

}  // namespace fw
