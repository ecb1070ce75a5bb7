#!/usr/bin/env bash
# Rebuilds the demo region's navigation data from the public-domain sources:
#
#     tools/build_demo.sh SOURCES FOLDER
#
# SOURCES holds ourairports/, nasr/, cifp/ and airspace/; FOLDER is the Navdata folder to fill, as a
# rule demo/avq/Navdata. Same sources, same bytes. The order matters: OurAirports brings the
# airports and Canada's navaids, the FAA the rest; coded procedures find their airports there.
set -euo pipefail
[ "$#" -eq 2 ] || { sed -n '2,9s/^# \{0,1\}//p' "$0" >&2; exit 2; }
sources=$(readlink -f "$1")
folder=$2
avqdata=${AVQDATA:-$(dirname "$(readlink -f "$0")")/../build/release/avqdata}
region=38,-84,48,-66  # the United States' north-east and the Canadian border country

import() { "$avqdata" import "$@" --into "$folder" --region "$region" >/dev/null; }

mkdir -p "$folder"
rm -f "$folder"/{avq_navs,avq_ints,fsb_awy2,avq_apts,avq_sids,avq_stars,avq_apps,atc_bdry,ils,scheduled}.txt
import ourairports "$sources/ourairports" --icao-only --min-runway 4000 --only airports
import ourairports "$sources/ourairports" --countries CA --only navaids
import nasr "$sources/nasr" --only navaids,fixes,airways
import cifp "$sources/cifp/self_contained_excerpt.pc" \
  --only airports,fixes,airways,procedures,localizers
import airspace "$sources/airspace/faa_us_airspace_2026-04-16.geojson.gz" \
  --classes ARTCC,CLASS_B,CLASS_C --simplify 0.1
"$avqdata" check "$folder"
