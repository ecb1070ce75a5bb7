#!/usr/bin/env bash
# Shows the same flight to the Linux module and, under Wine, to a Windows one, and compares what they
# draw. Usage: compare.sh LINUX_BUILD WINDOWS_BUILD WORK_FOLDER [WINE]
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
linux=$(readlink -f "$1")
windows=$(readlink -f "$2")
mkdir -p "$3"
work=$(readlink -f "$3")
wine=${4:-$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)}

export WINEPREFIX=$work/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
unset DISPLAY
trap 'wineserver -k 2>/dev/null || true' EXIT

# The same fonts on both sides: Wine calls them by their own names only.
if [ ! -f "$work/fonts.reg" ]; then
  printf 'REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements]\r\n%s\r\n%s\r\n' \
    '"Arial"="Liberation Sans"' '"Courier New"="Liberation Mono"' >"$work/fonts.reg.new"
  "$wine" regedit /S "$(printf 'Z:%s' "$work/fonts.reg.new" | tr / '\\')"
  mv "$work/fonts.reg.new" "$work/fonts.reg"
fi

run() {  # name, program...
  local name=$1
  shift
  rm -rf "$work/sim" "${work:?}/$name"
  cp -r "$root/demo" "$work/sim"
  (cd "$work" && "$@" --sim sim --out "$name" --parameters demo-jet) >"$work/$name.log" 2>&1 ||
    { tail -n 20 "$work/$name.log"; echo "$name: gaugecheck failed"; exit 1; }
  grep -q '^OK' "$work/$name.log" || { tail -n 20 "$work/$name.log"; exit 1; }
}

cp "$root/tests/windows/flight.scenario" "$work/flight.scenario"
run linux "$linux/gaugecheck" "$linux/avq1.gau" --scenario flight.scenario
run windows "$wine" "$windows/gaugecheck.exe" "$windows/avq1.gau" --scenario flight.scenario
# A host that offers no service and no device context must not bring the module down.
run windows-bare "$wine" "$windows/gaugecheck.exe" "$windows/avq1.gau" --bare
"$linux/gauge_compare" "$work/linux" "$work/windows" >"$work/compare.log" ||
  { grep -vE '^ ' "$work/compare.log"; exit 1; }
tail -n 1 "$work/compare.log"
