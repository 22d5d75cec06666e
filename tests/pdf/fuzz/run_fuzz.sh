#!/usr/bin/env bash
# Builds the PDF writer's fuzz target with clang's libFuzzer (with address and
# undefined-behaviour checks) and runs it for a short while from a few seeds
# it writes itself. Skips when clang++ is missing.
# Usage: run_fuzz.sh <build folder> [seconds]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
src=$(cd "$here/../../.." && pwd)/src
build=${1:?usage: run_fuzz.sh <build folder> [seconds]}
seconds=${2:-20}

cxx=$(command -v clang++ || command -v clang++-14 || true)
if [ -z "$cxx" ]; then
  echo "clang++ not found: PDF fuzzing skipped"
  exit 0
fi
mkdir -p "$build/pdf-fuzz"
out=$(cd "$build/pdf-fuzz" && pwd)
rm -rf "$out/scratch"
mkdir -p "$out/corpus" "$out/seeds" "$out/scratch"

# Rebuild only when a source is newer than the binary.
if [ ! -x "$out/pdf_fuzz" ] || [ -n "$(find "$src/pdf" "$here/pdf_fuzz.cpp" -newer "$out/pdf_fuzz" -print -quit)" ]; then
  "$cxx" -std=c++20 -O1 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
    -I"$src" "$here/pdf_fuzz.cpp" "$src"/pdf/*.cpp -o "$out/pdf_fuzz"
fi

# Little-endian 16- and 32-bit numbers as raw bytes.
le16() { printf "\\x$(printf %02x $(($1 & 255)))\\x$(printf %02x $(($1 >> 8 & 255)))"; }
le32() { le16 $(($1 & 65535)); le16 $(($1 >> 16 & 65535)); }
# bmp <mode byte> <bits> <width> <height> <palette bytes> <data bytes>
bmp() {
  printf "\\x$1"
  printf 'BM'; le32 $((54 + $5 + $6)); le32 0; le32 $((54 + $5)); le32 40
  le32 "$3"; le32 "$4"; le16 1; le16 "$2"; le32 0; le32 "$6"; le32 0; le32 0; le32 0; le32 0
  head -c $(($5 + $6)) /dev/urandom
}
bmp 01 24 4 2 0 24 > "$out/seeds/bmp24"
bmp 03 24 5 3 0 48 > "$out/seeds/bmp24gray"
bmp 01 8 3 2 1024 8 > "$out/seeds/bmp8"
bmp 03 4 6 2 64 8 > "$out/seeds/bmp4gray"
bmp 01 1 10 2 8 8 > "$out/seeds/bmp1"
{ printf '\x00'; head -c 64 /dev/urandom; printf 'Příliš žluťoučký kůň (úpěl) \\ ďábelské ódy'; } > "$out/seeds/text"

cd "$out"
PDF_FUZZ_SCRATCH="$out/scratch" ./pdf_fuzz -max_total_time="$seconds" -malloc_limit_mb=64 -rss_limit_mb=1024 \
  -artifact_prefix="$out/" -print_final_stats=1 corpus seeds
