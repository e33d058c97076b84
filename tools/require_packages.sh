# Sourced by the scripts at the root. `require_packages NAME...` installs those of the named Debian
# packages that are missing, as root or through sudo, and says which.

require_packages() {
  local missing=() package
  for package in "$@"; do
    if ! dpkg-query --show --showformat='${Status}\n' "$package" 2>/dev/null |
      grep --quiet --line-regexp 'install ok installed'; then
      missing+=("$package")
    fi
  done
  if [[ ${#missing[@]} -eq 0 ]]; then return; fi

  local as_root=()
  if [[ $EUID -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
      echo "Missing packages: ${missing[*]}. Install them as root; there is no sudo here." >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing from Debian: ${missing[*]}" >&2
  "${as_root[@]}" apt-get --quiet --quiet update >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get --quiet --quiet --yes --no-install-recommends install "${missing[@]}" >&2
}
