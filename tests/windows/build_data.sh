#!/usr/bin/env bash
# Makes navigation data of the same sources on Linux and under Wine: the same files byte for byte; and
# the demo's anew, which must be what lies in demo/.
# Usage: build_data.sh LINUX_BUILD WINDOWS_BUILD WORK_FOLDER [WINE]
#
# The sources are those below ../shared/data where they are at hand, and always a small folder of our
# own, whose name is not of ASCII letters.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
linux=$(readlink -f "$1")
windows=$(readlink -f "$2")
mkdir -p "$3"
work=$(readlink -f "$3")
wine=${4:-$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)}

export WINEPREFIX=$work/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' LC_ALL=C.UTF-8
unset DISPLAY
trap 'wineserver -k 2>/dev/null || true' EXIT

# name, expected status, sources...: built twice on either side, so that a folder is also replaced.
compare() {
  local name=$1 wanted=$2 system status
  shift 2
  rm -rf "$work/data-$name"
  mkdir -p "$work/data-$name"
  cd "$work/data-$name"
  for system in linux windows linux windows; do
    local program=("$linux/avqdata")
    [ "$system" = linux ] || program=("$wine" "$windows/avqdata.exe")
    status=0
    "${program[@]}" build "Données-$system" "$@" >"$system.log" 2>"$system.errors" || status=$?
    [ "$status" -eq "$wanted" ] ||
      { tail -n 20 "$system.log" "$system.errors"; echo "avqdata on $system: status $status"; exit 1; }
  done
  if [ "$wanted" -ne 2 ]; then
    diff -r "Données-linux" "Données-windows" || { echo "$name: the folders differ"; exit 1; }
    diff <(sed 's/linux/windows/g' linux.log) <(tr -d '\r' <windows.log | tr '\\' /) ||
      { echo "$name: the reports differ"; exit 1; }
    [ "$(find . -mindepth 1 -maxdepth 1 -type d | wc -l)" -eq 2 ] || { ls; exit 1; }
  fi
  echo "$name: the same on both systems, $(find "Données-linux" -type f 2>/dev/null | wc -l) files"
}

own="$work/sources/Données ü 東"
rm -rf "$work/sources"
mkdir -p "$own"
python3 - "$own" <<'END'
import sys, zipfile
nav = ('EFF_DATE,NAV_ID,NAV_TYPE,NAME,LAT_DECIMAL,LONG_DECIMAL,FREQ\n'
       '2023/09/07,QUS,VOR,NEW,45,-81,112\n2023/09/07,QUT,VOR,TWO,45,-82,112.5\n')
fix = 'FIX_ID,LAT_DECIMAL,LONG_DECIMAL,FIX_USE_CODE\nBBBBB,45,-83,WP\n'
awy = ('AWY_LOCATION,AWY_ID,POINT_SEQ,SEG_VALUE,SEG_TYPE,AWY_SEG_GAP_FLAG\n'
       'C,V1,10,QUS,VOR,N\nC,V1,20,QUT,VOR,N\n')
with zipfile.ZipFile(sys.argv[1] + '/28 days.zip', 'w', zipfile.ZIP_DEFLATED) as archive:
    for name, text in (('NAV_BASE.csv', nav), ('FIX_BASE.csv', fix), ('AWY_SEG.csv', awy)):
        archive.writestr(name, text)
END
compare own 0 "../sources/Données ü 東"
compare nothing 2 "../sources/none"
data=$root/../shared/data
if [ -d "$data/nasr" ]; then
  data=$(readlink -f "$data")
  cp -r "$data/xplane12" "$data/nasr" "$data/ourairports" "$data/airspace" "$work/sources/"
  cp "$data/cifp/self_contained_excerpt.pc" "$work/sources/"
  compare world 0 ../sources/xplane12 ../sources/nasr ../sources/ourairports \
    ../sources/airspace ../sources/self_contained_excerpt.pc
  rm -rf "$work/demo"
  AVQDATA=$linux/avqdata "$root/tools/build_demo.sh" "$data" "$work/demo" >"$work/demo.log"
  diff -rq "$root/demo/avq/Navdata" "$work/demo" || { echo "demo: no more what its script makes"; exit 1; }
  echo "demo: as its script makes it"
else
  echo "world: ../shared/data is not there, not compared"
fi
