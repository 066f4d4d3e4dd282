// The desktop binding's tests must keep GStreamer, Qt and Mesa caches out of
// the real home: each runs with a scratch home and runtime folder of the build.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

namespace {

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

TEST(QtTestEnvironment, HomeAndRuntimeFoldersAreTheBuildsOwn) {
  const std::string home = FABLEWRIGHT_QT_TEST_HOME;
  EXPECT_EQ(Env("HOME"), home);
  EXPECT_EQ(Env("XDG_CACHE_HOME"), home + "/cache");
  EXPECT_EQ(Env("XDG_CONFIG_HOME"), home + "/config");
  ASSERT_EQ(Env("XDG_RUNTIME_DIR"), home + "/runtime");
  struct stat st;
  ASSERT_EQ(::stat(Env("XDG_RUNTIME_DIR").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0700u);
}

}  // namespace
