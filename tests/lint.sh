#!/usr/bin/env bash
# What a reader should not have to look for: the format of every source, headers that do not compile
# alone, what clang-tidy finds by the short list in .clang-tidy, and a commit whose subject is long.
# What is not installed is left out, and told.
#
#   tests/lint.sh BUILD_FOLDER     one in which CMake has run; clang-tidy takes its commands
set -eu
build=$(realpath "${1:-build}")
cd "$(dirname "$0")/.."
status=0

complain() {
  echo "LINT: $*"
  status=1
}

all=(console_code foundations cifcode common_code src tests bench)
product=(console_code foundations cifcode common_code src)

# ---- format; another version breaks lines in other places ----

if command -v clang-format-14 >/dev/null; then
  find "${all[@]}" \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format-14 --dry-run -Werror || complain "format these by clang-format-14 -i"
else
  echo "clang-format-14 is not there: formats were not looked at"
fi

# ---- each header alone, and the sources that packaging/windows.sh does not compile so ----

compile_alone() {
  echo "#include \"$1\"" | g++ -std=c++20 -fsyntax-only -Wall -Wextra -Wshadow -Werror -I. -Itests/unit -x c++ -
}
export -f compile_alone
# The folder for Windows needs that system's headers.
find "${all[@]}" \( -name '*.h' -o -path '*/posix/*.cpp' \) ! -path '*/windows/*' -print0 |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'compile_alone "$0" || { echo "$0 does not compile alone"; exit 1; }' ||
  complain "these do not compile alone"

# ---- clang-tidy of what this machine compiles, several sources in one or each alone, but tables ----

if command -v clang-tidy >/dev/null; then
  # bugprone-suspicious-include: sources that are compiled in one include each other.
  sed -n 's/^ *"file": "\(.*\)",\?$/\1/p' "$build/compile_commands.json" |
    grep -v -e '_Table\.cpp$' -e "^$PWD/tests/" -e "^$build/tests/" | tr '\n' '\0' |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy -p "$build" --quiet --checks=-bugprone-suspicious-include \
      --extra-arg=-Wno-unknown-warning-option 2>"$build/lint.log" ||
    { grep -v ' warnings\? generated' "$build/lint.log"; complain "clang-tidy, by the list in .clang-tidy"; }
else
  echo "clang-tidy is not there: its checks were not made"
fi

# ---- the newest commit; none where this is no clone ----

if subject=$(git log -1 --format=%s 2>/dev/null) && [ ${#subject} -ge 72 ]; then
  complain "the subject of the last commit has ${#subject} characters, not fewer than 72: $subject"
fi
exit $status
