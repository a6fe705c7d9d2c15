# Sourced by the other scripts: `need PACKAGE...` installs the given Debian packages if missing.

# The packages that the library and the program are built with.
build_packages=(g++ cmake ninja-build libcli11-dev libsimdjson-dev libsqlite3-dev
  libjs-chart.js libmnl-dev)

need() {
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "note: not a Debian system; the contents of these packages must be installed: $*" >&2
    return 0
  fi

  local package missing=()
  for package in "$@"; do
    if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      missing+=("$package")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "error: these packages are missing, and installing them requires root or sudo:" >&2
      echo "  apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "installing: ${missing[*]}" >&2
  "${as_root[@]}" apt-get update -qq >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}
