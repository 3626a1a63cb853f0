// The roof generator: posts, girders, hip rafters, common rafters, angle members and purlins over
// the top floor, one run of members after the other.
#include "generate/roof.h"

#include "base/float.h"
#include "base/message.h"
#include "generate/generate.h"
#include "generate/roof_surface.h"
#include "trace/spy.h"

#include <algorithm>
#include <functional>

namespace kigumi {

namespace {

// Takes one member of the roof; -1 stops.
using RoofSink = std::function<int(FramePoint start, FramePoint end, int kind)>;

struct PlanPlace {
    float x, y;
};

void add_place(std::vector<PlanPlace>& places, float x, float y) {
    const auto same = [x, y](PlanPlace p) { return same_float(p.x, x) && same_float(p.y, y); };
    if (std::none_of(places.begin(), places.end(), same)) {
        places.push_back({x, y});
    }
}

bool is_vertical(const Beam& beam) {
    return same_float(beam.xs, beam.xl) && same_float(beam.ys, beam.yl);
}

// The places of the outer columns that carry the first floor, as they stand in the model. Columns
// that coincide count once.
std::vector<PlanPlace> find_columns(const Model& model, const Param& param) {
    const float carried = storey_level(param, 1, 4);
    std::vector<PlanPlace> places;
    for (int i = std::max(model.GaichuStart, 0); i < std::min<int>(model.GaichuEnd, model.N_Beam);
         ++i) {
        const Beam& beam = model.beam[i];
        if (beam.kind == kind_column && is_vertical(beam) &&
            same_float(std::max(beam.zs, beam.zl), carried)) {
            add_place(places, beam.xs, beam.ys);
        }
    }
    return places;
}

// The places where make_gaichu puts columns: the corners and one pitch from them.
std::vector<PlanPlace> expect_columns(const RoofSurface& surface) {
    std::vector<PlanPlace> places;
    for (const RoofSide side : roof_sides) {
        const int extent = surface.extent(side.along_x);
        for (const int along : {0, 2, extent - 2, extent}) {
            const FramePoint at = surface.point(side, along, 0, 0.0f);
            add_place(places, at.x, at.y);
        }
    }
    return places;
}

// A corner of the plan: an end of one of the sides along x.
struct RoofCorner {
    RoofSide side;
    bool far_end;
};
// (0, 0), (W, 0), (W, B), (0, B), the order of the columns below.
constexpr RoofCorner corners[] = {
    {{true, false}, false}, {{true, false}, true}, {{true, true}, true}, {{true, true}, false}};

// Hands the roof's members to a sink, in their order.
class RoofFrame {
  public:
    RoofFrame(const RoofSurface& surface, RoofSink sink) : s_(surface), sink_(std::move(sink)) {}

    int posts(const std::vector<PlanPlace>& columns);
    int gable_posts();
    int girders();
    int ridge();
    int hips();
    int rafters();
    int angles();
    int purlins();

  private:
    // The members between neighbouring points.
    int run(const std::vector<FramePoint>& points, int kind);
    int angle(const RoofCorner& corner, int cells);
    // The place along a corner's side `steps` half pitches from the corner.
    int from_corner(const RoofCorner& corner, int steps) const {
        return corner.far_end ? s_.extent(true) - steps : steps;
    }

