// The desktop binding's tests need one application object for all of them,
// and no display: offscreen unless the caller chose a platform. GStreamer, Qt
// and Mesa write caches and runtime files into the home folders, so those are
// a scratch folder of the build, whether ctest or a person starts the tests.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const std::string home = FABLEWRIGHT_QT_TEST_HOME;
  std::filesystem::create_directories(home + "/runtime");
  ::chmod((home + "/runtime").c_str(), 0700);
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("XDG_RUNTIME_DIR", (home + "/runtime").c_str(), 1);
  ::setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
