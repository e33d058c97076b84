#!/usr/bin/env bash
# Looks at the Debian packages of the build folder $1 with lintian, installs them in a bare folder,
# where hosts that have registered nothing use the classes, and removes them again: what users keep
# stays. Then a host takes the library into its own build.
set -euo pipefail
packages=("$(realpath -- "$1")"/*.deb)
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."
work=$(mktemp --directory)
trap 'rm -rf -- "$work"' EXIT
is() { [[ $1 == "$2" ]] || { printf 'it is: %s\nand not: %s\n' "$1" "$2"; exit 1; }; }

lintian --fail-on error,warning "${packages[@]}"

if [[ $EUID -eq 0 ]]; then
  root=$work/root
  mkdir -p -- "$root"/var/lib/{dpkg/{info,updates},quorl/registry}
  touch -- "$root"/var/lib/dpkg/status "$root/var/lib/quorl/registry/kept"
  manage() { dpkg --root="$root" --force-depends --force-script-chrootless "$@" &> "$work/log" ||
    { cat -- "$work/log"; exit 1; }; }
  before=$(cd "$root" && find . -not -path './var/lib/dpkg/*' | sort)
  manage --install "${packages[@]}"
  libraries=$(dirname -- "$(find "$root" -name libquorl.so)")
  export XDG_DATA_HOME=$work/data PKG_CONFIG_PATH=$libraries/pkgconfig PKG_CONFIG_SYSROOT_DIR=
  read -r -a flags < <(pkg-config --cflags --libs quorl)
  g++ -std=c++20 tests/consumer/classes.cpp -o "$work/classes" "${flags[@]}"
  is "$(LD_LIBRARY_PATH=$libraries "$work/classes")" '00000000 800401F3 00000000 8007007E '
  is "$(PYTHONPATH=$root/usr/lib/python3/dist-packages QUORL_LIBRARY=$libraries /usr/bin/python3 -B \
    -c 'import quorl; print(quorl.Quorl().Math.RoundSup(1.21, 1))')" 1.3
  "$root/usr/bin/quorl-settings" set 'HKCU\Software' Colour blue
  is "$("$root/usr/bin/quorl-amounts" --language=NL 2)" 'twee euro'
  mapfile -t names < <(for package in "${packages[@]}"; do dpkg --field "$package" Package; done)
  manage --purge "${names[@]}"
  is "$(cd "$root" && find . -not -path './var/lib/dpkg/*' | sort)" "$before"
  [[ -s $XDG_DATA_HOME/quorl/registry/HKEY_CURRENT_USER.journal ]]
else
  echo 'installation in a bare folder: skipped, only root may'
fi

cmake -S tests/consumer -B "$work/build" -G Ninja -D QUORL_SOURCE="$PWD" -D CMAKE_BUILD_TYPE=Debug
cmake --build "$work/build" --target classes consumer
is "$("$work/build/classes")" "800401F3 800401F3 80040154 8007007E "
