#include "solver/run.h"

#include "solver/check.h"
#include "solver/input.h"
#include "solver/output.h"
#include "solver/records.h"
#include "solver/solve.h"

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

void print_summary(std::ostream& out, const Model& model, const Solution& solution) {
    out << text_of("節点 %zu  部材 %zu  支点 %d  荷重 %d  未知数 %d\n", model.node.size(),
                   model.member.size(), model.N_Fix, model.N_Load, solution.unknowns);
    if (solution.repeated_members > 0)
        out << text_of("注意: 同じ 2 節点を結ぶ部材が %zu 本重なっています\n",
                       solution.repeated_members);
    if (model.N_Load == 0)
        out << "注意: 荷重がありません\n";
    for (const Note& note : solution.notes)
        out << "警告 (WARNING): " << note.text << "\n";
    print_resultant(out, "荷重の合計", solution.loads);
    print_resultant(out, "反力の合計", solution.reactions);
    out << text_of("釣合いの残差 %.1e  荷重と反力の差 %.1e (荷重に対する比)\n", solution.residual,
                   solution.imbalance);
    const auto& bound = solution.certainty.bound;
    out << text_of("条件数の推定 %.1e  誤差の限界: 変位 %.1e 回転 %.1e 力 %.1e モーメント %.1e "
                   "(それぞれの最大値に対する比)\n",
                   solution.certainty.condition, bound[0], bound[1], bound[2], bound[3]);
}

void print_parts(std::ostream& out, const Model& model) {
    constexpr size_t most_named = 10;
    const std::vector<std::string> parts = part_labels(model);
    if (parts.size() < 2)
        return;
    out << text_of("注意: 構造はつながっていない %zu つの部分からできています\n", parts.size());
    for (size_t i = 0; i < std::min(parts.size(), most_named); i++)
        out << "  " << parts[i] << "\n";
    if (parts.size() > most_named)
        out << "  ほか\n";
}

Fault read_model(const fs::path& folder, std::ostream& out, Model& model) {
    std::string text;
    if (Fault fault = read_text(folder, text))
        return fault;
    if (Fault fault = read_input(text, model))
        return fault;
    if (lacks_line_end(text))
        out << text_of("警告 (WARNING): %s の最後の行に改行がありません\n", input_file);
    snap_to_levels(model);
    if (Fault fault = check_model(model))
        return fault;
    if (Fault fault = check_held(model))
        return fault;
    print_parts(out, model);
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

Fault find_modes(const Model& model, const Settings& settings, const System& system,
                 const Solution& solution, std::ostream& out, ResultTexts& texts) {
    std::vector<Mode> natural, buckling;
    if (settings.modes > 0) {
        if (Fault fault = natural_modes(model, settings, system, natural))
            return fault;
        for (size_t k = 0; k < natural.size(); k++)
            out << text_of("固有振動 %zu: %.6g Hz\n", k + 1,
                           natural[k].value / (2.0 * std::numbers::pi));
        if (natural.empty())
            out << "注意: 質量がありません (密度が 0 です)\n";
        texts.mod = natural_mode_text(model, natural);
    }
    if (settings.buckling > 0) {
        if (Fault fault = buckling_modes(settings, system, solution, buckling))
            return fault;
        for (size_t k = 0; k < buckling.size(); k++)
            out << text_of("座屈荷重係数 %zu: %.6g\n", k + 1, buckling[k].value);
        if (buckling.empty())
            out << "注意: この荷重では座屈しません\n";
        texts.buc = buckling_mode_text(model, buckling);
    }
    return {};
}

Fault run_steps(const fs::path& folder, const Settings& settings, std::ostream& out) {
    Model model;
    Solution solution;
    ResultTexts texts;
    if (!settings.check)
        if (Fault fault = remove_old_results(folder))
            return fault;
    if (Fault fault = read_model(folder, out, model))
        return fault;
    System system(model, settings.threads);
    if (settings.check) {
        print_check(out, model, system);
        return {};
    }
    if (Fault fault = solve(model, settings, system, solution))
        return fault;
    print_summary(out, model, solution);
    if (settings.p_delta)
        out << text_of("P-Δ 解析は %d 回で収束しました\n", solution.rounds);
    if (Fault fault = find_modes(model, settings, system, solution, out, texts))
        return fault;
    system.drop_factor();
    add_result_texts(model, solution, texts);
    return write_results(folder, texts);
}

// The last stand against what a file of any size may do to the memory.
Fault guarded_steps(const fs::path& folder, const Settings& settings, std::ostream& out) {
    try {
        return run_steps(folder, settings, out);
    } catch (const std::bad_alloc&) {
        return {Exit::no_memory, "メモリが足りません"};
    } catch (const std::length_error&) {
        return {Exit::no_memory, "メモリが足りません"};
    }
}

} // namespace

int run(const fs::path& folder, const Settings& settings, std::ostream& out, std::ostream& err) {
    const Fault fault = guarded_steps(folder, settings, out);
    if (fault) {
        err << fault.text << "\n";
        if (!settings.check)
            write_error_file(folder, fault.text);
    }
    return static_cast<int>(fault.code);
}

} // namespace frameslv
