#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds everything and runs all tests. Arguments go to ctest, such as -R kmod.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/bootstrap.sh
cmake --preset test
cmake --build --preset test
ctest --preset test --parallel "$(nproc)" "$@"
