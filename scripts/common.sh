# What ./run, ./test, bench/run and scripts/lint share: packages and builds. Sourced, not run.
# shellcheck shell=bash disable=SC2034

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }
fail() { say "$(basename "$0"): $*"; exit 1; }

build_packages=(g++ cmake ninja-build pkg-config python3 libglib2.0-dev libicu-dev libgdk-pixbuf-2.0-dev librsvg2-common
  libfontconfig-dev libfreetype-dev libharfbuzz-dev libgmime-3.0-dev
  libcli11-dev nlohmann-json3-dev
  qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-wayland libwayland-dev libgl-dev
  qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-templates qml6-module-qtquick-controls
  qml6-module-qtqml-workerscript qml6-module-qtquick-dialogs qml6-module-qtquick-layouts
  qml6-module-qt-labs-folderlistmodel fonts-inter fonts-dejavu-core)
test_packages=(make binutils gobjc libgnustep-base-dev libgtest-dev libgmock-dev libplist-dev xvfb xauth xdotool weston sway grim qt6-wayland-dev qt6-wayland-dev-tools
  dbus-daemon at-spi2-core gir1.2-atspi-2.0 python3-pyatspi python3-fonttools qml6-module-qttest msmtp
  python3-aiosmtpd x11-xkb-utils desktop-file-utils appstream systemd man-db fish zsh
  locales fontconfig fonts-noto-color-emoji fonts-ddc-uchen fonts-tlwg-loma-ttf)
package_packages=(ccache dpkg-dev file lintian debootstrap)
bench_packages=(libbenchmark-dev libplist-dev libsystemd-dev dbus-daemon xvfb xauth libxtst6)
peer_packages=(systemsettings phosh-mobile-settings gnome-control-center)
lint_packages=(clang clang-format clang-tidy shellcheck pyflakes3 qml6-module-qtqml)
fuzz_packages=(clang libclang-rt-dev xz-utils)
coverage_packages=(gcovr)

# install_packages PACKAGE…: installs what is missing, or says exactly what to install by hand.
install_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local -a as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then as_root=(sudo); else by_hand "there is no root here" "${missing[@]}"; fi
  fi
  command -v apt-get >/dev/null || by_hand "there is no apt-get here" "${missing[@]}"
  say "Installing ${#missing[@]} packages: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update -qq &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 15 "$log" >&2
    by_hand "apt-get failed, as it says above" "${missing[@]}"
  fi
  rm -f "$log"
}

by_hand() {
  say "$(basename "$0"): packages are missing and $1. Install them by hand, then call this again:"
  shift
  say "    $([ "$(id -u)" -eq 0 ] || echo 'sudo ')apt-get install --no-install-recommends $*"
  exit 1
}

# show_steps: of what ninja says, the number of each step, in place, where a terminal shows it.
show_steps() {
  local line
  while IFS= read -r line; do
    [ -t 2 ] && [[ $line == '['*/*']'* ]] && printf '\r%s] ' "${line%%]*}" >&2
  done
  [ ! -t 2 ] || printf '\r\033[K' >&2
}

# build PRESET OPTION… -- TARGET…: configures unless the options are set already, then builds the targets, or all.
build() {
  local preset=$1 folder=$top/build/$1 option log
  local -a options=()
  shift
  while [ $# -gt 0 ] && [ "$1" != -- ]; do options+=("$1"); shift; done
  [ $# -gt 0 ] && shift
  local configured=1
  [ -f "$folder/build.ninja" ] || configured=0
  for option in "${options[@]}"; do
    grep -qs "^$(printf '%s' "${option#-D}" | sed 's/=/:[A-Z]*=/')\$" "$folder/CMakeCache.txt" || configured=0
  done
  if [ $configured = 0 ]; then
    log=$(mktemp)
    say "Configuring build/$preset"
    (cd "$top" && cmake --preset "$preset" "${options[@]}") >"$log" 2>&1 || { cat "$log" >&2; fail "cmake could not configure build/$preset"; }
    rm -f "$log"
  fi
  if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    say "Building build/$preset (a first build takes a few minutes)"
    log=$(mktemp)
    ninja -C "$folder" "$@" 2>&1 | tee "$log" | show_steps || { grep -v '^\[' "$log" | tail -n 60 >&2; fail "the build of build/$preset failed"; }
    grep -i 'warning:' "$log" >&2 || true
    rm -f "$log"
  fi
}
