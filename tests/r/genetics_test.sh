#!/usr/bin/env bash
# Compares the genetic commands with the tabular method in base R. Leaves with 77, "skipped", where there is no R.
#   genetics_test.sh PROGRAM SOURCE_DIRECTORY [TABLE...]
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
r_directory=$source_directory/tests/r

for seed in 1 2; do
  Rscript "$r_directory/random_pedigree.R" "$seed" >"$work/random-$seed.csv"
done
for table in "$work"/random-*.csv "$@"; do
  rm -rf "$work/results"
  mkdir "$work/results"
  for what in genetics inbreeding mean-kinship generations completeness; do
    "$program" --studbook "$table" "$what" --format csv -o "$work/results/$what.csv" 2>"$work/messages" ||
      { cat "$work/messages"; exit 1; }
  done
  echo "$(basename "$table"): $(Rscript "$r_directory/tabular.R" "$table" "$work/results")"
done
