# shellcheck shell=bash disable=SC2034,SC2154
# Sourced by the scripts that check installations, which set `temporary`, the folder of their files.

# The version of the project.
version=$(sed -n 's/.*kVersion = "\(.*\)".*/\1/p' cable_info/version.h)

# Ends the script with an error.
fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# Runs a command and shows its output only if it fails.
quietly() { "$@" >"$temporary/log" 2>&1 || { cat "$temporary/log" >&2; fail "$*"; }; }
