#!/usr/bin/env bash
# Installs the program and packs it out of an existing build, into scratch folders, and runs what
# comes out of each: packaging.sh BUILD-DIRECTORY CMAKE CPACK. Status 77: something was skipped.
set -eu
build=$1
cmake=$2
cpack=${3:-cpack}
skipped=0

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export LOCALAPPDATA= # no settings file: the user's own stays as it is

fail() {
  echo "FAILED: $*"
  exit 1
}

skip() {
  echo "SKIPPED: $*"
  skipped=77
}

# check_root FOLDER: a tree with bin and share in it holds all parts, and its program works.
check_root() {
  local root=$1 doc=$1/share/doc/gemmara part
  for part in bin/gemmara share/man/man1/gemmara.1 share/doc/gemmara/README.md \
    share/doc/gemmara/docs/manual.md share/doc/gemmara/copyright \
    share/doc/gemmara/examples/hematite-pressure/hematite.cif; do
    [ -f "$root/$part" ] || fail "$part is not in $root"
  done
  "$root/bin/gemmara" --version | grep -qx 'Gemmara 6\.1, .*' || fail "version of $root"
  # The example runs where it was put, and gives the published volume of the octahedron.
  (cd "$doc/examples/hematite-pressure" && "$root/bin/gemmara" hematite.mcr </dev/null) \
    >"$scratch/said" || fail "the example in $root"
  grep -q '10\.732(14)$' "$scratch/said" || fail "the example in $root says something else"
}

# Every link of the installed documents leads to an installed file.
check_links() {
  local doc=$1 file link
  for file in README.md CHANGELOG.md CONTRIBUTING.md docs/manual.md docs/architecture.md; do
    for link in $(grep -o ']([^)# ]\+' "$doc/$file" | sed 's/^](//'); do
      [ -e "$doc/$(dirname "$file")/$link" ] || fail "$file leads to $link, which is not there"
    done
  done
}

echo "-- install"
"$cmake" --install "$build" --prefix "$scratch/installed" >/dev/null
check_root "$scratch/installed"
check_links "$scratch/installed/share/doc/gemmara"

echo "-- manual page"
if command -v groff >/dev/null; then
  complaints=$(groff -man -ww -z "$scratch/installed/share/man/man1/gemmara.1" 2>&1) ||
    fail "groff: $complaints"
  [ -z "$complaints" ] || fail "$complaints"
else
  skip "groff is not there, so the manual page was not formatted"
fi

pack() {
  "$cpack" --config "$build/CPackConfig.cmake" -G "$1" -B "$scratch/packed" >"$scratch/cpack.log" ||
    fail "$(cat "$scratch/cpack.log")"
}

if ! command -v "$cpack" >/dev/null; then
  skip "cpack is not there, so nothing was packed"
  exit $skipped
fi

echo "-- archive"
pack TGZ
mkdir "$scratch/unpacked"
tar -xzf "$scratch"/packed/gemmara-6.1-*.tar.gz -C "$scratch/unpacked" --strip-components=1
check_root "$scratch/unpacked"

echo "-- Debian package"
if ! command -v dpkg-deb >/dev/null; then
  skip "dpkg-deb is not there, so no Debian package was made"
  exit $skipped
fi
pack DEB
package=$(echo "$scratch"/packed/gemmara_6.1_*.deb)
[ "$(dpkg-deb -f "$package" Package Version | tr '\n' ' ')" = "Package: gemmara Version: 6.1 " ] ||
  fail "name and version of the package"
dpkg-deb -f "$package" Depends | grep -q libc6 || fail "the package depends on no library"
dpkg-deb -x "$package" "$scratch/root"
check_root "$scratch/root/usr"
exit $skipped
