#!/usr/bin/env bash
# Usage: census_test.sh SPX PROJECT_DIR
# The census of each place, and of all, against presence counted from the tables by awk.
set -euo pipefail
export LC_ALL=C
spx=$1
book=$2/examples/zoos
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Days without animals are left away: a series begins with the first animal of its place.
# Dates known by year or month lie between two censuses of 1 January, wherever in their range they are put.
# shellcheck disable=SC2016
count='
function day(text) { return text == "" ? "9999" : text (length(text) == 4 ? "-07" : "") (length(text) < 10 ? "-15" : "") }
function is_at(place) { return zoo == "" || place == zoo || index(place, zoo ".") == 1 }
FNR == 1 { next }
FILENAME ~ /animals/ {
  id = $1; sex[id] = $4; end[id] = day($8)
  if ($11 != "wild-born") { days[id] = 1; on[id, 1] = day($5); to[id, 1] = $7 }
  next
}
{ on[$1, ++days[$1]] = day($2); to[$1, days[$1]] = $3 ~ /out$|released|surplus/ ? "gone" : $4 }
END {
  for (year = 1990; year <= 2024; ++year) {
    date = year "-01-01"; count["male"] = count["female"] = total = 0
    for (id in sex) {
      place = "gone"
      for (at = 1; at <= days[id]; ++at) if (on[id, at] <= date) place = to[id, at]
      if (place != "gone" && is_at(place) && end[id] > date) { ++count[sex[id]]; ++total }
    }
    if (total > 0) print date "," count["male"] "," count["female"] "," total
  }
}'
for zoo in "" 2 3 2.1 2.2 2.3 2.4 3.1 3.2 3.3 3.4; do
  awk -F, -v zoo="$zoo" "$count" "$book/animals.csv" "$book/events.csv" > "$scratch/by_awk"
  "$spx" --studbook "$book" census --location "${zoo:-all}" --from 1990-01-01 --until 2024-01-01 --format csv \
    --columns date,males,females,total 2> /dev/null | tail -n +2 | grep -v ',0,0,0$' > "$scratch/by_spx"
  diff "$scratch/by_awk" "$scratch/by_spx" || { echo "the census of \"$zoo\" differs"; exit 1; }
done
