#!/usr/bin/env bash
# Rebuilds the demo region's navigation data from the public-domain sources:
#
#     tools/build_demo.sh SOURCES FOLDER
#
# SOURCES holds ourairports/, nasr/, cifp/ and airspace/; FOLDER is the Navdata folder to fill, as a
# rule demo/avq/Navdata. Same sources, same bytes. The airports are OurAirports', the navaids of the
# United States the FAA's alone.
set -euo pipefail
[ "$#" -eq 2 ] || { sed -n '2,9s/^# \{0,1\}//p' "$0" >&2; exit 2; }
avqdata=${AVQDATA:-$(dirname "$(readlink -f "$0")")/../build/release/avqdata}

"$avqdata" build "$2" "$1/ourairports" "$1/nasr" "$1/cifp/self_contained_excerpt.pc" \
  "$1/airspace/faa_us_airspace_2026-04-16.geojson.gz" \
  --region=38,-84,48,-66 --icao-only --min-runway 4000 \
  --only ourairports=airports,navaids --only nasr=navaids,fixes,airways \
  --only cifp=airports,fixes,airways,procedures,localizers \
  --classes ARTCC,CLASS_B,CLASS_C --simplify 0.1
