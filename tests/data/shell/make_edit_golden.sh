#!/bin/sh
# Rebuilds edit_golden.txt with gfortran; an argument sets how many values are drawn, and a second one the file to write.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
gfortran -O1 -o "$scratch/edit_golden" -J "$scratch" "$here/edit_golden.f90"
"$scratch/edit_golden" "${1:-}" > "$scratch/edit_golden.txt"
mv "$scratch/edit_golden.txt" "${2:-$here/edit_golden.txt}"
