#!/usr/bin/env bash
# Opens the example mold in ParaView through the reader of python/paraview: check_paraview.sh BUILD_DIR
# Debian's python3-paraview cannot stay beside python3-vtk9, which other tests need. So where no pvpython is installed,
# the distribution's packages are unpacked into BUILD_DIR/paraview (720 MB); nothing is installed.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath "${1:-build/dev}")
root=$build/paraview

unpack() {
  local part=$root.part package libraries
  rm -rf "$part"
  mkdir -p "$part/archives/partial"
  local fetch=(apt-get install -qq --yes --no-install-recommends --download-only -o Debug::NoLocking=1
    -o Dir::Cache::archives="$part/archives" paraview python3-paraview)
  "${fetch[@]}" >/dev/null 2>&1 || { apt-get update -qq && "${fetch[@]}" >/dev/null; }
  for package in "$part"/archives/*.deb; do dpkg-deb --extract "$package" "$part"; done
  rm -r "$part/archives"
  libraries=$(cd "$part" && find usr/lib -name '*.so*' -not -path '*/python3/*' -printf "$root/%h\n" | sort -u | paste -sd:)
  printf '#!/bin/sh\nexport LD_LIBRARY_PATH=%s\nexport PYTHONPATH=%s\nexec %s "$@"\n' "$libraries" \
    "$root/usr/lib/python3/dist-packages" "$root/usr/bin/pvpython" >"$part/pvpython"
  chmod +x "$part/pvpython"
  mv "$part" "$root"
}

pvpython=$(command -v pvpython) || {
  pvpython=$root/pvpython
  [ -x "$pvpython" ] || unpack
}
log=$build/paraview.log
if ! ORVMESH=$build/src/cli/orvmesh ORVMESH_SOURCE=$PWD ORVMESH_PVPYTHON=$pvpython PYTHONDONTWRITEBYTECODE=1 \
  QT_QPA_PLATFORM=offscreen /usr/bin/python3 tests/python/test_paraview.py Reader.test_in_paraview >"$log" 2>&1; then
  cat "$log"
  exit 1
fi
echo "opened with $pvpython"
