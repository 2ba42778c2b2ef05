#!/usr/bin/env bash
# Builds the program for Windows by mingw-w64 and packs it: build-windows/gemmara.exe, which needs
# no other library, and build-windows/gemmara-VERSION-windows.zip. tests/windows.sh runs it.
set -eu
cd "$(dirname "$0")/.."
. packaging/require.sh
require cmake=cmake make=make zip=zip x86_64-w64-mingw32-g++-posix=g++-mingw-w64-x86-64-posix

build=$PWD/build-windows
cmake --toolchain packaging/mingw.cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release \
  -DGEMMARA_TESTS=OFF >/dev/null
cmake --build "$build" --target gemmara --parallel "$(nproc)"
if command -v pandoc >/dev/null; then
  cmake --build "$build" --target gemmara_page
else
  echo "gemmara.html is left out: pandoc is not there" >&2
fi

version=$(sed -n 's/^project(gemmara VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
name=gemmara-$version-windows
zip=$build/$name.zip
rm -rf "$build/$name" "$zip"
mkdir "$build/$name"
# The documents keep the places that they have to one another, so that their links hold.
cp -R README.md CHANGELOG.md CONTRIBUTING.md LICENSE docs examples "$build/$name"
cp "$build/gemmara.exe" "$build/$name"
[ ! -e "$build/gemmara.html" ] || cp "$build/gemmara.html" "$build/$name"
x86_64-w64-mingw32-strip "$build/$name/gemmara.exe"
(cd "$build" && zip -q -r -X "$zip" "$name")
rm -r "${build:?}/$name"
echo "$zip"
