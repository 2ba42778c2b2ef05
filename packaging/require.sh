# Sourced by the scripts that build: require TOOL=PACKAGE ... names what is missing and installs it
# with apt-get, as root. Somebody at the terminal is asked first. A TOOL with a slash is a file that
# must exist.
missing_packages() {
  local pair tool
  for pair in "$@"; do
    tool=${pair%%=*}
    case $tool in
      */*) [ -e "$tool" ] || echo "${pair#*=}" ;;
      *) command -v "$tool" >/dev/null 2>&1 || echo "${pair#*=}" ;;
    esac
  done
}

# True unless somebody sits at the terminal and does not say yes.
may_install() {
  local answer
  { [ -t 0 ] && [ -t 2 ]; } || return 0
  printf 'Install them with %s? (Y/N) <N>? ' "$1" >&2
  read -r answer && [[ $answer == [Yy]* ]]
}

require() {
  local packages as_root=""
  packages=$(missing_packages "$@" | sort -u | tr '\n' ' ')
  [ -z "$packages" ] && return 0
  if [ "$(id -u)" -ne 0 ]; then as_root=sudo; fi
  if command -v apt-get >/dev/null 2>&1 && { [ -z "$as_root" ] || command -v sudo >/dev/null 2>&1; }; then
    echo "Missing packages: $packages" >&2
    if may_install "${as_root:+$as_root }apt-get as root"; then
      $as_root apt-get update && $as_root apt-get install -y $packages || true
    fi >&2
  fi
  packages=$(missing_packages "$@" | sort -u | tr '\n' ' ')
  [ -z "$packages" ] && return 0
  echo "Please install these packages (names as in Debian): $packages" >&2
  if command -v apt-get >/dev/null 2>&1; then echo "As root: apt-get install $packages" >&2; fi
  return 1
}
