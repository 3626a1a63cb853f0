#include "generate/roof.h"

#include "generate/generate.h"
#include "model/validate.h"
#include "support.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace kigumi {
namespace {

struct RoofCase {
    int nx, ny, type, storeys;
    float post, pitch;
};

void PrintTo(const RoofCase& c, std::ostream* out) {
    *out << text_format("%dx%d type %d storeys %d post %g pitch %g", c.nx, c.ny, c.type, c.storeys,
                        c.post, c.pitch);
}

void set_roof(Param& param, const RoofCase& c) {
    set_default_param(param);
    param.NX = c.nx;
    param.NY = c.ny;
    param.YaneType = c.type;
    param.N_Sou = c.storeys;
    param.YaneHashira = c.post;
    param.TukaHaba = c.pitch;
    param.YaneTakasa = 151.5f;
    param.SouMode = 1;
    param.SumiType = 2;
    param.YaneMode = 1;
}

// The floor with its columns and storeys. Returns the member count, where the roof will start.
int make_below(Model& model, const Param& param) {
    EXPECT_TRUE(make_hashira(model, param) == 0 && make_waku(model, param) == 0 &&
                make_genzai(model, param) == 0 && make_shazai(model, param) == 0 &&
                make_sujikai(model, param) == 0 && make_gaichu(model, param) == 0);
    if (param.N_Sou == 2) {
        EXPECT_EQ(make_2kai(model, param), 0);
    }
    return model.N_Beam;
}

// A place on the lattice of half pitches, with its height in 1/100 cm.
struct Place {
    int x, y;
    long z;
    auto operator<=>(const Place&) const = default;
};

Place place_of(const Param& param, float x, float y, float z) {
    const double half = param.TukaHaba * 0.5;
    return {static_cast<int>(std::lround(x / half)), static_cast<int>(std::lround(y / half)),
            std::lround(static_cast<double>(z) * 100.0)};
}

struct Line {
    int kind;
    Place a, b;
    auto operator<=>(const Line&) const = default;
};

Line line_of(int kind, Place a, Place b) {
    return {kind, std::min(a, b), std::max(a, b)};
}

Line line_of(const Param& param, const Beam& beam) {
    return line_of(beam.kind, place_of(param, beam.xs, beam.ys, beam.zs),
                   place_of(param, beam.xl, beam.yl, beam.zl));
}

std::set<Line> lines_from(const Model& model, const Param& param, int start) {
    std::set<Line> lines;
    for (int i = start; i < model.N_Beam; ++i) {
        lines.insert(line_of(param, model.beam[i]));
    }
    return lines;
}

struct Vector {
    double x, y, z;
};

Vector operator-(Vector a, Vector b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double dot(Vector a, Vector b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector start_of(const Beam& beam) {
    return {beam.xs, beam.ys, beam.zs};
}

Vector run_of(const Beam& beam) {
    return Vector{beam.xl, beam.yl, beam.zl} - start_of(beam);
}

double distance_inside(const Node& node, const Beam& beam) {
    const Vector d = run_of(beam);
    const Vector p = Vector{node.x, node.y, node.z} - start_of(beam);
    const double t = dot(p, d) / dot(d, d);
    if (t < 0.001 || t > 0.999) {
        return 1e9;
    }
    const Vector off = p - Vector{d.x * t, d.y * t, d.z * t};
    return std::sqrt(dot(off, off));
}

// True when the members meet in a point inside both.
bool cross(const Beam& one, const Beam& other) {
    const Vector d = run_of(one);
    const Vector e = run_of(other);
    const Vector w = start_of(one) - start_of(other);
    const double det = dot(d, d) * dot(e, e) - dot(d, e) * dot(d, e);
    if (det < 1e-6 * dot(d, d) * dot(e, e)) {
        return false;
    }
    const double t = (dot(d, e) * dot(e, w) - dot(e, e) * dot(d, w)) / det;
    const double u = (dot(d, d) * dot(e, w) - dot(d, e) * dot(d, w)) / det;
    const Vector gap = w - Vector{e.x * u - d.x * t, e.y * u - d.y * t, e.z * u - d.z * t};
    const auto inside = [](double at) { return at > 0.001 && at < 0.999; };
    return inside(t) && inside(u) && dot(gap, gap) < 0.01;
}

class Roof : public test::CoreTest, public ::testing::WithParamInterface<RoofCase> {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        set_roof(param, GetParam());
        below_ = make_below(model, param);
        below_nodes_ = model.N_Node;
        predicted_ = predict_roof_beams(param);
        ASSERT_EQ(make_yane2(model, param), 0);
    }
    int below_ = 0;
    int below_nodes_ = 0;
    long long predicted_ = 0;
};

TEST_P(Roof, CountIsForeseenKindsAscendAndNoMemberIsDoubled) {
    EXPECT_EQ(model.N_Beam - below_, predicted_);
    EXPECT_EQ(find_model_fault(model, true), nullptr);
    for (int i = below_; i < model.N_Beam; ++i) {
        EXPECT_GE(model.beam[i].kind, i == below_ ? kind_roof_post : model.beam[i - 1].kind);
        EXPECT_EQ(model.beam[i].flag, 2);
    }
    std::map<std::pair<int, int>, int> seen;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        if (i >= below_) {
            EXPECT_NE(beam.noi, beam.noj);
        }
        const auto ends = std::minmax(beam.noi, beam.noj);
        const auto [other, added] = seen.try_emplace(ends, i);
        const bool girder_on_frame =
            beam.kind == kind_girder && model.beam[other->second].kind == kind_frame;
        if (!added && i >= below_) {
            EXPECT_TRUE(girder_on_frame && GetParam().post <= 0.0f) << "member " << beam.no;
        }
    }
}

TEST_P(Roof, MembersMeetOnlyAtNodes) {
    const float from = storey_level(param, param.N_Sou, 5) - 1.0f;
    for (int k = 0; k < model.N_Node; ++k) {
        const Node& node = model.node[k];
        for (int i = below_; node.z > from && i < model.N_Beam; ++i) {
            EXPECT_GT(distance_inside(node, model.beam[i]), 0.05)
                << "node " << node.no << " in member " << i + 1;
        }
    }
    for (int i = below_; i < model.N_Beam; ++i) {
        for (int k = 0; k < i; ++k) {
            EXPECT_FALSE(cross(model.beam[i], model.beam[k])) << i + 1 << " crosses " << k + 1;
        }
    }
}

TEST_P(Roof, NodesStandOnTheSurface) {
    const double z0 = storey_level(param, param.N_Sou, 5);
    const double z1 = z0 + param.YaneHashira;
    const int W = 2 * param.NX;
    const int B = 2 * param.NY;
    const double half_span = std::min(param.NX, param.NY);
    for (int k = below_nodes_; k < model.N_Node; ++k) {
        const Node& node = model.node[k];
        const Place p = place_of(param, node.x, node.y, node.z);
        const int from_x = std::min(p.x, W - p.x);
        const int from_y = std::min(p.y, B - p.y);
        const int steps = param.YaneType == 1    ? std::min(from_x, from_y)
                          : param.NX >= param.NY ? from_y
                                                 : from_x;
        const bool on_girder = std::min(from_x, from_y) == 0 && std::abs(node.z - z1) < 0.01;
        if (!on_girder) {
            EXPECT_NEAR(node.z, z1 + param.YaneTakasa * steps / half_span, 0.01) << node.no;
        }
    }
}

TEST_P(Roof, MirrorImagesAreTheSameRoof) {
    const std::set<Line> lines = lines_from(model, param, below_);
    const int W = 2 * param.NX;
    const int B = 2 * param.NY;
    const auto mirror_x = [W](Place p) { return Place{W - p.x, p.y, p.z}; };
    const auto mirror_y = [B](Place p) { return Place{p.x, B - p.y, p.z}; };
    const auto swap = [](Place p) { return Place{p.y, p.x, p.z}; };
    const bool square = W == B && param.YaneType == 1;
    for (const Line& line : lines) {
        EXPECT_TRUE(lines.contains(line_of(line.kind, mirror_x(line.a), mirror_x(line.b))));
        EXPECT_TRUE(lines.contains(line_of(line.kind, mirror_y(line.a), mirror_y(line.b))));
        if (square) {
            EXPECT_TRUE(lines.contains(line_of(line.kind, swap(line.a), swap(line.b))));
        }
    }
}

std::vector<RoofCase> roof_cases() {
    std::vector<RoofCase> cases;
    const int plans[][2] = {{1, 1}, {1, 2}, {3, 1}, {2, 2}, {2, 5}, {3, 3},
                            {4, 3}, {4, 4}, {5, 5}, {6, 4}, {5, 8}, {7, 6}};
    const float pitches[] = {90.0f, 90.9f, 33.3f};
    int turn = 0;
    for (const auto& plan : plans) {
        for (const int type : {1, 2}) {
            for (const float post : {0.0f, 240.0f}) {
                cases.push_back({plan[0], plan[1], type, 1 + turn % 2, post, pitches[turn % 3]});
                ++turn;
            }
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Plans, Roof, ::testing::ValuesIn(roof_cases()));

using RoofText = test::CoreTest;

std::string describe_from(const Model& model, int start) {
    std::string text;
    for (int i = start; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        text += text_format("%2d %s  %7.1f %7.1f %7.1f - %7.1f %7.1f %7.1f  %.1f x %.1f\n",
                            beam.kind, kind_name(beam.kind), beam.xs, beam.ys, beam.zs, beam.xl,
                            beam.yl, beam.zl, beam.haba, beam.atumi);
    }
    return text;
}

TEST_F(RoofText, SmallHipAndGable) {
    const std::pair<const char*, RoofCase> roofs[] = {
        {"roof_hip_3x2.txt", {3, 2, 1, 1, 240.0f, 90.0f}},
        {"roof_gable_2x3.txt", {2, 3, 2, 1, 0.0f, 90.0f}}};
    for (const auto& [golden, roof] : roofs) {
        reset_model(model);
        set_roof(param, roof);
        const int below = make_below(model, param);
        ASSERT_EQ(make_yane2(model, param), 0);
        test::expect_golden(golden, describe_from(model, below));
    }
}

TEST_F(RoofText, WhatMakesNoRoofIsRefused) {
    const auto refused = [this](auto change) {
        reset_model(model);
        set_roof(param, {2, 2, 1, 1, 240.0f, 90.0f});
        const int below = make_below(model, param);
        change();
        EXPECT_EQ(make_yane2(model, param), -1);
        EXPECT_EQ(take_messages().size(), 1u);
        EXPECT_EQ(model.N_Beam, below);
    };
    refused([this] { param.YaneTakasa = 1e-6f; });
    refused([this] { param.YaneHashira = -1.0f; });
    refused([this] { param.YaneType = 0; });
    refused([this] { param.N_Sou = 3; });
    refused([this] { param.MoyaHaba = 0.0f; });
    refused([this] { model.GaichuStart = model.GaichuEnd = 0; });
}

TEST_F(RoofText, FullTableStopsTheRoof) {
    set_roof(param, {2, 2, 1, 1, 240.0f, 90.0f});
    make_below(model, param);
    model.N_Beam = beam_capacity - 1;
    EXPECT_EQ(make_yane2(model, param), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(model.N_Beam, beam_capacity);
}

} // namespace
} // namespace kigumi