    const RoofSurface& s_;
    RoofSink sink_;
};

int RoofFrame::run(const std::vector<FramePoint>& points, int kind) {
    for (size_t i = 1; i < points.size(); ++i) {
        if (sink_(points[i - 1], points[i], kind) < 0) {
            return -1;
        }
    }
    return 0;
}

int RoofFrame::posts(const std::vector<PlanPlace>& columns) {
    if (s_.on_floor()) {
        return 0;
    }
    for (const PlanPlace& at : columns) {
        if (sink_({at.x, at.y, s_.floor_level()}, {at.x, at.y, s_.girder_level()}, kind_roof_post) <
            0) {
            return -1;
        }
    }
    return 0;
}

int RoofFrame::gable_posts() {
    for (const RoofSide side : roof_sides) {
        if (s_.is_eave(side)) {
            continue;
        }
        const int extent = s_.extent(side.along_x);
        for (const int along : s_.lines(side.along_x)) {
            if (along == 0 || along == extent) {
                continue;
            }
            if (sink_(s_.point(side, along, 0, s_.girder_level()), s_.surface_point(side, along, 0),
                      kind_roof_post) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

// On the floor the girders are cut at every half pitch, as the frame below them is.
int RoofFrame::girders() {
    for (const RoofSide side : roof_sides) {
        const int extent = s_.extent(side.along_x);
        const std::vector<int>& lines = s_.lines(side.along_x);
        std::vector<FramePoint> points;
        for (int along = 0; along <= extent; ++along) {
            if (s_.on_floor() || std::binary_search(lines.begin(), lines.end(), along)) {
                points.push_back(s_.point(side, along, 0, s_.girder_level()));
            }
        }
        if (run(points, kind_girder) < 0) {
            return -1;
        }
    }
    return 0;
}

int RoofFrame::ridge() {
    const RoofSide side = {s_.ridge_along_x(), false};
    const int start = s_.hip() ? s_.depth() : 0;
    std::vector<FramePoint> points;
    for (const int along : s_.cut(side.along_x, start, s_.extent(side.along_x) - start)) {
        points.push_back(s_.surface_point(side, along, s_.depth()));
    }
    return run(points, kind_girder);
}

int RoofFrame::hips() {
    if (!s_.hip()) {
        return 0;
    }
    for (const RoofCorner& corner : corners) {
        std::vector<FramePoint> points;
        for (const int i : s_.cut(!s_.ridge_along_x(), 0, s_.depth())) {
            points.push_back(s_.surface_point(corner.side, from_corner(corner, i), i));
        }
        if (run(points, kind_hip) < 0) {
            return -1;
        }
    }
    return 0;
}

int RoofFrame::rafters() {
    for (const RoofSide side : roof_sides) {
        if (!s_.is_eave(side)) {
            continue;
        }
        for (const int along : s_.lines(side.along_x)) {
            std::vector<FramePoint> points;
            for (const int inwards : s_.cut(!side.along_x, 0, s_.rafter_run(side, along))) {
                points.push_back(s_.surface_point(side, along, inwards));
            }
            if (run(points, kind_rafter) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

// On the floor an angle member is cut at the nodes of the top chords that it meets.
int RoofFrame::angle(const RoofCorner& corner, int cells) {
    const int reach = 2 * cells;
    std::vector<FramePoint> points;
    for (int inwards = 0; inwards <= reach; ++inwards) {
        const bool meets_chords = s_.on_floor() && inwards % 2 == 1;
        if (inwards == 0 || inwards == reach || meets_chords) {
            const int along = from_corner(corner, reach - inwards);
            points.push_back(s_.point(corner.side, along, inwards, s_.girder_level()));
        }
    }
    return run(points, kind_angle);
}

// One pitch from the corner, and two from four cells on: with fewer cells those of neighbouring
// corners would cross.
int RoofFrame::angles() {
    for (const RoofCorner& corner : corners) {
        for (int cells = 1; cells <= 2 && 2 * cells <= s_.depth(); ++cells) {
            if (angle(corner, cells) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

int RoofFrame::purlins() {
    for (int ring = 2; ring < s_.depth(); ring += 2) {
        for (const RoofSide side : roof_sides) {
            if (!s_.is_eave(side)) {
                continue;
            }
            const int start = s_.hip() ? ring : 0;
            std::vector<FramePoint> points;
            for (const int along : s_.cut(side.along_x, start, s_.extent(side.along_x) - start)) {
                points.push_back(s_.surface_point(side, along, ring));
            }
            if (run(points, kind_purlin) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

int make_frame(const RoofSurface& surface, const std::vector<PlanPlace>& columns, RoofSink sink) {
    RoofFrame frame(surface, std::move(sink));
    const bool made = frame.posts(columns) == 0 && frame.gable_posts() == 0 &&
                      frame.girders() == 0 && frame.ridge() == 0 && frame.hips() == 0 &&
                      frame.rafters() == 0 && frame.angles() == 0 && frame.purlins() == 0;
    return made ? 0 : -1;
}

int emit_roof_beam(Model& model, const Param& param, FramePoint start, FramePoint end, int kind) {
    switch (kind) {
    case kind_roof_post:
        return emit_beam(model, start, end, param.YaneHashiraHaba, kind);
    case kind_girder:
        return emit_beam(model, start, end, param.KetaHaba, param.KetaAtumi, kind);
    case kind_hip:
        return emit_beam(model, start, end, param.SumiGashoHaba, param.SumiGashoAtumi, kind);
    case kind_rafter:
        return emit_beam(model, start, end, param.HiraGashoHaba, param.HiraGashoAtumi, kind);
    case kind_angle:
        return emit_beam(model, start, end, param.HiuchiHaba, param.HiuchiAtumi, kind);
    default:
        return emit_beam(model, start, end, param.MoyaHaba, param.MoyaAtumi, kind);
    }
}

const char* find_section_fault(const Param& param) {
    const float sizes[] = {param.YaneHashiraHaba, param.KetaHaba,       param.KetaAtumi,
                           param.SumiGashoHaba,   param.SumiGashoAtumi, param.HiraGashoHaba,
                           param.HiraGashoAtumi,  param.HiuchiHaba,     param.HiuchiAtumi,
                           param.MoyaHaba,        param.MoyaAtumi};
    const bool good =
        std::all_of(std::begin(sizes), std::end(sizes), [](float size) { return size > 0.0f; });
    return good ? nullptr : "屋根部材の巾・厚みは 0 より大きくしてください";
}

} // namespace

const char* find_roof_fault(const Param& param) {
    if (param.YaneType != 1 && param.YaneType != 2) {
        return "屋根形式は 1（寄棟）か 2（切妻）にしてください";
    }
    if (param.SouMode != 1 || param.N_Sou < 1 || param.N_Sou > 2) {
        return "屋根は柱のある１層または２層の床にだけ載せられます";
    }
    constexpr int most_cells = (level_capacity - 1) / 2;
    if (param.NX < 1 || param.NY < 1 || param.NX > most_cells || param.NY > most_cells) {
        return "束数が範囲外のため屋根を作れません";
    }
    if (!(param.YaneHashira >= 0.0f)) {
        return "屋根柱高は 0 以上にしてください";
    }
    if (!(param.YaneTakasa > 0.0f)) {
        return "屋根高さは 0 より大きくしてください";
    }
    const RoofSurface surface(param);
    const int depth = surface.depth();
    if (!(surface.level(1) > surface.level(0)) ||
        !(surface.level(depth) > surface.level(depth - 1))) {
        return "屋根高さが小さすぎます";
    }
    return find_section_fault(param);
}

long long predict_roof_beams(const Param& param) {
    if (find_roof_fault(param) != nullptr) {
        return 0;
    }
    const RoofSurface surface(param);
    long long count = 0;
    make_frame(surface, expect_columns(surface), [&count](FramePoint, FramePoint, int) {
        ++count;
        return 0;
    });
    return count;
}

int make_yane2(Model& model, const Param& param) {
    spy("Enter make_yane2()");
    if (const char* fault = find_roof_fault(param)) {
        show_message(fault);
        return -1;
    }
    const RoofSurface surface(param);
    const std::vector<PlanPlace> columns = find_columns(model, param);
    if (columns.empty() && !surface.on_floor()) {
        show_message("屋根柱の下の柱が見つかりません");
        return -1;
    }
    return make_frame(surface, columns,
                      [&model, &param](FramePoint start, FramePoint end, int kind) {
                          return emit_roof_beam(model, param, start, end, kind);
                      });
}

} // namespace kigumi
