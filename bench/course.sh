#!/usr/bin/env bash
# Random courses of work: bench/course.sh COUNT SEED plays COUNT command sequences on the core, then
# COUNT / 10 runs of random presses on the windows. A failure names the seed of its sequence;
# bench/course.sh 1 SEED plays it alone.
set -eu
cd "$(dirname "$0")/.."
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
. .ci/packages
need_packages
build_preset release course_test ui_test kigumi
count=${1:-1000}
export KIGUMI_COURSES=$count KIGUMI_MONKEYS=$(((count + 9) / 10)) KIGUMI_SEED=${2:-$(date +%s)}
echo "seed $KIGUMI_SEED"
time nice -n 19 build/bin/course_test --gtest_brief=1 >build/course.log 2>&1 ||
    { tail -n 40 build/course.log; exit 1; }
grep courses build/course.log
time nice -n 19 build/bin/ui_test --gtest_filter='MonkeyTest.*' --gtest_brief=1 >build/monkey.log 2>&1 ||
    { tail -n 40 build/monkey.log; exit 1; }
echo "$KIGUMI_MONKEYS runs on the windows"
