#!/usr/bin/env bash
# Installs everything (scripts/setup.sh), then runs the engine's GoogleTest
# suite and the Python test suite.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
bash scripts/setup.sh
# What the tests need beyond the package (the test extra of pyproject.toml).
.venv/bin/python -m pip install -q pytest scipy

cmake -S . -B build/engine-tests -G Ninja -DZORVAN_BUILD_PYTHON=OFF \
  -DZORVAN_BUILD_TESTS=ON -DPython_EXECUTABLE="$root/.venv/bin/python" >/dev/null
cmake --build build/engine-tests -j2
ctest --test-dir build/engine-tests --output-on-failure

.venv/bin/python -X dev -m pytest -q tests "$@"
