#!/usr/bin/env bash
# Which room may include which, what an exported header may include, and words that belong in no file.
set -euo pipefail
cd "$(dirname "$0")/.."

# room: rooms it sees besides itself | libraries it may use besides the standard one
rooms="
base:       |
platform:   base |
embedded:   base platform | xxhash.h nanoflann.hpp
transfer:   base platform |
dmpio:      base platform |
sensor:     base platform |
channel:    base platform |
heatsource: base platform |
tools:      base platform |
import:     base platform | nlohmann
view:       base platform | nlohmann
check:      base platform | nlohmann
cli:        base platform embedded transfer dmpio sensor channel heatsource tools import view check | nlohmann CLI
bindings:   base platform embedded transfer dmpio sensor channel heatsource tools import view check | pybind11
"
system='[a-z_0-9]+|(cxxabi|dirent|dlfcn|errno|fcntl|limits|locale|poll|signal|stdlib|sys/[a-z]+|unistd)\.h'
failed=0
complain() { echo "$1" >&2; failed=1; }

# check_file FILE ROOM SEEN LIBRARIES
check_file() {
  local line target
  while IFS=: read -r line target; do
    case $target in
      [\"\<]orvmesh/*) ;;
      \"*/*) [[ " $2 $3 " == *" $(cut -d/ -f1 <<<"${target#\"}") "* ]] ||
        complain "$1:$line: $target: room '$2' sees only: $2 $3 orvmesh" ;;
      \"*) complain "$1:$line: $target: name the room too, as in \"$2/${target#\"}" ;;
      *) target=${target:1:-1}
        [[ $target =~ ^($system)$ || " $4 " == *" ${target%%/*} "* ]] ||
          complain "$1:$line: <$target>: room '$2' uses only the standard library and: ${4:-nothing else}" ;;
    esac
  done < <(sed -nE 's/^ *# *include +(["<][^">]+[">]).*/\1/; T; =; p' "$1" | paste -d: - -)
}

for folder in src/*/ python/bindings/; do
  room=$(basename "$folder")
  row=$(grep "^$room:" <<<"$rooms") || { complain "$folder: not in the list of rooms of $0"; continue; }
  IFS='|' read -r seen libraries <<<"${row#*:}"
  while IFS= read -r file; do
    check_file "$file" "$room" "$(xargs <<<"$seen")" "$(xargs <<<"$libraries")"
  done < <(find "$folder" -name '*.h' -o -name '*.cpp')
done
for file in include/orvmesh/*.h; do check_file "$file" orvmesh "" ""; done

# Files say what the system does, not which document asked for it.
words='\b(specificat[i]on|spec\.md|design\.md)\b|\bspec(ified)? (says|part)\b|\bParts? [0-9]+(\.[0-9]+)?\b'
if git grep --untracked -nIiE "$words" -- . | cut -c1-160 >&2; then complain "reword these lines in the project's own terms"; fi
exit $failed
