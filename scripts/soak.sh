#!/usr/bin/env bash
# soak.sh [CTEST ARGUMENT...]: the tests with all that takes minutes (every region, every second), in a build whose sanitizers
# watch the stack too.
set -euo pipefail
export LENS_SOAK=1
exec "$(dirname "$0")/test.sh" soak "$@"
