// Of which input results are: the file frameslv.fgp beside them (docs/formats/result-input.md), and
// whether they are those of a model.
#pragma once

#include "analysis/result.h"
#include "analysis/solver_roles.h"
#include "base/files.h"

#include <optional>

namespace kigumi {

// The three files of a run's results, in the working directory.
constexpr const char* result_files[] = {"frameslv.zlv", "frameslv.lst", "frameslv.dsp"};
// Beside them: their input, and the notes of the bundled solver.
constexpr const char* input_file_name = "frameslv.fgp";
constexpr const char* notes_file_name = "frameslv.not";

// Writes frameslv.fgp for the result files as they are. 0; -1, without a message, when one of them
// is missing or the file cannot be written: their input is then unknown, and no old file says else.
int save_result_input(const fs::path& work_dir, const ResultInput& input);

// What frameslv.fgp says of the result files as they are: an unknown input when it is missing,
// broken, of a later version, or not of these files. The self-weight is that of the notes then.
ResultInput read_result_input(const fs::path& work_dir);

// What the notes of a solver say of self-weight; unknown without notes.
SelfWeight noted_self_weight(const fs::path& work_dir);

// Supports and loads of the results: those of FRAMESLV.IN (`frame`; nothing when there is none)
// where it is their input, by fingerprint, or by its frame where their input is unknown; else those
// of the model when that is their input. Numbers and places are those of the result nodes.
ResultRoles roles_of_results(const Model& model, const Result& result,
                             const std::optional<SolverFrame>& frame);

// How results stand to what is there now.
enum class ResultAge {
    current, // of this input
    old,     // of another one, or of one edited since
    unknown, // nobody knows their input
};

// Compares with the model: members, sections, materials, supports and loads. Without a model, with
// FRAMESLV.IN as it was when they were read; nothing contradicts them when that is missing.
ResultAge result_age(const Model& model, const Result& result);

// The same for a frame just read from a file. Where that brings no supports and loads, as axis
// data, members, sections and materials are compared with the model, all with FRAMESLV.IN.
ResultAge result_age_of_frame(const Model& model, const Result& result);

// The same as result_age for the files in the working directory; nothing when there are none.
std::optional<ResultAge> stored_result_age(const Model& model, const fs::path& work_dir);

// "古い結果", "入力不明", or an empty text for current ones.
const char* age_words(ResultAge age);
// What it means, in a sentence; empty for current ones.
const char* age_sentence(ResultAge age);

} // namespace kigumi
