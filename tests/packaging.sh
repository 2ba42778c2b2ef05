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

# The page of all documents is there where pandoc was when the build was configured.
page=
if grep -q '^PANDOC:FILEPATH=/' "$build/CMakeCache.txt"; then page=share/doc/gemmara/gemmara.html; fi

# check_root FOLDER PART...: a tree with bin and share in it holds all parts, and its program works.
check_root() {
  local root=$1 doc=$1/share/doc/gemmara part
  shift
  for part in bin/gemmara share/doc/gemmara/README.md share/doc/gemmara/docs/manual.md \
    share/doc/gemmara/copyright share/doc/gemmara/examples/hematite-pressure/hematite.cif $page \
    "$@"; do
    [ -f "$root/$part" ] || fail "$part is not in $root"
  done
  for part in survey.sh one.sh join.py; do
    [ -x "$doc/examples/survey/$part" ] || fail "$part of $root cannot be run"
  done
  "$root/bin/gemmara" --version | grep -qx 'Gemmara 6\.1, .*' || fail "version of $root"
  # The example runs where it was put, and gives the published volume of the octahedron.
  (cd "$doc/examples/hematite-pressure" && "$root/bin/gemmara" hematite.mcr </dev/null) \
    >"$scratch/said" || fail "the example in $root"
  grep -q '10\.732(14)$' "$scratch/said" || fail "the example in $root says something else"
  # The first session of the README, its table as a sheet.
  mkdir -p "$scratch/session"
  (cd "$scratch/session" && "$root/bin/gemmara" "$doc"/examples/hematite-pressure/hematite.cif \
    "$doc/examples/hematite-pressure/demo.mcr" </dev/null) >"$scratch/said" ||
    fail "the first session in $root"
  grep -q '^Fe1-O1 ×3	2\.113(4)	2\.112(6)	' "$scratch/session/bonds.tsv" ||
    fail "the table of the first session in $root"
  rm -r "$scratch/session"
}

# The files of a tree, without what the Debian package has otherwise.
files_of() {
  (cd "$1" && find . -type f ! -path '*/man1/*' ! -name changelog.gz | sort)
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

# The page needs no other file, has every document and the figure, and its links lead to places in it
# or to files beside it.
check_page() {
  local doc=$1 link
  for link in readme manual architecture testing contributing changelog examples-hematite-pressure; do
    grep -q "<h1[^>]* id=\"$link\"" "$doc/gemmara.html" || fail "the page has no $link"
  done
  grep -o ' id="[^"]*"' "$doc/gemmara.html" | sort >"$scratch/ids"
  [ -z "$(uniq -d "$scratch/ids")" ] || fail "the page has twice$(uniq -d "$scratch/ids")"
  grep -o ' href="[^"]*"' "$doc/gemmara.html" | sed 's/^ href="//; s/"$//' | sort -u >"$scratch/links"
  [ "$(wc -l <"$scratch/links")" -gt 100 ] || fail "the page has hardly a link"
  while read -r link; do
    case $link in
      "#"*) grep -qxF " id=\"${link#"#"}\"" "$scratch/ids" || fail "the page leads to $link" ;;
      *:*) ;;
      *) [ -e "$doc/$link" ] || fail "the page leads to $link, which is not there" ;;
    esac
  done <"$scratch/links"
  # The sessions stand in it as they are in the manual, and the figure within the page.
  grep -qF '2.113(4)   2.113(4)   2.113(4)   1.944(3)' "$doc/gemmara.html" || fail "a table of the page"
  grep -q '<img src="data:image/svg+xml;base64,' "$doc/gemmara.html" || fail "the page has no figure"
  if grep -E '<(link|script|iframe)|src="[^d]|url\(|@import' "$doc/gemmara.html"; then
    fail "the page loads something"
  fi
}

# told FROM TO FILE PATTERN: what fits the pattern in the lines of a file from one to another.
told() {
  sed -n "/$1/,/$2/p" "$3" | grep -oE -- "$4" | sort -u
}

