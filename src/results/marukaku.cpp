#include "results/marukaku.h"

#include "analysis/result.h"
#include "draw/projection.h"
#include "results/force_picture.h"
#include "results/selection.h"
#include "sight/perspective.h"
#include "solid/solid.h"
#include "trace/spy.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace kigumi {

namespace {

// Bars of up to this percent are square whatever their force.
constexpr float always_square = 1.0f;

int make_bar(Solids& solids, const Stress& s) {
    const float v = s.percent;
    if (s.force > 0.0f && v > always_square) {
        const float radius = std::sqrt(v / std::numbers::pi_v<float>);
        return make_enchu2(solids, s.xi, s.yi, s.zi, s.xj, s.yj, s.zj, radius, radius);
    }
    const float side = std::sqrt(v);
    return make_kakuzai3(solids, s.xi, s.yi, s.zi, s.xj, s.yj, s.zj, side, side);
}

void reset_eye(View& view) {
    const View start;
    view.Rho = start.Rho;
    view.Theta = start.Theta;
    view.Phi = start.Phi;
}

} // namespace

int make_marukaku(View& view, Result& result, Solids& solids, const fs::path& work_dir,
                  ResultView& shown) {
    spy("Enter make_marukaku()");
    reset_eye(view);
    fit_result(result, shown);
    reset_solids(solids);
    result.bar_of_record.clear();
    for (int i = 0; i < result.Nken_Stress; ++i) {
        if (make_bar(solids, result.kensaku[i]) < 0) {
            return -1;
        }
        result.bar_of_record.resize(solids.trio.size(),
                                    {result.kensaku_row[i], sign_colour(result.kensaku[i].force)});
    }
    return save_trio_file(solids, work_dir);
}

int draw_marukaku(const View& view, const Result& result, Solids& solids,
                  PerspectiveLines& perspective, Lettering& lettering, const fs::path& work_dir,
                  Canvas& canvas, ResultView& shown) {
    return draw_perspective(view, solids, perspective, work_dir, canvas, shown.area,
                            [&result](int record) { return marukaku_colour(result, record); }) < 0
               ? -1
               : draw_result_labels(view, result, lettering, canvas, shown);
}

int marukaku_colour(const Result& result, int record) {
    const int row = marukaku_row(result, record);
    if (row < 0) {
        return colour_black;
    }
    return result.Nken_Stress > 0 && !is_selected(result, row)
               ? colour_silver
               : result.bar_of_record[record].colour;
}

int marukaku_row(const Result& result, int record) {
    const auto records = static_cast<int>(result.bar_of_record.size());
    return record >= 0 && record < records ? result.bar_of_record[record].row : -1;
}

} // namespace kigumi
