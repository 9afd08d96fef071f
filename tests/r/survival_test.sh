#!/usr/bin/env bash
# Has R's package survival compute the curves and tests of studbooks, and compares. Leaves with 77, "skipped", where
# there is no R or no such package.
#   survival_test.sh PROGRAM SOURCE_DIRECTORY
set -euo pipefail
program=$1 source_directory=$2
if ! Rscript -e 'stopifnot(requireNamespace("survival", quietly = TRUE))' >/dev/null 2>&1; then
  echo "skipped: there is no R with its package survival (scripts/test --with-r installs it)"
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home
mkdir "$HOME"
for seed in 1 2 3; do
  Rscript "$source_directory/tests/r/survival.R" "$program" "$work/studbook-$seed" "$seed"
done