# The man page has the options, environment and exit statuses that the program's help tells, and no
# other option and status.
check_man_page() {
  local help=$scratch/help man=$scratch/man word
  "$1/bin/gemmara" --help >"$help"
  sed 's/\\-/-/g' "$1/share/man/man1/gemmara.1" >"$man"
  diff <(told '^Usage' '^$' "$help" '--[a-z]+') \
    <(told '^\.SH OPTIONS' '^\.SH EXIT' "$man" '^\.B --[a-z]+' | sed 's/^\.B //') ||
    fail "options of the help (<) and of the man page (>)"
  diff <(told '^  MACRO ' '^$' "$help" '^  --[a-z]+' | tr -d ' ') \
    <(told '^\.SH SYNOPSIS' '^\.SH DESC' "$man" '--[a-z]+') ||
    fail "options of the help (<) and of the synopsis (>)"
  diff <(told '^Exit status' '^$' "$help" '[0-9]+') \
    <(told '^\.SH EXIT STATUS' '^\.SH ENV' "$man" '^\.B [0-9]+' | sed 's/^\.B //') ||
    fail "exit statuses of the help (<) and of the man page (>)"
  for word in $(told '^Environment' '^$' "$help" '[A-Z][A-Z_]{3,}'); do
    told '^\.SH ENVIRONMENT' '^\.SH FILES' "$man" "^\.BR? .*" | grep -qw "$word" ||
      fail "the man page does not name $word"
  done
}

echo "-- install"
"$cmake" --install "$build" --prefix "$scratch/installed" >"$scratch/install.log"
check_root "$scratch/installed" share/man/man1/gemmara.1
check_links "$scratch/installed/share/doc/gemmara"

echo "-- page of all documents"
if [ -n "$page" ]; then
  check_page "$scratch/installed/share/doc/gemmara"
else
  grep -q 'gemmara.html is left out' "$scratch/install.log" || fail "nobody is told of the page"
  skip "pandoc is not there, so the page of all documents was not made"
fi

echo "-- manual page"
check_man_page "$scratch/installed"
if command -v groff >/dev/null; then
  complaints=$(groff -man -ww -z "$scratch/installed/share/man/man1/gemmara.1" 2>&1) ||
    fail "groff: $complaints"
  [ -z "$complaints" ] || fail "$complaints"
else
  skip "groff is not there, so the manual page was not formatted"
fi
if command -v man >/dev/null; then
  complaints=$(man --warnings -l "$scratch/installed/share/man/man1/gemmara.1" 2>&1 >/dev/null)
  [ -z "$complaints" ] || fail "$complaints"
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
check_root "$scratch/unpacked" share/man/man1/gemmara.1
diff <(files_of "$scratch/unpacked") <(files_of "$scratch/installed") || fail "files of the archive"

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
recommended=$(dpkg-deb -f "$package" Recommends)
[ "${recommended%, libedit2}" = "gnuplot-nox | gnuplot" ] || fail "the package recommends $recommended"
# What stands in every Debian is all that must be there: a user's own copy runs.
for needed in $(dpkg-deb -f "$package" Depends | tr ',' '\n' | sed 's/^ *\([^ ]*\).*/\1/'); do
  case $needed in
    libc6 | libstdc++6 | libgcc-s1) ;;
    *) fail "the package depends on $needed" ;;
  esac
done
dpkg-deb -x "$package" "$scratch/root"
check_root "$scratch/root/usr" share/man/man1/gemmara.1.gz share/doc/gemmara/changelog.gz
diff <(files_of "$scratch/root/usr") <(files_of "$scratch/installed") || fail "files of the package"
zcat "$scratch/root/usr/share/man/man1/gemmara.1.gz" |
  cmp - "$scratch/installed/share/man/man1/gemmara.1" || fail "the man page of the package"
zcat "$scratch/root/usr/share/doc/gemmara/changelog.gz" | head -n 1 | grep -q '^gemmara (6\.1) ' ||
  fail "the changelog of the package"
if command -v lintian >/dev/null; then
  lintian --fail-on error,warning --no-cfg "$package" >"$scratch/lintian" 2>&1 ||
    fail "$(cat "$scratch/lintian")"
else
  skip "lintian is not there, so the Debian package was not judged"
fi
exit $skipped
