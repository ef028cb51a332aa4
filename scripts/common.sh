# What the scripts share: installing what a build needs, configuring and building. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# need TEST PACKAGE...: when the test command fails, the Debian packages are wanted.
wanted=()
need() {
  local test=$1
  shift
  bash -c "$test" >/dev/null 2>&1 || wanted+=("$@")
}
has_header() { echo "echo '#include <$1>' | \${CXX:-g++} -E -x c++ -"; }

# Installs the wanted packages, or says which are missing and stops.
install_wanted() {
  [ ${#wanted[@]} -gt 0 ] || return 0
  local as_root=()
  if [ "$(id -u)" != 0 ]; then as_root=(sudo -n); fi
  if command -v apt-get >/dev/null && { [ "$(id -u)" = 0 ] || sudo -n true 2>/dev/null; }; then
    echo "Installing: ${wanted[*]}"
    "${as_root[@]}" apt-get update -qq >/dev/null &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${wanted[@]}" >/dev/null
  else
    echo "These Debian packages are missing; please install them: ${wanted[*]}" >&2
    exit 1
  fi
  wanted=()
}

need_build_tools() {
  need "command -v \${CXX:-g++}" g++
  need "command -v cmake" cmake
  need "command -v ninja" ninja-build
  need "command -v make" make
}

# build PRESET: configures and builds; quiet but for warnings and errors.
build() {
  local log
  log=$(mktemp)
  if ! { cmake --preset "$1" && cmake --build --preset "$1"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    exit 1
  fi
  if grep -n "warning:" "$log"; then
    echo "The compiler warned (above)." >&2
    rm -f "$log"
    exit 1
  fi
  rm -f "$log"
}
