#!/usr/bin/env bash
# Every writer under a full disk, a closed folder and death at random moments, COUNT times each
# (default 200). SEED repeats a run.
set -eu
cd "$(dirname "$0")/.."
. .ci/packages
need_packages
build_preset release faults_test
export KIGUMI_FAULTS=${1:-200} KIGUMI_SEED=${2:-$(date +%s)}
echo "seed $KIGUMI_SEED"
time nice -n 19 build/bin/faults_test --gtest_brief=1
