#!/usr/bin/env bash
# Exports studbooks and reads them back in R. Exits with 77, "skipped", where R is missing.
#   exports_test.sh PROGRAM SOURCE_DIRECTORY [TABLE...]
set -euo pipefail
program=$1 source_directory=$2
shift 2
if ! command -v Rscript >/dev/null; then
  echo "skipped: Rscript was not found (scripts/test --with-r installs R)"
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home
mkdir "$HOME"

# Leading zeros, quotes, "#", separators, blanks at the ends, letters outside ASCII, missing values.
cat >"$work/hostile.csv" <<'CSV'
id,sire,dam,sex,birth_date,death_date,birth_location
007,WILD,WILD,male,1990-05-01,,"Hay ""Loft"" #3"
008,WILD,WILD,female,1991-06,1999-12-31,O'Brien | Sons
0009,007,008,female,1995,2001-02-03,"Ställe, Süd"
A#1,007,008,male,1996-02-29,,'quoted'
"B ""x""",A#1,0009,unknown,2000-01-01,,a|b
NaN,007,missing,female,2001-01-01,,plain
Jäger,007,008,male,2002-01-01,2010-01-01,Jägerhof
Åsa-the-second,Jäger,0009,female,2004-01-01,,
šárka,Jäger,Åsa-the-second,female,2006-01-01,,plain
CSV

# Every animal has an ID wider than the six columns of STUDBOOK.DAT.
awk 'BEGIN {
  print "id,sire,dam,sex,birth_date,death_date,birth_location"
  for (i = 1; i <= 20000; ++i) {
    parent = i > 2 ? sprintf("House-Ä-%06d", int(i / 2)) : "WILD"
    mate = i > 2 ? sprintf("House-Ä-%06d", int(i / 2) - 1 + 2 * (i < 4)) : "WILD"
    printf "House-Ä-%06d,%s,%s,%s,%d,,zoo\n", i, parent, mate, i % 2 ? "male" : "female", 1900 + int(i / 200)
  }
}' >"$work/wide.csv"

check() {
  local table=$1 directory=$work/$2
  local studbook=$table
  [[ $(basename "$table") == animals.csv ]] && studbook=$(dirname "$table")
  mkdir "$directory"
  for what in pedigree fields dattrf r-loader; do
    "$program" --studbook "$studbook" export "$what" --to "$directory" 2>"$work/messages" ||
      { cat "$work/messages"; exit 1; }
  done
  echo "$(basename "$table"): $(Rscript "$source_directory/tests/r/read_exports.R" "$table" "$directory")"
}
number=0
for table in "$work/hostile.csv" "$work/wide.csv" "$source_directory/examples/studbook/animals.csv" "$@"; do
  check "$table" "export-$((number += 1))"
done
