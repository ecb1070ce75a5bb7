#!/usr/bin/env bash
# Flies the test's twin jet in FlightGear without a screen: fgfs.sh HOME [OPTIONS of fgfs]. Loopback
# only: run it in a network namespace of its own.
set -euo pipefail
home=$1
shift
here=$(dirname "$(readlink -f "$0")")
mkdir -p -m 700 "$home/xdg"
export HOME=$home FG_HOME=$home XDG_RUNTIME_DIR=$home/xdg PATH=$PATH:/usr/games
export DBUS_FATAL_WARNINGS=0 LIBGL_ALWAYS_SOFTWARE=1 vblank_mode=0
[ -n "${DISPLAY:-}" ] || exec xvfb-run -a -s '-screen 0 320x240x24 -nolisten tcp' "$0" "$home" "$@"
exec fgfs --fg-aircraft="$here" --aircraft=twinjet \
  --disable-terrasync --disable-real-weather-fetch --disable-sound --disable-ai-traffic \
  --disable-clouds --disable-clouds3d --disable-random-objects --disable-random-vegetation \
  --disable-random-buildings --disable-splash-screen --disable-hud --disable-save-on-exit \
  --fog-disable --shading-flat --texture-filtering=1 --max-fps=60 \
  --prop:/sim/rendering/shaders/quality-level=0 --prop:/sim/rendering/particles=0 \
  --prop:/sim/rendering/draw-mask/terrain=0 --prop:/sim/rendering/draw-mask/clouds=0 \
  --prop:/sim/rendering/draw-mask/models=0 --prop:/sim/rendering/draw-mask/aircraft=0 \
  --geometry=160x120 --visibility=500 --telnet=_,_,20,_,5401,_ "$@"
