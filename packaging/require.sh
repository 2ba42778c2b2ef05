# Sourced by the scripts that build: require TOOL=PACKAGE ... installs what is missing with apt-get,
# or names it. A TOOL with a slash is a file that must exist.
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

require() {
  local packages as_root=""
  packages=$(missing_packages "$@" | sort -u | tr '\n' ' ')
  [ -z "$packages" ] && return 0
  if [ "$(id -u)" -ne 0 ]; then as_root=sudo; fi
  if command -v apt-get >/dev/null 2>&1 && { [ -z "$as_root" ] || command -v sudo >/dev/null 2>&1; }; then
    echo "Installing: $packages"
    $as_root apt-get update -qq && $as_root apt-get install -y -qq $packages >/dev/null
  fi
  packages=$(missing_packages "$@" | sort -u | tr '\n' ' ')
  [ -z "$packages" ] && return 0
  echo "Please install these packages (names as in Debian): $packages" >&2
  return 1
}
