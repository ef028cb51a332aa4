# Shared by the scripts: installs what a build needs, configures and builds. To be sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The compiler that CMake would choose.
compiler=${CXX:-}
for candidate in c++ g++ clang++; do
  [ -n "$compiler" ] || ! command -v "$candidate" >/dev/null || compiler=$candidate
done
has_header() { echo "#include <$1>" | ${compiler:-c++} -std=c++17 -E -x c++ -; }
clang_major() { clang++ -dumpversion | cut -d. -f1; }

# The software that the scripts use: name, packages on Debian, Fedora and Homebrew, command that succeeds if it is installed.
software='
compiler | g++ | gcc-c++ | gcc | ${compiler:-c++} --version
clang | clang | clang | llvm | clang++ --version
clang-format | clang-format | clang-tools-extra | clang-format | command -v clang-format
libFuzzer | libclang-rt-$(clang_major)-dev | compiler-rt | llvm | ls "$(clang++ -print-resource-dir)"/lib/*/libclang_rt.fuzzer*.a
cmake | cmake | cmake | cmake | command -v cmake
ninja | ninja-build | ninja-build | ninja | command -v ninja
googletest | libgtest-dev libgmock-dev | gtest-devel gmock-devel | googletest | has_header gtest/gtest.h && has_header gmock/gmock.h
pkg-config | pkg-config | pkgconf-pkg-config | pkgconf | command -v pkg-config
locales | locales | glibc-locale-source | | test -e /usr/share/i18n/locales/de_DE && command -v localedef
Fortran | gfortran | gcc-gfortran | gcc | command -v gfortran
MPI | libopenmpi-dev openmpi-bin | openmpi-devel | open-mpi | command -v mpirun && command -v mpicxx
Python | python3 | python3 | python | command -v python3
cbor2 | python3-cbor2 | python3-cbor2 | | for p in python3 /usr/bin/python3; do $p -c "import cbor2" && break; done
gnuplot | gnuplot-nox | gnuplot | gnuplot | command -v gnuplot
Doxygen | doxygen | doxygen | doxygen | command -v doxygen
benchmark | libbenchmark-dev | google-benchmark-devel | google-benchmark | has_header benchmark/benchmark.h
FFTW | libfftw3-dev | fftw-devel | fftw | has_header fftw3.h
KISS-FFT | libkissfft-dev | kiss-fft-devel | kissfft | has_header kissfft/kiss_fftr.h
time-zones | tzdata | tzdata | | test -e /usr/share/zoneinfo/Europe/Kyiv
arm64-compiler | g++-aarch64-linux-gnu | gcc-c++-aarch64-linux-gnu | | command -v aarch64-linux-gnu-g++
arm64-emulator | qemu-user | qemu-user | qemu | command -v qemu-aarch64
dpkg-dev | dpkg-dev | dpkg-dev | dpkg | command -v dpkg-shlibdeps
file | file | file | libmagic | command -v file
libc++ | clang-$libcxx libc++-$libcxx-dev libc++abi-$libcxx-dev | clang libcxx-devel | llvm | clang++-$libcxx -stdlib=libc++ -include version -E -x c++ /dev/null
libabigail | abigail-tools | libabigail | | command -v abidiff
xz | xz-utils | xz | xz | command -v xz
debootstrap | debootstrap | debootstrap | | command -v debootstrap
'
column() { awk -F ' *[|] *' -v name="$1" -v column="$2" '$1 == name { print $column }' <<<"$software"; }
installed() { eval "$(column "$1" 5)" >/dev/null 2>&1; }

# need NAME...: the script cannot run without them. want NAME...: without them it leaves something out.
needed=() wanted=()
need() { local name; for name; do installed "$name" || needed+=("$name"); done; }
want() { local name; for name; do installed "$name" || wanted+=("$name"); done; }

# packages COLUMN NAME...: the names of the packages on one system.
packages() {
  local system=$1 name
  shift
  for name; do eval "echo \"$(column "$name" "$system")\""; done | tr ' ' '\n' | awk 'NF && !seen[$0]++' | paste -sd ' '
}
packages_everywhere() { echo "$(packages 2 "$@") (Debian), $(packages 3 "$@") (Fedora) or $(packages 4 "$@") (Homebrew)"; }

# apt_get ARGUMENT...: runs it as root, without questions; the last error is left in apt_error.
apt_error=
apt_get() {
  local as_root=() output
  [ "$(id -u)" = 0 ] || as_root=(sudo -n)
  output=$("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=120 "$@" 2>&1) && return
  apt_error=$(grep '^E: ' <<<"$output" | head -n 1) || apt_error="E: apt-get $1 failed"
  return 1
}

# Installs what is needed and wanted with apt-get where it may. Ends the script if something needed is still missing.
install_missing() {
  local name missing=() install=(install -y --no-install-recommends)
  [ $((${#needed[@]} + ${#wanted[@]})) -gt 0 ] || return 0
  if command -v apt-get >/dev/null && { [ "$(id -u)" = 0 ] || sudo -n true 2>/dev/null; }; then
    echo "Installing: $(packages 2 "${needed[@]}" "${wanted[@]}")"
    # An old list of packages may do, but a machine without network should not wait long.
    apt_get update -o APT::Update::Error-Mode=any || install+=(-o Acquire::Retries=0)
    # What is only wanted must not keep the rest from being installed.
    if [ ${#needed[@]} = 0 ] || apt_get "${install[@]}" $(packages 2 "${needed[@]}"); then
      [ ${#wanted[@]} = 0 ] || apt_get "${install[@]}" $(packages 2 "${wanted[@]}") || true
    fi
  fi
  for name in "${needed[@]}"; do installed "$name" || missing+=("$name"); done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "Please install $(packages_everywhere "${missing[@]}")${apt_error:+; apt-get could not: ${apt_error#E: }}." >&2
    exit 1
  fi
  for name in "${wanted[@]}"; do installed "$name" || missing+=("$name"); done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "Going on without ${missing[*]}: $(packages_everywhere "${missing[@]}")${apt_error:+; apt-get could not install: ${apt_error#E: }}."
  fi
  needed=() wanted=()
}

need_build_tools() {
  case $compiler in
    *clang++*) need clang ;;
    *) need compiler ;;
  esac
  need cmake ninja
}

# Sets LOCPATH to a folder with a locale that has a decimal comma; false where there is none.
use_comma_locale() {
  local folder=$PWD/build/locale
  if [ ! -d "$folder/de_DE.UTF-8" ] && installed locales; then
    mkdir -p "$folder"
    localedef -i de_DE -f UTF-8 "$folder/de_DE.UTF-8" || true
  fi
  [ -d "$folder/de_DE.UTF-8" ] || return
  export LOCPATH=$folder
}

# quietly COMMAND...: runs a build and shows only its warnings, which end the script in CI, and its output if it fails.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    exit 1
  fi
  if grep "warning:" "$log" >&2 && [ -n "${CI:-}" ]; then
    echo "The compiler warned (above)." >&2
    rm -f "$log"
    exit 1
  fi
  rm -f "$log"
}

# The build folder of a preset.
folder_of() {
  case $1 in
    release | demo) echo build ;;
    *) echo "build-$1" ;;
  esac
}

# build PRESET: configures and builds, with CXX and CMAKE_BUILD_TYPE of the environment if they are set.
build() {
  local folder options=()
  folder=$(folder_of "$1")
  if ! mkdir -p "$folder" 2>/dev/null || [ ! -w "$folder" ]; then
    echo "This folder is read-only; build elsewhere: cmake -S '$PWD' -B FOLDER && cmake --build FOLDER" >&2
    exit 1
  fi
  # CMake keeps the compiler that a folder was first configured with.
  if [ -n "${CXX:-}" ] && [ -f "$folder/CMakeCache.txt" ] &&
    ! grep -q "^CMAKE_CXX_COMPILER:[A-Z]*=$(command -v ${CXX%% *})\$" "$folder/CMakeCache.txt"; then
    rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
  fi
  [ -z "${CMAKE_BUILD_TYPE:-}" ] || options+=("-DCMAKE_BUILD_TYPE=$CMAKE_BUILD_TYPE")
  quietly cmake --preset "$1" "${options[@]}"
  quietly cmake --build --preset "$1"
}

# no_fused_instructions OBJDUMP LIBRARY: ends the script if the library fuses a multiplication with an addition.
no_fused_instructions() {
  local found
  found=$("$1" -d "$2" | grep -E '\svfn?m(add|sub)|\sfn?m(add|sub)\s|\sfml[as]\s' || true)
  [ -n "$found" ] || return 0
  head -n 5 <<<"$found" >&2
  echo "The library contains fused multiply-add instructions (above)." >&2
  exit 1
}
