#!/bin/sh
# Removes what installations from a build folder have put in place, by their RECORD, and the folders named for this library that are
# empty then: cmake --build BUILD --target hedro34_uninstall
set -eu
record=$1
[ -s "$record" ] || { echo "hedro34: nothing was installed from this build folder" >&2; exit 1; }
removed=0
missing=0
prefix=
while IFS= read -r line; do
  case $line in
    'prefix '*)
      prefix=${line#prefix }
      continue
      ;;
    /*) ;;
    *) continue ;;
  esac
  folder=$(dirname "$line")
  [ -e "$line" ] || [ -L "$line" ] || missing=$((missing + 1))
  if ! rm -f "$line"; then
    echo "hedro34: $line cannot be removed: run this as who installed it" >&2
    exit 1
  fi
  removed=$((removed + 1))
  # Up as long as a folder of ours is in the way, and never out of the prefix.
  below=${folder#"$prefix"/}
  while [ "$below" != "$folder" ]; do
    case /$below/ in */hedro34/* | */HEDRO34/*) ;; *) break ;; esac
    rmdir "$prefix/$below" 2>/dev/null || break
    case $below in */*) below=${below%/*} ;; *) break ;; esac
  done
done <"$record"
rm -f "$record"
echo "hedro34: $((removed - missing)) files removed"
if [ "$missing" -gt 0 ]; then echo "hedro34: $missing more were not where they had been put; a moved folder is yours to remove"; fi
