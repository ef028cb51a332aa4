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

# For the tests that must not notice a decimal comma.
need_comma_locale() { need "test -e /usr/share/i18n/locales/de_DE" locales; }
use_comma_locale() {
  local folder=$PWD/build/locale
  if [ ! -d "$folder/de_DE.UTF-8" ] && command -v localedef >/dev/null; then
    mkdir -p "$folder"
    localedef -i de_DE -f UTF-8 "$folder/de_DE.UTF-8" || true
  fi
  [ ! -d "$folder/de_DE.UTF-8" ] || export LOCPATH=$folder
}

# quietly COMMAND...: runs a build; quiet but for warnings and errors, which end the script.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
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

# build PRESET: configures and builds.
build() {
  quietly cmake --preset "$1"
  quietly cmake --build --preset "$1"
}

# no_fused_instructions OBJDUMP LIBRARY: ends the script where one fuses a multiplication with an addition.
no_fused_instructions() {
  local found
  found=$("$1" -d "$2" | grep -E '\svfn?m(add|sub)|\sfn?m(add|sub)\s|\sfml[as]\s' || true)
  [ -n "$found" ] || return 0
  head -n 5 <<<"$found" >&2
  echo "The library holds fused multiply-add instructions (above)." >&2
  exit 1
}
