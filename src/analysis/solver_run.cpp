#include "analysis/solver_run.h"

#include "analysis/result_fit.h"
#include "analysis/result_input.h"
#include "analysis/result_reader.h"
#include "analysis/solver_input.h"
#include "base/files_platform.h"
#include "base/format.h"
#include "base/message.h"
#include "trace/spy.h"

#include <chrono>
#include <ctime>
#include <fstream>
#include <span>

namespace kigumi {

namespace {

constexpr const char* own_solver = "FRAMESLV.EXE";
#ifdef _WIN32
constexpr const char* bundled_solver = "frameslv.exe";
#else
constexpr const char* bundled_solver = "frameslv";
#endif

// What a run leaves beside them, and what tells of them.
constexpr const char* files_beside[] = {input_file_name, notes_file_name};
constexpr const char* complaint_file = "frameslv.err";
// What the bundled solver writes before it gives its results their names.
constexpr const char* unfinished_files[] = {"frameslv.zl~", "frameslv.ls~", "frameslv.ds~"};
constexpr std::size_t longest_complaint = 300; // bytes shown

// Takes away what a run leaves in the working directory; false after a message when a file stays.
bool remove_results(const fs::path& work_dir) {
    for (const auto& names :
         {std::span<const char* const>(result_files), std::span<const char* const>(files_beside),
          std::span<const char* const>(unfinished_files),
          std::span<const char* const>(&complaint_file, 1)}) {
        for (const char* name : names) {
            std::error_code code;
            fs::remove(work_file(work_dir, name), code);
            if (code) {
                show_message(text_format("前の解析結果%sを消せません", name));
                return false;
            }
        }
    }
    return true;
}

// Reads one of the result files and parses it by `parse` (text, reason -> 0 or -1), with the two
// messages.
template <class Parse>
int read_result_file(const fs::path& work_dir, const char* name, Parse parse) {
    std::string reason;
    const auto text = read_file(work_file(work_dir, name), &reason);
    if (!text) {
        const std::string complaint = solver_complaint(work_dir);
        return refuse(text_format("ファイル%sをオ－プンできません", name),
                      complaint.empty() ? reason : complaint);
    }
    return parse(*text, reason) < 0
               ? refuse(text_format("ファイル%sの読み込みに失敗しました", name), reason)
               : 0;
}

// What the last run left in the working directory, to be put back when a new one does not start.
// FRAMESLV.IN is that of the new one then.
class EarlierResults {
  public:
    explicit EarlierResults(const fs::path& work_dir) : work_dir_(work_dir) {
        for (const auto& names : {std::span<const char* const>(result_files),
                                  std::span<const char* const>(files_beside)}) {
            for (const char* name : names) {
                files_.emplace_back(name, read_file(work_file(work_dir_, name)));
            }
        }
    }
    // Why a file could not be put back; empty when all are.
    std::string put_back() const {
        std::string reason;
        for (const auto& [name, bytes] : files_) {
            std::error_code ignored;
            if (bytes && !fs::exists(work_file(work_dir_, name), ignored)) {
                save_file(work_file(work_dir_, name), *bytes, &reason);
            }
        }
        ResultInput input = read_result_input(work_dir_);
        if (input.print.input.empty()) {
            input.put_back = true;
            save_result_input(work_dir_, input);
        }
        return reason;
    }

