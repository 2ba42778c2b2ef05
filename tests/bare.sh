#!/usr/bin/env bash
# Takes the packages to a Debian that has nothing yet, as root and as a user who cannot become root:
# tests/bare.sh [BUILD-DIRECTORY] [FOLDER]. The Debian is made in FOLDER by debootstrap (half a
# minute, from the network), or taken as an earlier run left it there. Needs root. Status 77: it
# cannot be made here.
set -eu -o pipefail
source=$(cd "$(dirname "$0")/.." && pwd)
build=$(realpath "${1:-$source/build}")

for tool in debootstrap cpack dpkg-deb; do
  if ! command -v "$tool" >/dev/null; then
    echo "SKIPPED: $tool is not there"
    exit 77
  fi
done
if [ "$(id -u)" -ne 0 ]; then
  echo "SKIPPED: only root can make a Debian"
  exit 77
fi

scratch=$(mktemp -d)
debian=${2:-$scratch/debian}
clean() {
  umount "$debian/proc" 2>/dev/null || true
  rm -rf --one-file-system "$scratch"
}
trap clean EXIT

fail() {
  echo "FAILED: $*"
  exit 1
}

as_root() { chroot "$debian" /bin/bash -c "$1"; }
as_user() { chroot "$debian" /bin/su - crystal -c "$1"; }

# Everything in it but what apt and dpkg keep for themselves, and what belongs to the user.
all_files() {
  (cd "$debian" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./tmp -o -path ./home \
    -o -path ./var/cache -o -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./var/log \) \
    -prune -o -print | sort)
}

# The first session of the README, in a copy of the examples, with the values of the paper.
first_session() {
  as_user "rm -rf try && mkdir try && cp -r $2/share/doc/gemmara/examples try && cd try &&
    $2/bin/gemmara examples/hematite-pressure/*.cif examples/hematite-pressure/demo.mcr" \
    >"$scratch/said" </dev/null || fail "$1: the first session ends with status $?"
  grep -q '^Fe1-O1 ×3	2\.113(4)	' "$debian/home/crystal/try/bonds.tsv" || fail "$1: its table"
  grep -q "$3" "$scratch/said" || fail "$1: it does not say \"$3\""
}

if [ ! -x "$debian/bin/bash" ]; then
  echo "-- a bare Debian in $debian"
  debootstrap --variant=minbase bookworm "$debian" >"$scratch/log" || fail "$(tail -n 5 "$scratch/log")"
fi
mount -t proc proc "$debian/proc"
as_root "id crystal >/dev/null 2>&1 || useradd -m -s /bin/bash crystal"
cpack --config "$build/CPackConfig.cmake" -B "$scratch/packed" >"$scratch/log" ||
  fail "$(tail -n 5 "$scratch/log")"

echo "-- scripts, where nothing is installed and nobody can install"
rm -rf "$debian/home/crystal/source"
mkdir "$debian/home/crystal/source"
cp -R "$source"/{demo.sh,test.sh,packaging} "$debian/home/crystal/source"
for script in demo.sh test.sh; do
  if as_user "timeout 20 source/$script" >"$scratch/said" 2>&1; then fail "$script runs"; fi
  grep -q '^As root: apt-get install cmake g++' "$scratch/said" || fail "$script: $(cat "$scratch/said")"
done

echo "-- archive, unpacked by the user"
cp "$scratch"/packed/*.tar.gz "$debian/home/crystal/gemmara.tar.gz"
as_user "rm -rf unpacked && mkdir unpacked && tar xzf gemmara.tar.gz -C unpacked --strip-components=1"
first_session archive /home/crystal/unpacked 'gnuplot is not installed: cells.gp draws cells.csv'

echo "-- Debian package, installed and removed"
as_root "apt-get update" >"$scratch/log" 2>&1 || fail "$(tail -n 5 "$scratch/log")"
cp "$scratch"/packed/*.deb "$debian/root/gemmara.deb"
all_files >"$scratch/before"
as_root "apt-get install -y --no-install-recommends /root/gemmara.deb" >"$scratch/log" 2>&1 ||
  fail "$(tail -n 5 "$scratch/log")"
first_session package /usr 'gnuplot is not installed: cells.gp draws cells.csv'
as_root "apt-get purge -y gemmara" >"$scratch/log" 2>&1 || fail "$(tail -n 5 "$scratch/log")"
all_files | diff "$scratch/before" - || fail "what stands behind > stayed when the package went"

echo "-- Debian package with what it recommends"
as_root "apt-get install -y --install-recommends /root/gemmara.deb" >"$scratch/log" 2>&1 ||
  fail "$(tail -n 5 "$scratch/log")"
first_session "package and gnuplot" /usr 'The graph is drawn in cells.svg'
as_root "apt-get purge -y --autoremove gemmara" >"$scratch/log" 2>&1 || fail "$(tail -n 5 "$scratch/log")"
echo "The packages run on a bare Debian, and go without a trace"
