# shellcheck shell=bash
# What the scripts here share: where the tree is, how to talk, which packages there must be.
# Sourced; expects `set -euo pipefail`.
# shellcheck disable=SC2034 # the lists are for those who source this

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Debian's names. Those that only some releases have are taken where they exist.
packages_core=(g++ cmake ninja-build pkg-config libicu-dev libsqlite3-dev)
packages_qt=(
  libexif-dev libexiv2-dev libgdk-pixbuf-2.0-dev libheif-dev libjpeg62-turbo-dev libjxl-dev
  liblcms2-dev libseccomp-dev libvips-dev libwayland-bin libwayland-dev libxcb-dpms0-dev
  libxcb-screensaver0-dev libxcb1-dev plasma-wayland-protocols qt6-base-dev qt6-base-private-dev
  qt6-declarative-dev qt6-l10n-tools qt6-tools-dev qt6-tools-dev-tools wayland-protocols
)
packages_run=(
  qt6-wayland
  fonts-dejavu-core fonts-noto-color-emoji
  fonts-dkg-handwriting fonts-sjfonts fonts-tlwg-purisa-ttf fonts-kaushanscript fonts-kristi
)
packages_test=(
  appstream at-spi2-core dbus desktop-file-utils exiv2 fish gir1.2-atspi-2.0 grim libgl1-mesa-dri
  libgmock-dev libgtest-dev man-db mate-screensaver mpv mpv-mpris openbox python3 python3-dbusmock
  python3-gi sway tzdata vlc-bin vlc-plugin-base x11-xserver-utils xdotool xscreensaver
  xscreensaver-data xvfb zsh
)
packages_package=(dpkg-dev lintian)
packages_pictures=(attr librsvg2-bin optipng pngquant webp)
packages_check=(clang-format git python3)
packages_coverage=(gcovr python3)
packages_tidy=(clang-tidy)
packages_fuzz=(clang libclang-rt-dev)
# Since Debian 13 what reads HEIC and AVIF, and for the tests writes them, are plug-ins.
packages_where_known=(
  libheif-plugin-libde265 libheif-plugin-aomdec libheif-plugin-dav1d
  libheif-plugin-x265 libheif-plugin-aomenc
)

say() {
  printf '%s\n' "$*"
}

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# Prints the names that are not installed.
missing_packages() {
  comm -23 <(printf '%s\n' "$@" | sort -u) \
    <(dpkg-query -W -f='${db:Status-Abbrev} ${Package}\n' "$@" 2>/dev/null |
      sed -n 's/^ii  *//p' | sort -u)
}

# Installs those of the named packages that are missing. Touches nothing when none is.
install_packages() {
  local missing=() known=() as_root=() log=$root/build/install.log
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "No apt here, so nothing is installed. Needed, by Debian's names: $*"
    return
  fi
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || fail "needs root or sudo to install ${missing[*]}"
    as_root=(sudo)
  fi
  as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300)

  say "Installing ${missing[*]}"
  mkdir -p "$root/build"
  # A list that cannot be fetched may be one that is not needed: the install tells.
  "${as_root[@]}" update >"$log" 2>&1 || say "Some package lists could not be fetched."
  mapfile -t known < <(printf '%s\n' "${packages_where_known[@]}" | sort |
    comm -12 - <(apt-cache pkgnames libheif-plugin | sort))
  "${as_root[@]}" install --no-install-recommends "${missing[@]}" "${known[@]}" >>"$log" 2>&1 ||
    fail "installing failed: $(grep -m 1 '^E:' "$log" || tail -n 1 "$log") (log: $log)"
}

# Configures build/PRESET unless it stands, and builds it; more arguments go to the build.
build_preset() (
  preset=$1 folder=$root/build/$1 quietly=()
  shift
  cd "$root" || fail "there is no folder $root"
  if [ ! -e "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/.configured" ]; then
    say "Configuring $folder"
    mkdir -p build
    cmake --preset "$preset" >"$folder.log" 2>&1 || {
      cat "$folder.log" >&2
      fail "configuring the preset $preset failed, see above"
    }
    touch "$folder/.configured"
  fi
  say "Building $folder"
  # A log is for what went wrong.
  if [ ! -t 1 ]; then
    case " $* " in
      *" -- "*) quietly=(--quiet) ;;  # after what is meant for the build tool already
      *) quietly=(-- --quiet) ;;
    esac
  fi
  cmake --build --preset "$preset" "$@" "${quietly[@]}" || fail "building the preset $preset failed, see above"
)