  private:
    fs::path work_dir_;
    std::vector<std::pair<const char*, std::optional<std::string>>> files_;
};

// Tells beside the results of a run of which input they are; nothing when there are none.
void keep_input(const Model& model, const fs::path& work_dir, bool own) {
    ResultInput input;
    input.print = fingerprint(model);
    input.self_weight = noted_self_weight(work_dir);
    if (input.self_weight == SelfWeight::unknown && !own) {
        input.self_weight = SelfWeight::no; // the bundled solver was given no option
    }
    save_result_input(work_dir, input);
}

// A whole result file for the copy, or nothing after a message.
std::optional<std::string> read_for_copy(const fs::path& work_dir, const char* name,
                                         const char* unable_to_open) {
    const fs::path path = work_file(work_dir, name);
    std::error_code code;
    const std::uintmax_t size = fs::file_size(path, code);
    if (code || !std::ifstream(path, std::ios::binary).is_open()) {
        show_message(unable_to_open);
        return {};
    }
    if (size > largest_file) {
        show_message("Can not get memory for lpADR");
        return {};
    }
    std::string reason;
    std::optional<std::string> bytes = read_file(path, &reason);
    if (!bytes || bytes->size() < size) {
        show_message("Read Error", reason);
        return {};
    }
    return bytes;
}

} // namespace

int hundredths_of_day() {
    using namespace std::chrono;
    const auto now = system_clock::now().time_since_epoch();
    const std::time_t whole =
        system_clock::to_time_t(system_clock::time_point(floor<seconds>(now)));
    const std::tm* local = std::localtime(&whole);
    const auto rest = duration_cast<milliseconds>(now - floor<seconds>(now)).count() / 10;
    return local->tm_hour * 360000 + local->tm_min * 6000 + local->tm_sec * 100 +
           static_cast<int>(rest);
}

bool is_own_solver(const fs::path& work_dir, const fs::path& solver) {
    return solver == work_file(work_dir, own_solver);
}

fs::path find_solver(const fs::path& work_dir) {
    for (const fs::path& path : {work_file(work_dir, own_solver), program_dir() / bundled_solver}) {
        if (is_program(path)) {
            return path;
        }
    }
    return {};
}

bool can_analyse(const Model& model) {
    const auto refused = [](const std::string& why) {
        show_message(why);
        return false;
    };
    if (model.N_Beam == 0) {
        return refused("部材がないため解析できません");
    }
    if (model.N_Fix == 0) {
        return refused("固定節点がないため解析できません");
    }
    if (model.N_Load == 0) {
        return refused("荷重節点がないため解析できません");
    }
    if (model.N_Beam > result_capacity || model.N_Node > result_capacity) {
        return refused(text_format("節点%d、部材%dの骨組です。解析結果は節点と部材それぞれ%dまで"
                                   "しか表示できないため、解析を始めません",
                                   model.N_Node, model.N_Beam, result_capacity));
    }
    return true;
}

int run_solver(const Model& model, const SolverSeams& solver_seams, const fs::path& work_dir,
               SolverOutcome& outcome, const KeepWaiting& keep_waiting) {
    spy("Enter run_solver()");
    outcome = {};
    if (save_honegumi(model, work_file(work_dir, "FRAMESLV.IN")) < 0) {
        return -1;
    }
    const fs::path solver = find_solver(work_dir);
    KeepWaiting asked;
    if (keep_waiting) {
        asked = [&] {
            outcome.stopped = !keep_waiting();
            return !outcome.stopped;
        };
    }
    const EarlierResults earlier(work_dir);
    const int start = solver_seams.hundredths();
    if (!solver.empty()) {
        if (!remove_results(work_dir)) {
            earlier.put_back();
            return -1;
        }
        outcome.status = solver_seams.start(solver, work_dir, asked);
    }
    if (outcome.status < 0) {
        return refuse("Could not create process", earlier.put_back());
    }
    outcome.seconds = (solver_seams.hundredths() - start) * 0.01;
    if (outcome.stopped) {
        remove_results(work_dir);
    } else {
        keep_input(model, work_dir, is_own_solver(work_dir, solver));
    }
    return 0;
}

std::string solver_complaint(const fs::path& work_dir) {
    const auto text = read_file(work_file(work_dir, complaint_file));
    if (!text) {
        return {};
    }
    const std::string line = text->substr(0, text->find_first_of("\r\n"));
    return line.size() <= longest_complaint ? line : std::string();
}

void show_solver_time(const SolverOutcome& outcome) {
    show_message(text_format("解析計算を終了しまし %7.2f sec", outcome.seconds));
}

int FrameSlv(Model& model, Result& result, const fs::path& work_dir, ResultsOf whose) {
    spy("Enter FrameSlv()");
    Levels levels;
    Listing listing;
    std::vector<Disp> disp;
    if (read_result_file(
            work_dir, "frameslv.zlv",
            [&](std::string_view text, std::string&) { return parse_levels(text, levels); }) < 0 ||
        read_result_file(work_dir, "frameslv.lst", [&](std::string_view text, std::string&) {
            return parse_listing(text, listing);
        }) < 0) {
        return -1;
    }
    const auto parse_disp = [&](std::string_view text, std::string& reason) {
        if (parse_displacements(text, disp) < 0) {
            return -1;
        }
        if (disp.size() == listing.setuten.size()) {
            return 0;
        }
        reason = text_format("節点の数が frameslv.lst では %zu、frameslv.dsp では %zu です",
                             listing.setuten.size(), disp.size());
        return -1;
    };
    if (read_result_file(work_dir, "frameslv.dsp", parse_disp) < 0) {
        return -1;
    }
    if (whose == ResultsOf::this_model &&
        !match_results(model_shape(model), {listing.setuten, listing.stress, disp}).fits) {
        return refuse("計算結果がこの骨組のものではありません");
    }
    store_levels(model, levels);
    store_listing(result, listing);
    store_displacements(result, disp);
    const auto frame = read_solver_frame(work_dir);
    result.input = read_result_input(work_dir);
    result.input_file = frame ? frame->print : Fingerprint{};
    result.roles = roles_of_results(model, result, frame);
    return 0;
}

int save_results(const fs::path& work_dir, const fs::path& path) {
    spy("Enter save_results()");
    std::string reason;
    if (!can_save(path, &reason)) {
        return refuse("Error: Unable to open OutFile", reason);
    }
    const auto listing = read_for_copy(work_dir, "frameslv.lst", "Error: Unable to open LST_FILE");
    if (!listing) {
        return -1;
    }
    const auto displacements =
        read_for_copy(work_dir, "frameslv.dsp", "Error: Unable to open DSP_FILE");
    if (!displacements) {
        return -1;
    }
    if (save_file(path, *listing + *displacements, &reason) < 0) {
        return refuse("Write Error", reason);
    }
    show_message("解析結果を保存しました");
    return 0;
}

} // namespace kigumi
