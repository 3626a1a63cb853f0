// Outer columns, further storeys and the terrace.
#include "base/message.h"
#include "generate/emit.h"
#include "generate/generate.h"
#include "model/members.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

// One corner of the floor with its two neighbour columns, in half pitches.
struct Corner {
    int c[2];
    int n1[2]; // first neighbour
    int n2[2]; // second neighbour
};

struct Corners {
    Corner at[4];
};

Corners floor_corners(const Param& param) {
    const int nx = 2 * param.NX;
    const int ny = 2 * param.NY;
    return {{{{0, 0}, {2, 0}, {0, 2}},
             {{nx, 0}, {nx - 2, 0}, {nx, 2}},
             {{nx, ny}, {nx - 2, ny}, {nx, ny - 2}},
             {{0, ny}, {0, ny - 2}, {2, ny}}}};
}

FramePoint point(const Param& param, const int (&m)[2], float z) {
    return {half_pitch(param, m[0]), half_pitch(param, m[1]), z};
}

// The point halfway between a corner and its neighbour.
struct Middle {
    int m[2];
};

Middle middle(const int (&a)[2], const int (&b)[2]) {
    return {{(a[0] + b[0]) / 2, (a[1] + b[1]) / 2}};
}

int emit_column(Model& model, const Param& param, FramePoint from, FramePoint to) {
    return emit_beam(model, from, to, param.Hashira, kind_column);
}

int column_halves(Model& model, const Param& param, const int (&m)[2]) {
    const FramePoint half = point(param, m, storey_level(param, 1, 2));
    if (emit_column(model, param, point(param, m, storey_level(param, 1, 0)), half) < 0) {
        return -1;
    }
    return emit_column(model, param, half, point(param, m, storey_level(param, 1, 4)));
}

// A brace end: a column of the corner and one of the six levels.
struct BraceEnd {
    const int (&column)[2];
    int level;
};

template <size_t Count>
int braces_from(Model& model, const Param& param, FramePoint from, const BraceEnd (&ends)[Count]) {
    for (const BraceEnd& end : ends) {
        if (emit_column(model, param, from,
                        point(param, end.column, storey_level(param, 1, end.level))) < 0) {
            return -1;
        }
    }
    return 0;
}

int horizontals_type2(Model& model, const Param& param, const Corner& corner) {
    const float z = storey_level(param, 1, 2);
    const auto run = [z, &corner, &model, &param](const int(&to)[2]) {
        const FramePoint half = point(param, middle(corner.c, to).m, z);
        if (emit_column(model, param, point(param, corner.c, z), half) < 0) {
            return -1;
        }
        return emit_column(model, param, half, point(param, to, z));
    };
    return run(corner.n1) < 0 ? -1 : run(corner.n2);
}

int braces_type2(Model& model, const Param& param, const Corner& corner) {
    const float z = storey_level(param, 1, 2);
    const BraceEnd first[] = {{corner.n1, 4}, {corner.c, 4}, {corner.n1, 0}, {corner.c, 0}};
    const BraceEnd second[] = {{corner.c, 4}, {corner.n2, 4}, {corner.c, 0}, {corner.n2, 0}};
    if (braces_from(model, param, point(param, middle(corner.c, corner.n1).m, z), first) < 0) {
        return -1;
    }
    return braces_from(model, param, point(param, middle(corner.c, corner.n2).m, z), second);
}

int horizontals_type1(Model& model, const Param& param, const Corner& corner) {
    const float z = storey_level(param, 1, 2);
    if (emit_column(model, param, point(param, corner.c, z), point(param, corner.n1, z)) < 0) {
        return -1;
    }
    return emit_column(model, param, point(param, corner.c, z), point(param, corner.n2, z));
}

