// The wall clock apart from the other real services: it is all of them that
// the browser's build takes.
#include <chrono>
#include <ctime>

#include "platform/real_services.h"

namespace fw {

double WallClock::Now() {
  auto now = std::chrono::system_clock::now();
  std::time_t t = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&t, &local);
  auto micros = std::chrono::duration_cast<std::chrono::microseconds>(now.time_since_epoch()).count() % 1000000;
  return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec + micros / 1e6;
}

}  // namespace fw
