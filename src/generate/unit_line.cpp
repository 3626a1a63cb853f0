// Expansion of one unit line of an axis data file into the members of a block.
#include "base/format.h"
#include "base/message.h"
#include "base/scan.h"
#include "generate/generate.h"
#include "model/members.h"
#include "solid/solid.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

// The values of a unit line, in its order; lengths in cm.
struct UnitLine {
    int ntask = 0, nx = 0, ny = 0;
    float tuka_haba = 0, tuka_takasa = 0;
    float hashira_haba = 0, waku_haba = 0, gen_haba = 0, shazai_haba = 0, sujikai_haba = 0;
    float x_kaishi = 0, y_kaishi = 0, z_kaishi = 0;

    bool read(std::string_view text) {
        Scanner scan(text);
        return scan.next(ntask) && scan.next(nx) && scan.next(ny) && scan.next(tuka_haba) &&
               scan.next(tuka_takasa) && scan.next(hashira_haba) && scan.next(waku_haba) &&
               scan.next(gen_haba) && scan.next(shazai_haba) && scan.next(sujikai_haba) &&
               scan.next(x_kaishi) && scan.next(y_kaishi) && scan.next(z_kaishi);
    }
    long long members() const {
        const long long x = nx;
        const long long y = ny;
        return 4 * x * y + (x + 1) * (y + 2) + (y + 1) * (x + 2) + x * (y + 1) + y * (x + 1) + 4 +
               8 * (x + y) - 4;
    }
    void trace() const {
        // Every line of the four goes into the log, not only the last.
        spy_now("ntask %5d nx %5d ny %5d tuka_haba %8.1f tuka_takasa %8.1f", ntask, nx, ny,
                tuka_haba, tuka_takasa);
        spy_now("hashira_haba %8.1f waku_haba %8.1f gen_haba %8.1f", hashira_haba, waku_haba,
                gen_haba);
        spy_now("shazai_haba %8.1f sujikai_haba_haba %8.1f", shazai_haba, sujikai_haba);
        spy_now("x_kaishi %8.1f y_kaishi %8.1f z_kaishi %8.1f", x_kaishi, y_kaishi, z_kaishi);
    }
};

// Emits the members of one block.
class Block {
  public:
    Block(Model& model, Solids& solids, const UnitLine& unit)
        : model_(model), solids_(solids), unit_(unit) {}

    bool emit_all() const {
        return diagonals() && top_layer() && bottom_layer() && posts() && braces();
    }

  private:
    // A point by its half-pitch counts, at the bottom or top level.
    struct Place {
        int mx, my;
        bool top;
    };

    bool emit(Place from, Place to, float width, int kind) const;
    bool cell_diagonals(Place centre) const;
    bool diagonals() const;
    template <class AtStop> bool row(int pieces, bool outer, AtStop at_stop) const;
    bool top_layer() const;
    bool bottom_layer() const;
    bool posts() const;
    bool braces() const;
    template <class AtFace> bool face(int cells, AtFace at_face) const;

    // Half-pitch count of stop s of a top row of `cells` cells: the ends and the cell centres.
    static int top_stop(int cells, int s) {
        return s == 0 ? 0 : s == cells + 1 ? 2 * cells : 2 * s - 1;
    }

    Model& model_;
    Solids& solids_;
    UnitLine unit_;
};

bool Block::emit(Place from, Place to, float width, int kind) const {
    const auto place = [this](Place p, float(&at)[3]) {
        const double T = unit_.tuka_haba;
        at[0] = static_cast<float>(unit_.x_kaishi + p.mx * T * 0.5);
        at[1] = static_cast<float>(unit_.y_kaishi + p.my * T * 0.5);
        const double z = unit_.z_kaishi;
        at[2] = static_cast<float>(p.top ? z + unit_.tuka_takasa : z);
    };
    float start[3];
    float end[3];
    place(from, start);
    place(to, end);
    if (append_beam(model_, start, end, width, width, kind, 0) < 0) {
        return false;
    }
    widen_bounds(solids_, start[0], start[1], start[2]);
    widen_bounds(solids_, end[0], end[1], end[2]);
    return make_kakuzai3(solids_, start[0], start[1], start[2], end[0], end[1], end[2], width,
                         width) >= 0;
}

bool Block::cell_diagonals(Place centre) const {
    constexpr int corners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (const auto& corner : corners) {
        const Place foot{centre.mx + corner[0], centre.my + corner[1], false};
        if (!emit(foot, centre, unit_.shazai_haba, kind_diagonal)) {
            return false;
        }
    }
    return true;
}