// One band of crossing braces: from the half-pitch points at level `from` to the columns two
// quarters apart, `from` + 1 and `from` - 1.
int brace_band_type1(Model& model, const Param& param, const Corner& corner, int from) {
    const int high = from + 1;
    const int low = from - 1;
    const float z = storey_level(param, 1, from);
    const BraceEnd first[] = {
        {corner.n1, high}, {corner.c, high}, {corner.n1, low}, {corner.c, low}};
    const BraceEnd second[] = {
        {corner.c, high}, {corner.n2, high}, {corner.c, low}, {corner.n2, low}};
    if (braces_from(model, param, point(param, middle(corner.c, corner.n1).m, z), first) < 0) {
        return -1;
    }
    return braces_from(model, param, point(param, middle(corner.c, corner.n2).m, z), second);
}

int braces_type1(Model& model, const Param& param, const Corner& corner) {
    return brace_band_type1(model, param, corner, 3) < 0
               ? -1
               : brace_band_type1(model, param, corner, 1);
}

// Runs one step at all four corners.
template <class Step>
int at_corners(Model& model, const Param& param, const Corners& corners, Step step) {
    for (const Corner& corner : corners.at) {
        if (step(model, param, corner) < 0) {
            return -1;
        }
    }
    return 0;
}

// The column at one of the three places of a corner.
template <auto Place> int column_at(Model& model, const Param& param, const Corner& corner) {
    return column_halves(model, param, corner.*Place);
}

int make_columns(Model& model, const Param& param, const Corners& corners) {
    spy("第１の柱");
    if (at_corners(model, param, corners, column_at<&Corner::c>) < 0) {
        return -1;
    }
    spy("第2の柱");
    if (at_corners(model, param, corners, column_at<&Corner::n1>) < 0) {
        return -1;
    }
    spy("第3の柱");
    return at_corners(model, param, corners, column_at<&Corner::n2>);
}

} // namespace

int make_gaichu(Model& model, const Param& param) {
    spy("Enter make_gaichu()");
    model.GaichuStart = model.N_Beam;
    const Corners corners = floor_corners(param);
    int status = make_columns(model, param, corners);
    if (param.SumiType == 1) {
        spy("２本の横柱");
        status = status < 0 ? -1 : at_corners(model, param, corners, horizontals_type1);
        spy("１６本の筋交い");
        status = status < 0 ? -1 : at_corners(model, param, corners, braces_type1);
    } else {
        spy("タイプⅡ  SumiType2");
        spy("４本の横柱");
        status = status < 0 ? -1 : at_corners(model, param, corners, horizontals_type2);
        spy("８本の筋交い");
        status = status < 0 ? -1 : at_corners(model, param, corners, braces_type2);
    }
    model.GaichuEnd = model.N_Beam;
    return status;
}

namespace {

// A level is met within this distance, cm.
constexpr float level_tolerance = 0.1f;

// First level of storey 1 at height z, or -1.
int find_level(const Param& param, float z) {
    for (int k = 0; k < levels_a_storey; ++k) {
        const double level = storey_level(param, 1, k);
        if (level - level_tolerance < z && z < level + level_tolerance) {
            return k;
        }
    }
    return -1;
}

int level_not_found(const char* trace, int i, float z) {
    spy(trace, i, z);
    show_message("レベル検索に失敗した");
    return -1;
}

// Copies the first `count` members to the same levels of another storey.
int copy_storey(Model& model, const Param& param, int count, int storey, const char* start_trace,
                const char* end_trace) {
    for (int i = 0; i < count; ++i) {
        const Beam from = model.beam[i];
        const int start = find_level(param, from.zs);
        if (start < 0) {
            return level_not_found(start_trace, i, from.zs);
        }
        const int end = find_level(param, from.zl);
        if (end < 0) {
            return level_not_found(end_trace, i, from.zl);
        }
        const int at = append_beam(model, {from.xs, from.ys, storey_level(param, storey, start)},
                                   {from.xl, from.yl, storey_level(param, storey, end)}, from.haba,
                                   from.atumi, from.kind, from.flag);
        if (at < 0) {
            return -1;
        }
        model.beam[at].mat = from.mat;
    }
    return 0;
}

constexpr const char* trace_1 = "(1) レベル検索に失敗したi %5d z %8.1f";
constexpr const char* trace_2 = "(2) レベル検索に失敗したi %5d z %8.1f";
constexpr const char* trace_3 = "(3) レベル検索に失敗したi %5d z %8.1f";

} // namespace

