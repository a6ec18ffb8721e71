#!/usr/bin/env bash
# A long fuzzing run of the MPS and LP readers: many random corruptions of
# valid files, under AddressSanitizer. Usage: tools/fuzz_readers.sh [ROUNDS] [SEED]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
rounds=${1:-200000}
seed=${2:-$RANDOM}
build=build/io-asan
cmake -S . -B "$build" -G Ninja -DZORVAN_BUILD_PYTHON=OFF -DZORVAN_BUILD_TESTS=ON \
  -DZORVAN_SANITIZE=ON -DPython_EXECUTABLE="$root/.venv/bin/python" >/dev/null
cmake --build "$build" --target engine_tests
echo "fuzzing $rounds rounds with seed $seed"
ZORVAN_FUZZ_ROUNDS=$rounds ZORVAN_FUZZ_SEED=$seed \
  "$build/engine/tests/engine_tests" --gtest_filter='FuzzTest.*'
