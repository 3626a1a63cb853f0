// The space floor: posts, frame, chords, diagonals and braces of a block of NX by NY cells.
#include "generate/emit.h"
#include "generate/generate.h"
#include "model/members.h"
#include "trace/spy.h"

namespace kigumi {

float storey_level(const Param& param, int storey, int level) {
    const double D = param.TukaAtumi;
    double base = param.Lowest;
    if (param.SouMode == 0) {
        return static_cast<float>(level == 5 ? base + D : base);
    }
    const double heights[3] = {param.HashiraHeight1, param.HashiraHeight2, param.HashiraHeight3};
    for (int below = 1; below < storey; ++below) {
        base += heights[below - 1] + D;
    }
    const double H = heights[storey - 1];
    if (level == 5) {
        return static_cast<float>(base + H + D);
    }
    return static_cast<float>(base + H * level * 0.25);
}

float half_pitch(const Param& param, int m) {
    return static_cast<float>(static_cast<double>(m) * param.TukaHaba * 0.5);
}

int emit_beam(Model& model, FramePoint start, FramePoint end, float haba, float atumi, int kind) {
    const int at = append_beam(model, {start.x, start.y, start.z}, {end.x, end.y, end.z}, haba,
                               atumi, kind, 2);
    if (at < 0) {
        return -1;
    }
    const Beam& beam = model.beam[at];
    spy("N_BEAM %5d no %5d noi %5d noj %5d xs %7.1f ys %7.1f zs %7.1f xl %7.1f yl %7.1f zl %7.1f "
        "haba %7.1f atumi %7.1f",
        model.N_Beam, beam.no, beam.noi, beam.noj, beam.xs, beam.ys, beam.zs, beam.xl, beam.yl,
        beam.zl, beam.haba, beam.atumi);
    return 0;
}

namespace {

float level_bottom(const Param& param) {
    return storey_level(param, 1, 4);
}

float level_top(const Param& param) {
    return storey_level(param, 1, 5);
}

// A point by its half-pitch counts.
FramePoint at(const Param& param, int mx, int my, float z) {
    return {half_pitch(param, mx), half_pitch(param, my), z};
}

// Frame members along x on both sides, then along y on both sides, at one level.
int make_waku_level(Model& model, const Param& param, float z) {
    const int nx = 2 * param.NX;
    const int ny = 2 * param.NY;
    for (const int side : {0, ny}) {
        for (int i = 0; i < nx; ++i) {
            if (emit_beam(model, at(param, i, side, z), at(param, i + 1, side, z), param.WakuHaba,
                          kind_frame) < 0) {
                return -1;
            }
        }
    }
    for (const int side : {0, nx}) {
        for (int j = 0; j < ny; ++j) {
            if (emit_beam(model, at(param, side, j, z), at(param, side, j + 1, z), param.WakuHaba,
                          kind_frame) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

// A chord line from `at_line(first)` through the given half-pitch stops.
template <class AtLine>
int make_top_line(Model& model, const Param& param, int cells, AtLine at_line) {
    for (int j = 0; j <= cells; ++j) {
        const int from = j == 0 ? 0 : 2 * j - 1;
        const int to = j == cells ? 2 * cells : 2 * j + 1;
        if (emit_beam(model, at_line(from), at_line(to), param.GenHaba, kind_chord) < 0) {
            return -1;
        }
    }
    return 0;
}

template <class AtLine>
int make_bottom_line(Model& model, const Param& param, int cells, AtLine at_line) {
    for (int j = 0; j < cells; ++j) {
        if (emit_beam(model, at_line(2 * j), at_line(2 * j + 2), param.GenHaba, kind_chord) < 0) {
            return -1;
        }
    }
    return 0;
}

// The four diagonals of the cell with this centre, in half pitches.
int make_cell_diagonals(Model& model, const Param& param, int cx, int cy) {
    constexpr int corners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (const auto& corner : corners) {
        if (emit_beam(model, at(param, cx, cy, level_top(param)),
                      at(param, cx + corner[0], cy + corner[1], level_bottom(param)), param.ShaHaba,
                      kind_diagonal) < 0) {
            return -1;
        }
    }
    return 0;
}

// The verticals and the zigzag of one perimeter face of `cells` cells.
template <class AtFace> int make_face(Model& model, const Param& param, int cells, AtFace at_face) {
    const float zb = level_bottom(param);
    const float zt = level_top(param);
    for (int k = 1; k <= 2 * cells - 1; ++k) {
        if (emit_beam(model, at_face(k, zt), at_face(k, zb), param.Sujikai, kind_brace) < 0) {
            return -1;
        }
    }
    for (int k = 0; k <= 2 * cells - 1; ++k) {
        const bool rising = k % 2 == 0;
        if (emit_beam(model, at_face(k, rising ? zb : zt), at_face(k + 1, rising ? zt : zb),
                      param.Sujikai, kind_brace) < 0) {
            return -1;
        }
    }
    return 0;
}

} // namespace

int make_hashira(Model& model, const Param& param) {
    spy("Enter make_hashira()");
    model.N_Beam = 0;
    model.edit.fill({});
    const int nx = 2 * param.NX;
    const int ny = 2 * param.NY;
    const int corners[4][2] = {{0, 0}, {nx, 0}, {nx, ny}, {0, ny}};
    for (const auto& corner : corners) {
        if (emit_beam(model, at(param, corner[0], corner[1], level_bottom(param)),
                      at(param, corner[0], corner[1], level_top(param)), param.Hashira,
                      kind_post) < 0) {
            return -1;
        }
    }
    return 0;
}

int make_waku(Model& model, const Param& param) {
    spy("Enter make_waku()");
    return make_waku_level(model, param, level_top(param)) < 0
               ? -1
               : make_waku_level(model, param, level_bottom(param));
}

int make_genzai(Model& model, const Param& param) {
    spy("Enter make_genzai()");
    const float zt = level_top(param);
    const float zb = level_bottom(param);
    int status = 0;
    for (int i = 0; i < param.NX && status == 0; ++i) {
        status = make_top_line(model, param, param.NY,
                               [&](int m) { return at(param, 2 * i + 1, m, zt); });
    }
    for (int j = 0; j < param.NY && status == 0; ++j) {
        status = make_top_line(model, param, param.NX,
                               [&](int m) { return at(param, m, 2 * j + 1, zt); });
    }
    for (int i = 1; i < param.NX && status == 0; ++i) {
        status = make_bottom_line(model, param, param.NY,
                                  [&](int m) { return at(param, 2 * i, m, zb); });
    }
    for (int j = 1; j < param.NY && status == 0; ++j) {
        status = make_bottom_line(model, param, param.NX,
                                  [&](int m) { return at(param, m, 2 * j, zb); });
    }
    return status;
}

int make_shazai(Model& model, const Param& param) {
    spy("Enter make_shazai()");
    for (int i = 0; i < param.NX; ++i) {
        for (int j = 0; j < param.NY; ++j) {
            if (make_cell_diagonals(model, param, 2 * i + 1, 2 * j + 1) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

int make_sujikai(Model& model, const Param& param) {
    spy("Enter make_sujikai()");
    const int nx = 2 * param.NX;
    const int ny = 2 * param.NY;
    int status = 0;
    for (const int side : {0, ny}) {
        status = status < 0 ? status : make_face(model, param, param.NX, [&](int k, float z) {
            return at(param, k, side, z);
        });
    }
    for (const int side : {0, nx}) {
        status = status < 0 ? status : make_face(model, param, param.NY, [&](int k, float z) {
            return at(param, side, k, z);
        });
    }
    return status;
}

} // namespace kigumi