int make_2kai(Model& model, const Param& param) {
    spy("Enter make_2kai()");
    return copy_storey(model, param, model.N_Beam, 2, trace_1, trace_2);
}

int make_3kai(Model& model, const Param& param) {
    spy("Enter make_3kai()");
    const int count = model.N_Beam;
    if (copy_storey(model, param, count, 2, trace_1, trace_2) < 0) {
        return -1;
    }
    return copy_storey(model, param, count, 3, trace_3, trace_3);
}

namespace {

// The terrace of one frame: its two levels and the floor's size in half pitches.
struct Terrace {
    Model& model;
    const Param& param;
    float zb, zt;
    int nx, ny;

    int emit(int x1, int y1, float z1, int x2, int y2) const {
        return emit_beam(model, {half_pitch(param, x1), half_pitch(param, y1), z1},
                         {half_pitch(param, x2), half_pitch(param, y2), zt}, param.GenHaba,
                         kind_chord);
    }
    // Outward members of the four sides, from every top chord line to its eave tip.
    int arms() const;
    // Struts from the bottom perimeter nodes to the eave tips.
    int struts_along_x(int side, int tip) const;
    int struts_along_y(int side, int tip) const;
    // The eave edges.
    int edge_along_x(int tip) const;
    int edge_along_y(int tip) const;
};

int Terrace::arms() const {
    for (const auto& [side, tip] : {std::pair{0, -1}, std::pair{ny, ny + 1}}) {
        for (int m = 1; m < nx; m += 2) {
            if (emit(m, side, zt, m, tip) < 0) {
                return -1;
            }
        }
    }
    for (const auto& [side, tip] : {std::pair{0, -1}, std::pair{nx, nx + 1}}) {
        for (int m = 1; m < ny; m += 2) {
            if (emit(side, m, zt, tip, m) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

int Terrace::struts_along_x(int side, int tip) const {
    for (int m = 0; m <= nx; m += 2) {
        if (emit(m, side, zb, m - 1, tip) < 0 || emit(m, side, zb, m + 1, tip) < 0) {
            return -1;
        }
    }
    return 0;
}

// Deliberate: along y only the tips between two bottom nodes are strutted, not the corner tips.
int Terrace::struts_along_y(int side, int tip) const {
    for (int m = 0; m < ny; m += 2) {
        if (emit(side, m, zb, tip, m + 1) < 0 || emit(side, m + 2, zb, tip, m + 1) < 0) {
            return -1;
        }
    }
    return 0;
}

int Terrace::edge_along_x(int tip) const {
    for (int m = 0; m <= nx; m += 2) {
        if (emit(m - 1, tip, zt, m + 1, tip) < 0) {
            return -1;
        }
    }
    return 0;
}

int Terrace::edge_along_y(int tip) const {
    for (int m = 0; m <= ny; m += 2) {
        if (emit(tip, m - 1, zt, tip, m + 1) < 0) {
            return -1;
        }
    }
    return 0;
}

} // namespace

int make_terrace(Model& model, const Param& param) {
    spy("Enter make_terrace()");
    const int top = param.N_Sou == 2 || param.N_Sou == 3 ? param.N_Sou : 1;
    const Terrace terrace{
        model,        param,       storey_level(param, top, 4), storey_level(param, top, 5),
        2 * param.NX, 2 * param.NY};
    const int nx = terrace.nx;
    const int ny = terrace.ny;
    const bool made = terrace.arms() == 0 && terrace.struts_along_x(0, -1) == 0 &&
                      terrace.struts_along_x(ny, ny + 1) == 0 &&
                      terrace.struts_along_y(0, -1) == 0 &&
                      terrace.struts_along_y(nx, nx + 1) == 0 && terrace.edge_along_x(-1) == 0 &&
                      terrace.edge_along_x(ny + 1) == 0 && terrace.edge_along_y(-1) == 0 &&
                      terrace.edge_along_y(nx + 1) == 0;
    return made ? 0 : -1;
}

} // namespace kigumi
