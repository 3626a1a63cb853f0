// The solver: found, started on the model, waited for, and its result files read or kept.
#pragma once

#include "analysis/process.h"
#include "analysis/result.h"
#include "base/files.h"
#include "model/model.h"

#include <functional>

namespace kigumi {

// How a run of the solver went.
struct SolverOutcome {
    double seconds = 0.0; // by the time of day; negative when the run passed midnight
    int status = -1;      // exit status of the solver, -1 when it did not start
    bool stopped = false; // ended by the user; there are no results then
};

// What a run needs of the outside; tests put their own in place.
struct SolverSeams {
    std::function<int(const fs::path& program, const fs::path& folder,
                      const KeepWaiting& keep_waiting)>
        start;                       // as run_program
    std::function<int()> hundredths; // as hundredths_of_day
};

// Hundredths of a second since midnight, local time of day.
int hundredths_of_day();

// The solver to run: FRAMESLV.EXE in the working directory when that can be started, else the
// bundled frameslv beside this program. An empty path when there is neither.
fs::path find_solver(const fs::path& work_dir);

// True for the user's own solver, the one in the working directory.
bool is_own_solver(const fs::path& work_dir, const fs::path& solver);

// True when the model can be analysed and its results shown: members, at least one support and one
// load, and no more nodes and members than the result tables hold. Else a message tells what is
// missing.
bool can_analyse(const Model& model);

// Writes FRAMESLV.IN into the working directory, removes what an earlier run left there, starts the
// solver and waits for it, without limit or as long as `keep_waiting` says. Reads the whole model.
// Of which input the results are is kept beside them (frameslv.fgp); results of an earlier run that
// are put back keep theirs, or are marked as of none.
// 0 (a run that was stopped leaves no result files), or -1 after a message: that of save_honegumi
// when the input could not be written (the solver would work on an old one),
// "前の解析結果%sを消せません" when a file of an earlier run could be taken for one of this run,
// "Could not create process" when there is no solver or it does not start; in both of these what an
// earlier run left is back. The exit status decides nothing here.
int run_solver(const Model& model, const SolverSeams& solver_seams, const fs::path& work_dir,
               SolverOutcome& outcome, const KeepWaiting& keep_waiting = {});

// What the solver of the last run said of its failure (first line of frameslv.err, UTF-8); empty
// when it said nothing.
std::string solver_complaint(const fs::path& work_dir);

// Shows "解析計算を終了しまし %7.2f sec".
void show_solver_time(const SolverOutcome& outcome);

// Whose results a reading takes: those of any frame that was ever solved, or only those that fit
// the model, as after a run on it.
enum class ResultsOf { any_frame, this_model };

// Reads frameslv.zlv, frameslv.lst and frameslv.dsp of the working directory into `result` and the
// level tables of `model`, with their input and its supports and loads; the selection (kensaku) is
// emptied. 0, or -1 after a message, with the
// solver's complaint as its reason where a file is missing, and both counts of nodes
// where those of the last two files differ; all tables are then as before. Results that do not fit
// where they should are refused with "計算結果がこの骨組のものではありません".
int FrameSlv(Model& model, Result& result, const fs::path& work_dir,
             ResultsOf whose = ResultsOf::any_frame);

// Copies frameslv.lst and, directly behind it, frameslv.dsp of the working directory into one file
// (解析結果保存, .out). 0 after "解析結果を保存しました"; -1 after a message, an old file is then
// whole.
int save_results(const fs::path& work_dir, const fs::path& path);

} // namespace kigumi
