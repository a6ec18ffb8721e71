#!/usr/bin/env bash
# Installs everything the project needs on a fresh Debian machine: system
# packages, a virtual environment .venv at the repository root, and the zorvan
# package built from this checkout into it.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

debs=(g++ make libboost1.81-dev libgtest-dev zlib1g-dev glpk-utils coinor-libipopt-dev)
missing=()
for d in "${debs[@]}"; do
  dpkg -s "$d" >/dev/null 2>&1 || missing+=("$d")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi

python=${PYTHON:-python3}
[ -x .venv/bin/python ] || "$python" -m venv .venv
.venv/bin/python -m pip install -q --upgrade pip
# Build requirements go into the venv so the package builds without isolation
# (faster, and the same HiGHS at build and run time).
.venv/bin/python -m pip install -q "scikit-build-core>=0.10" cmake ninja "numpy>=2.0" \
  "highsbox==1.15.1" "pytest>=7"
.venv/bin/python -m pip install -q --no-build-isolation .
