#include "results/marukaku.h"

#include "analysis/result.h"
#include "geometry/perspective.h"
#include "geometry/projection.h"
#include "geometry/solid.h"
#include "results/force_picture.h"
#include "results/selection.h"
#include "trace/spy.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace kigumi {

namespace {

// Bars of up to this percent are square whatever their force.
constexpr float always_square = 1.0f;

struct Bar {
    int row; // of result.stress
    int colour;
};

std::vector<Bar> bar_of_record; // of the bars built last, one a triangle

int make_bar(const Stress& s) {
    const float v = s.percent;
    if (s.force > 0.0f && v > always_square) {
        const float radius = std::sqrt(v / std::numbers::pi_v<float>);
        return make_enchu2(s.xi, s.yi, s.zi, s.xj, s.yj, s.zj, radius, radius);
    }
    const float side = std::sqrt(v);
    return make_kakuzai3(s.xi, s.yi, s.zi, s.xj, s.yj, s.zj, side, side);
}

void reset_eye() {
    const View start;
    view.Rho = start.Rho;
    view.Theta = start.Theta;
    view.Phi = start.Phi;
}

} // namespace

int make_marukaku(ResultView& shown) {
    spy("Enter make_marukaku()");
    reset_eye();
    fit_result(shown);
    reset_solids();
    bar_of_record.clear();
    for (int i = 0; i < result.Nken_Stress; ++i) {
        if (make_bar(result.kensaku[i]) < 0) {
            return -1;
        }
        bar_of_record.resize(solids.trio.size(),
                             {result.kensaku_row[i], sign_colour(result.kensaku[i].force)});
    }
    return save_trio_file();
}

int draw_marukaku(Canvas& canvas, ResultView& shown) {
    return draw_perspective(canvas, shown.area, marukaku_colour) < 0
               ? -1
               : draw_result_labels(canvas, shown);
}

int marukaku_colour(int record) {
    const int row = marukaku_row(record);
    if (row < 0) {
        return colour_black;
    }
    return result.Nken_Stress > 0 && !is_selected(row) ? colour_silver
                                                       : bar_of_record[record].colour;
}

int marukaku_row(int record) {
    const auto records = static_cast<int>(bar_of_record.size());
    return record >= 0 && record < records ? bar_of_record[record].row : -1;
}

} // namespace kigumi
