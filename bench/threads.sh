#!/usr/bin/env bash
# The thread sanitizer over what runs on several threads: the solver's factorisation and
# substitution, and the search for hidden lines. Then the solver alone with 2 to 8 threads on a
# floor of 33 x 33 cells and one of 100 x 100.
set -eu
cd "$(dirname "$0")/.."
export LC_ALL=C.UTF-8 TSAN_OPTIONS="halt_on_error=1 ${TSAN_OPTIONS-}"
. .ci/packages
need_packages
build_preset tsan solver_test core_test frameslv floor_input
time nice -n 19 build-tsan/bin/solver_test --gtest_brief=1
time nice -n 19 build-tsan/bin/core_test --gtest_brief=1 --gtest_filter='HiddenLine*:*Perspective*'
folder=build-tsan/threads
mkdir -p "$folder"
for cells in 33 100; do
    build-tsan/bin/floor_input "$cells" >"$folder/FRAMESLV.IN"
    for threads in 2 3 8; do
        (cd "$folder" && nice -n 19 ../bin/frameslv --threads "$threads")
    done
done
