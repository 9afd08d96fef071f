#!/usr/bin/env bash
# Exports studbooks and has R read them back. Leaves with 77, "skipped", where there is no R.
#   exports_test.sh PROGRAM SOURCE_DIRECTORY [TABLE...]
set -euo pipefail
program=$1 source_directory=$2
shift 2
if ! command -v Rscript >/dev/null; then
  echo "skipped: there is no Rscript (scripts/test --with-r installs it)"
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
CSV

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
for table in "$work/hostile.csv" "$source_directory/examples/studbook/animals.csv" "$@"; do
  check "$table" "export-$((number += 1))"
done