bool Block::diagonals() const {
    for (int i = 0; i < unit_.nx; ++i) {
        for (int j = 0; j < unit_.ny; ++j) {
            if (!cell_diagonals({2 * i + 1, 2 * j + 1, true})) {
                return false;
            }
        }
    }
    return true;
}

// A row of members through stops 0 ... pieces; the outer rows of a layer are its frame.
template <class AtStop> bool Block::row(int pieces, bool outer, AtStop at_stop) const {
    const float width = outer ? unit_.waku_haba : unit_.gen_haba;
    for (int s = 0; s < pieces; ++s) {
        if (!emit(at_stop(s), at_stop(s + 1), width, outer ? kind_frame : kind_chord)) {
            return false;
        }
    }
    return true;
}

bool Block::top_layer() const {
    const int nx = unit_.nx;
    const int ny = unit_.ny;
    for (int r = 0; r <= ny + 1; ++r) {
        const int y = top_stop(ny, r);
        const auto stop = [nx, y](int s) { return Place{top_stop(nx, s), y, true}; };
        if (!row(nx + 1, r == 0 || r == ny + 1, stop)) {
            return false;
        }
    }
    for (int r = 0; r <= nx + 1; ++r) {
        const int x = top_stop(nx, r);
        const auto stop = [ny, x](int s) { return Place{x, top_stop(ny, s), true}; };
        if (!row(ny + 1, r == 0 || r == nx + 1, stop)) {
            return false;
        }
    }
    return true;
}

bool Block::bottom_layer() const {
    const int nx = unit_.nx;
    const int ny = unit_.ny;
    for (int r = 0; r <= ny; ++r) {
        const auto stop = [r](int s) { return Place{2 * s, 2 * r, false}; };
        if (!row(nx, r == 0 || r == ny, stop)) {
            return false;
        }
    }
    for (int r = 0; r <= nx; ++r) {
        const auto stop = [r](int s) { return Place{2 * r, 2 * s, false}; };
        if (!row(ny, r == 0 || r == nx, stop)) {
            return false;
        }
    }
    return true;
}

bool Block::posts() const {
    const int nx = 2 * unit_.nx;
    const int ny = 2 * unit_.ny;
    const int corners[4][2] = {{0, 0}, {nx, 0}, {nx, ny}, {0, ny}};
    for (const auto& corner : corners) {
        if (!emit({corner[0], corner[1], false}, {corner[0], corner[1], true}, unit_.hashira_haba,
                  kind_column)) {
            return false;
        }
    }
    return true;
}

template <class AtFace> bool Block::face(int cells, AtFace at_face) const {
    for (int k = 1; k <= 2 * cells - 1; ++k) {
        if (!emit(at_face(k, true), at_face(k, false), unit_.sujikai_haba, kind_brace)) {
            return false;
        }
    }
    for (int k = 0; k <= 2 * cells - 1; ++k) {
        const bool rising = k % 2 == 0;
        if (!emit(at_face(k, !rising), at_face(k + 1, rising), unit_.sujikai_haba, kind_brace)) {
            return false;
        }
    }
    return true;
}

bool Block::braces() const {
    for (const int side : {0, 2 * unit_.ny}) {
        if (!face(unit_.nx, [side](int k, bool top) { return Place{k, side, top}; })) {
            return false;
        }
    }
    for (const int side : {0, 2 * unit_.nx}) {
        if (!face(unit_.ny, [side](int k, bool top) { return Place{side, k, top}; })) {
            return false;
        }
    }
    return true;
}

} // namespace

int bunkai_shazai(Model& model, Solids& solids, std::string_view line) {
    UnitLine unit;
    if (!unit.read(line)) {
        show_message("単位行には 13 個の数値が必要です");
        return -1;
    }
    unit.trace();
    if (unit.nx < 1 || unit.ny < 1 || unit.nx > beam_capacity || unit.ny > beam_capacity) {
        show_message(text_format("単位行の束数 %d × %d に誤りがあります", unit.nx, unit.ny));
        return -1;
    }
    if (model.N_Beam + unit.members() > beam_capacity) {
        show_message(text_format("部材が多すぎます（%lld 本、最大 %d 本）",
                                 model.N_Beam + unit.members(), beam_capacity));
        return -1;
    }
    return Block(model, solids, unit).emit_all() ? 0 : -1;
}

} // namespace kigumi
