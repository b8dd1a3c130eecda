# Sourced by the benchmark scripts: configures a Release build folder when
# there is none and builds one benchmark target in it.
# usage: build_bench TARGET BUILD_FOLDER
build_bench() {
  if [ ! -f "$2/CMakeCache.txt" ]; then
    cmake -S "$here" -B "$2" -DCMAKE_BUILD_TYPE=Release -DVONNEL_BUILD_TESTS=OFF >/dev/null
  fi
  cmake --build "$2" --target "$1" -j2 >/dev/null
}
