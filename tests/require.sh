#!/usr/bin/env bash
# What packaging/require.sh says and does where packages are missing, with an apt-get that only
# pretends: without a terminal, when apt-get fails, for a user without sudo, and at a terminal (by
# script, of util-linux) with either answer.
set -eu
source=$(cd "$(dirname "$0")/.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/bin"

fail() {
  echo "FAILED: $*"
  cat "$scratch/said"
  exit 1
}

# The pretended apt-get notes what it is asked for, and makes the file that was missing.
cat >"$scratch/bin/apt-get" <<TOOL
#!/bin/sh
echo "\$*" >>"$scratch/asked"
case \$1 in install) touch "$scratch/tool" ;; esac
TOOL
printf '#!/bin/sh\nexec "$@"\n' >"$scratch/bin/sudo"
chmod +x "$scratch"/bin/*

cat >"$scratch/try" <<TRY
#!/usr/bin/env bash
PATH=$scratch/bin:\$PATH
. "$source/packaging/require.sh"
require "$scratch/tool=tool-package" && echo "All there"
TRY
chmod +x "$scratch/try"

fresh() { rm -f "$scratch/tool" "$scratch/asked"; }
says() { grep -q "$1" "$scratch/said" || fail "$2: it does not say \"$1\""; }

fresh
"$scratch/try" >"$scratch/said" 2>&1 </dev/null || fail "without a terminal it installs"
says "Missing packages: tool-package" "without a terminal"
says "All there" "without a terminal"
grep -qx "install -y tool-package" "$scratch/asked" || fail "apt-get was not asked"
"$scratch/try" >"$scratch/said" 2>&1 </dev/null
[ "$(cat "$scratch/said")" = "All there" ] || fail "nothing is said where nothing is missing"

# A script that stops at the first failure tells what is missing all the same.
mv "$scratch/bin/apt-get" "$scratch/apt-get"
printf '#!/bin/sh\n[ "$1" = update ]\n' >"$scratch/bin/apt-get"
chmod +x "$scratch/bin/apt-get"
sed 's/^#!.*/&\nset -eu/; s/ && echo .*//' "$scratch/try" >"$scratch/strict"
fresh
if bash "$scratch/strict" >"$scratch/said" 2>&1 </dev/null; then fail "apt-get failed, and nobody said so"; fi
says "Please install these packages (names as in Debian): tool-package" "apt-get fails"
mv "$scratch/apt-get" "$scratch/bin/apt-get"

# A user without sudo is told what to ask for, at once, and apt-get is not called.
mkdir "$scratch/alone"
for tool in sort tr bash; do ln -s "$(command -v "$tool")" "$scratch/alone"; done
cp "$scratch/bin/apt-get" "$scratch/alone"
printf '#!/bin/sh\necho 1000\n' >"$scratch/alone/id"
chmod +x "$scratch/alone/id"
sed "s|^PATH=.*|PATH=$scratch/alone|" "$scratch/try" >"$scratch/alone/try"
fresh
if bash "$scratch/alone/try" >"$scratch/said" 2>&1 </dev/null; then fail "a user without sudo"; fi
says "Please install these packages (names as in Debian): tool-package" "a user without sudo"
says "As root: apt-get install tool-package" "a user without sudo"
[ ! -e "$scratch/asked" ] || fail "a user without sudo: apt-get ran"

if ! command -v script >/dev/null; then
  echo "SKIPPED: script is not there, so nothing was tried at a terminal"
  exit 77
fi
for answer in n "" y; do
  fresh
  (sleep 0.3; echo "$answer") | script -qec "$scratch/try" /dev/null >"$scratch/said" 2>&1 || true
  says "Missing packages: tool-package" "answer <$answer>"
  says "Install them with .*apt-get as root" "answer <$answer>"
  if [ "$answer" = y ]; then
    says "All there" "answer <$answer>"
  else
    says "Please install these packages" "answer <$answer>"
    [ ! -e "$scratch/asked" ] || fail "answer <$answer>: apt-get ran"
  fi
done
echo "Packages are named, and installed after a yes alone"
