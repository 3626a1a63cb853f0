#include "solver/program/run.h"

#include "solver/model/check.h"
#include "solver/statics/solve.h"
#include "solver/text/input.h"
#include "solver/text/output.h"
#include "solver/text/records.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <numbers>
#include <ostream>
#include <stdexcept>
#include <system_error>

namespace frameslv {

namespace {

namespace fs = std::filesystem;

constexpr const char* input_file = "FRAMESLV.IN";

Fault read_text(const fs::path& folder, std::string& text) {
    const fs::path path = folder / input_file;
    std::error_code error;
    if (fs::is_directory(path, error))
        return {Exit::no_input, text_of("%s はフォルダです", input_file)};
    const std::uintmax_t size = fs::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file)
        return {Exit::no_input, text_of("%s を開けません", input_file)};
    text.resize(static_cast<size_t>(size));
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.gcount() != static_cast<std::streamsize>(text.size()))
        return {Exit::no_input, text_of("%s を読めません", input_file)};
    if (text.empty())
        return {Exit::no_input, text_of("%s が空です", input_file)};
    return {};
}

void print_resultant(std::ostream& out, const char* title, const Resultant& sum) {
    out << text_of("%s: %14.6g %14.6g %14.6g  モーメント: %14.6g %14.6g %14.6g\n", title, sum(0),
                   sum(1), sum(2), sum(3), sum(4), sum(5));
}

// What a run says goes to the console and into its notes.
class Teller {
  public:
    Teller(std::ostream& out, Notes& notes) : out_(out), notes_(notes) {}

    void tell(Note::Weight weight, const char* key, const std::string& text) {
        tell({weight, key, text});
    }
    void tell(const Note& note) {
        out_ << console_line(note) << "\n";
        notes_.push_back(note);
    }
    std::ostream& out() { return out_; }

  private:
    std::ostream& out_;
    Notes& notes_;
};

constexpr auto fact = Note::Weight::fact;
constexpr auto notice = Note::Weight::notice;
constexpr auto warning = Note::Weight::warning;

void tell_options(const Settings& settings, Teller& teller) {
    if (settings.self_weight)
        teller.tell(fact, "self-weight", "部材の自重を加えました (--self-weight)");
    if (settings.p_delta)
        teller.tell(fact, "second-order", "軸力による 2 次の効果を加えました (--p-delta)");
    if (settings.modes > 0)
        teller.tell(fact, "mass",
                    text_of("固有振動の質量は%s、重力加速度は %g です (--modal)",
                            settings.mass == MassKind::lumped ? "集中質量" : "整合質量",
                            settings.gravity));
}

void tell_certainty(const Certainty& certainty, Teller& teller) {
    const auto& bound = certainty.bound;
    teller.tell(fact, "condition", text_of("条件数の推定 %.1e", certainty.condition));
    teller.tell(fact, "bounds",
                text_of("誤差の限界 (それぞれの最大値に対する比): 変位 %.1e 回転 %.1e 力 %.1e "
                        "モーメント %.1e",
                        bound[0], bound[1], bound[2], bound[3]));
    if (certainty.mended)
        teller.tell(fact, "mended", "約 32 桁の計算で解を補正しました");
}

void tell_summary(const Model& model, const Solution& solution, Teller& teller) {
    teller.tell(fact, "counts",
                text_of("節点 %zu  部材 %zu  支点 %d  荷重 %d  未知数 %d", model.node.size(),
                        model.member.size(), model.N_Fix, model.N_Load, solution.unknowns));
    if (solution.repeated_members > 0)
        teller.tell(
            notice, "repeated",
            text_of("同じ 2 節点を結ぶ部材が %zu 本重なっています", solution.repeated_members));
    if (model.N_Load == 0)
        teller.tell(notice, "no-loads", "荷重がありません");
    for (const Note& note : solution.notes)
        teller.tell(note);
    print_resultant(teller.out(), "荷重の合計", solution.loads);
    print_resultant(teller.out(), "反力の合計", solution.reactions);
    teller.tell(fact, "residual",
                text_of("釣合いの残差 %.1e  荷重と反力の差 %.1e (荷重に対する比)",
                        solution.residual, solution.imbalance));
    tell_certainty(solution.certainty, teller);
}

void tell_parts(const Model& model, Teller& teller) {
    constexpr size_t most_named = 10;
    const std::vector<std::string> parts = part_labels(model);
    if (parts.size() < 2)
        return;
    teller.tell(notice, "parts",
                text_of("構造はつながっていない %zu つの部分からできています", parts.size()));
    for (size_t i = 0; i < std::min(parts.size(), most_named); i++)
        teller.tell(fact, "part", parts[i]);
    if (parts.size() > most_named)
        teller.tell(fact, "part", "ほか");
}

Fault read_model(const fs::path& folder, Teller& teller, Model& model) {
    std::string text;
    if (Fault fault = read_text(folder, text))
        return fault;
    if (Fault fault = read_input(text, model))
        return fault;
    if (lacks_line_end(text))
        teller.tell(warning, "unended", text_of("%s の最後の行に改行がありません", input_file));
    snap_to_levels(model);
    if (Fault fault = check_model(model))
        return fault;
    if (Fault fault = check_held(model))
        return fault;
    tell_parts(model, teller);
    return {};
}

