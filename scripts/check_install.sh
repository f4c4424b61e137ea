#!/usr/bin/env bash
# Can others use what is installed? Installs into a folder of its own, builds the consumer example against it by CMake
# and by pkg-config with every compiler there is, runs it, and lets the Debian packages be installed, run and removed in
# a root folder of their own. Nothing outside the temporary folder changes.
# Usage: check_install.sh [BUILD_DIRECTORY]
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath "${1:-build/dev}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "check_install: $*" >&2; exit 1; }
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "$* failed"; }; }

prefix=$work/prefix
quietly cmake --install "$build" --prefix "$prefix"
quietly "$prefix/bin/orvmesh" import --quiet examples/mold/mold.msh "$work/mold.ofe"
quietly man -l "$prefix"/share/man/man1/orvmesh.1
bash -n "$prefix/share/bash-completion/completions/orvmesh"

export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name orvmesh.pc)")
library=$(dirname "$(find "$prefix" -name liborvmesh.so)")
for compiler in g++ clang++; do
  command -v $compiler >/dev/null || continue
  quietly cmake -S examples/consumer -B "$work/$compiler" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER=$compiler
  quietly cmake --build "$work/$compiler"
  # shellcheck disable=SC2046
  quietly $compiler -std=c++17 -Wall -Wextra -Werror examples/consumer/assemble.cpp $(pkg-config --cflags --libs orvmesh) \
    -o "$work/assemble"
  for program in "$work/$compiler/assemble" "$work/assemble"; do
    LD_LIBRARY_PATH=$library "$program" "$work/mold.ofe" "$work/solver.ofe" >"$work/told"
    grep -q '^sensor 1 is now number 1$' "$work/told" || fail "$program: no sensor numbers"
    quietly "$prefix/bin/orvmesh" info "$work/solver.ofe"
  done
done

site=$prefix/lib/python3/dist-packages
if [ -d "$site/orvmesh" ]; then
  script='import orvmesh, sys; print(len(orvmesh.read(sys.argv[1]).nodes), orvmesh.__file__)'
  PYTHONPATH=$site PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 -c "$script" "$work/mold.ofe" >"$work/told" ||
    fail "the installed Python module does not run"
  grep -q "$site" "$work/told" || fail "Python took another module: $(cat "$work/told")"
fi

(cd "$work" && quietly cpack --config "$build/CPackConfig.cmake" -B "$work/packages")
root=$work/root
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
touch "$root"/var/lib/dpkg/{status,available}
mkdir "$work/stub"  # the scripts of the library package run ldconfig, which must not touch this machine
printf '#!/bin/sh\n' >"$work/stub/ldconfig"
chmod +x "$work/stub/ldconfig"
in_root() { PATH="$work/stub:$PATH" quietly dpkg --force-script-chrootless --root="$root" --force-depends --force-not-root --force-bad-path --log="$work/dpkg.log" "$@"; }
in_root --install "$work"/packages/*.deb
quietly env LD_LIBRARY_PATH="$(dirname "$(find "$root/usr" -name 'liborvmesh.so.1')")" "$root/usr/bin/orvmesh" variants
mapfile -t packages < <(dpkg --root="$root" --get-selections | cut -f1)
in_root --remove "${packages[@]}"
left=$(find "$root/usr" -type f 2>/dev/null || true)
[ -z "$left" ] || fail "the removed packages leave $left"
echo "installed, packaged, linked, run and removed"
