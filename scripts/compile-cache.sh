# Sourced by the build scripts: every compile goes through ccache, so a build
# of sources already compiled once (in this clone or another on the machine,
# natively or by emscripten) costs a cache lookup a file. Settings a developer
# has made in the environment stay.
if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER-ccache}
  # emcc runs clang itself: the cache wraps that clang.
  export EM_COMPILER_WRAPPER=${EM_COMPILER_WRAPPER-ccache}
  # Paths inside the clone are hashed relative to it, so clones share entries.
  export CCACHE_BASEDIR=${CCACHE_BASEDIR-$(pwd)}
  export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR-1}
fi