void print_check(std::ostream& out, const Model& model, const System& system) {
    constexpr double mega = 1e6;
    out << text_of("節点 %zu  部材 %zu  支点 %d  荷重 %d  未知数 %zu\n", model.node.size(),
                   model.member.size(), model.N_Fix, model.N_Load, system.size());
    if (system.size() > 0)
        out << text_of("分解した剛性行列 %.1f MB  演算 %.0f 百万回  スレッド %d\n",
                       static_cast<double>(system.factor().factor_bytes()) / mega,
                       system.factor().symbolic().flops / mega, system.factor().threads());
    out << "入力に誤りはありません\n";
}

void tell_of_modes(const char* what, const ModeSet& set, int asked, Teller& teller) {
    if (!set.proven)
        teller.tell(warning, "modes-unproven",
                    text_of("%sに見落としがないことを確かめられませんでした", what));
    else if (!set.modes.empty())
        teller.tell(fact, "modes",
                    text_of("%s: 求めた数 %d、得た数 %zu、この間に見落としはありません", what,
                            asked, set.modes.size()));
}

Fault find_modes(const Model& model, const Settings& settings, const System& system,
                 const Solution& solution, Teller& teller, ResultTexts& texts) {
    if (settings.modes > 0) {
        ModeSet set;
        if (Fault fault = natural_modes(model, settings, system, set))
            return fault;
        for (size_t k = 0; k < set.modes.size(); k++)
            teller.out() << text_of("固有振動 %zu: %.6g Hz\n", k + 1,
                                    set.modes[k].value / (2.0 * std::numbers::pi));
        if (set.modes.empty())
            teller.tell(notice, "no-mass", "質量がありません (密度が 0 です)");
        texts.mod = natural_mode_text(model, set.modes);
        tell_of_modes("固有振動", set, settings.modes, teller);
    }
    if (settings.buckling > 0) {
        ModeSet set;
        if (Fault fault = buckling_modes(settings, system, solution, set))
            return fault;
        for (size_t k = 0; k < set.modes.size(); k++)
            teller.out() << text_of("座屈荷重係数 %zu: %.6g\n", k + 1, set.modes[k].value);
        if (set.modes.empty())
            teller.tell(notice, "no-buckling", "この荷重では座屈しません");
        texts.buc = buckling_mode_text(model, set.modes);
        tell_of_modes("座屈荷重係数", set, settings.buckling, teller);
    }
    return {};
}

Fault run_steps(const fs::path& folder, const Settings& settings, std::ostream& out, Notes& notes) {
    Model model;
    Solution solution;
    ResultTexts texts;
    Teller teller(out, notes);
    if (Fault fault = read_model(folder, teller, model))
        return fault;
    System system(model, settings.threads);
    if (settings.check) {
        print_check(out, model, system);
        return {};
    }
    if (Fault fault = solve(model, settings, system, solution))
        return fault;
    tell_summary(model, solution, teller);
    if (settings.p_delta)
        teller.tell(fact, "rounds", text_of("P-Δ 解析は %d 回で収束しました", solution.rounds));
    tell_options(settings, teller);
    if (Fault fault = find_modes(model, settings, system, solution, teller, texts))
        return fault;
    system.drop_factor();
    add_result_texts(model, solution, texts);
    texts.notes = notes_text(notes);
    return write_results(folder, texts);
}

// The last stand against what a file of any size may do to the memory.
Fault guarded_steps(const fs::path& folder, const Settings& settings, std::ostream& out,
                    Notes& notes) {
    try {
        return run_steps(folder, settings, out, notes);
    } catch (const std::bad_alloc&) {
        return {Exit::no_memory, "メモリが足りません"};
    } catch (const std::length_error&) {
        return {Exit::no_memory, "メモリが足りません"};
    }
}

const char* key_of(Exit code) {
    switch (code) {
    case Exit::no_input:
        return "no-input";
    case Exit::bad_text:
        return "bad-text";
    case Exit::bad_model:
        return "bad-model";
    case Exit::mechanism:
        return "mechanism";
    case Exit::inexact:
        return "inexact";
    case Exit::no_memory:
        return "no-memory";
    case Exit::unstable:
        return "unstable";
    default:
        return "refused";
    }
}

// A run that could not write its results leaves those of an earlier one; any other fault says that
// the frame has none.
void leave_fault(const fs::path& folder, const Fault& fault, Notes& notes) {
    if (fault.code != Exit::no_output) {
        remove_results(folder);
        notes.push_back({Note::Weight::warning, key_of(fault.code), fault.text});
        write_notes(folder, notes);
    }
    write_error_file(folder, fault.text);
}

} // namespace

int run(const fs::path& folder, const Settings& settings, std::ostream& out, std::ostream& err) {
    Notes notes;
    const Fault fault = guarded_steps(folder, settings, out, notes);
    if (fault) {
        err << fault.text << "\n";
        if (!settings.check)
            leave_fault(folder, fault, notes);
    }
    return static_cast<int>(fault.code);
}

} // namespace frameslv
