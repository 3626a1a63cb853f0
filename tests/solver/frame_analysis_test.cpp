// The solver in the calling process: joints, supports and member loads against closed forms and
// printed figures, many load vectors at once, several frames at once.
#include "support.h"

#include "solver/frame_analysis.h"

#include <cmath>
#include <thread>

namespace frame_analysis {

namespace {

using frameslv::test::expect_printed;

constexpr Six held{rigid, rigid, rigid, rigid, rigid, rigid};

// 12 x 18 cm, level, of two members of half the span each.
Frame beam(double spring_left, double spring_right) {
    Frame frame;
    frame.nodes = {{{0, 0, 0}, "A", held}, {{182, 0, 0}, "B", {}}, {{364, 0, 0}, "C", held}};
    Member member;
    member.E = 71380.1349;
    member.G = member.E / 15.0;
    member.A = 216.0;
    member.Iy = 5832.0;
    member.Iz = 2592.0;
    member.J = 6000.0;
    for (size_t k = 0; k < 2; k++) {
        member.i = k;
        member.j = k + 1;
        frame.members.push_back(member);
    }
    frame.members[0].joint_i.spring[1] = spring_left;
    frame.members[1].joint_j.spring[1] = spring_right;
    return frame;
}

LoadVector middle(double force) {
    return {"P", {{1, {0, 0, force, 0, 0, 0}}}, {}, {}};
}

} // namespace

TEST(FrameAnalysisTest, TableOfEndConditions) {
    const double k = 71380.1349 * 5832.0 / 364.0;
    struct Case {
        double left, right;
        const char *end, *mid, *deflection;
    };
    for (const auto& [left, right, end, mid, deflection] :
         {Case{rigid, rigid, "9100", "9100", ".120681"}, Case{0, 0, "0", "18200", ".482723"},
          Case{rigid, 0, "13650", "11375", ".211191"},
          Case{k, k, "3033.333", "15166.667", ".362042"},
          Case{2 * k, 2 * k, "4550", "13650", ".301702"},
          Case{10 * k, 10 * k, "7583.333", "10616.667", ".181021"}}) {
        const Frame frame = beam(left, right);
        const Analysis found = analyse(frame, {middle(-200)});
        ASSERT_EQ(found.fault, "");
        const Response& r = found.responses[0];
        expect_printed(std::abs(r.end_force[0][0][4]), end, "end");
        expect_printed(std::abs(r.end_force[0][1][4]), mid, "middle");
        expect_printed(-r.moved[1][2], deflection, "deflection");
        EXPECT_LT(r.imbalance, 1e-12);
        // One member under the force at its middle has the same ends.
        Frame one = frame;
        one.members[0].j = 2;
        one.members[0].joint_j = frame.members[1].joint_j;
        one.members.resize(1);
        one.nodes[1].support = held;
        LoadVector load;
        load.members = {{0, MemberLoad::Kind::point, {0, 0, -200}, false, 182.0}};
        const Analysis whole = analyse(one, {load});
        ASSERT_EQ(whole.fault, "");
        for (size_t at : {0, 1})
            EXPECT_NEAR(whole.responses[0].end_force[0][at][4], r.end_force[at][at][4], 1e-8);
        EXPECT_NEAR(std::abs(internal_forces(one, load, whole.responses[0], 0, 182.0)[4]),
                    std::abs(r.end_force[0][1][4]), 1e-7);
    }
}

// Cantilever with shear areas: FL^3/3EI + FL/GAs; uniform: qL^4/8EI + qL^2/2GAs.
TEST(FrameAnalysisTest, ShearFlexibility) {
    Frame frame = beam(rigid, rigid);
    frame.nodes.resize(2);
    frame.members.resize(1);
    frame.nodes[1].support = {};
    frame.members[0].shear_z = 180.0;
    frame.members[0].shear_y = 90.0;
    frame.members[0].weight = 0.3;
    LoadVector push = middle(-5), side, weight;
    side.nodes = {{1, {0, 7, 0, 0, 0, 0}}};
    weight.gravity = {0, 0, -1};
    const Analysis found = analyse(frame, {push, side, weight});
    ASSERT_EQ(found.fault, "");
    const Member& m = frame.members[0];
    const double L = 182.0;
    EXPECT_NEAR(found.responses[0].moved[1][2],
                -5 * (L * L * L / (3 * m.E * m.Iy) + L / (m.G * 180)), 1e-12);
    EXPECT_NEAR(found.responses[1].moved[1][1], 7 * (L * L * L / (3 * m.E * m.Iz) + L / (m.G * 90)),
                1e-12);
    EXPECT_NEAR(found.responses[2].moved[1][2],
                -0.3 * (L * L * L * L / (8 * m.E * m.Iy) + L * L / (2 * m.G * 180)), 1e-12);
    EXPECT_NEAR(found.responses[2].reaction[0][2], 0.3 * L, 1e-10);
    const Six quarter = internal_forces(frame, weight, found.responses[2], 0, 0.25 * L);
    EXPECT_NEAR(quarter[4], 0.3 * 0.75 * L * 0.75 * L / 2, 1e-8); // My
    EXPECT_NEAR(quarter[2], -0.3 * 0.75 * L, 1e-10);              // Qz
}

// Two bars at 45 degrees, pinned: N = -707.106781 each, no moments; a third pinned joint that no
// member turns is loose, and named.
TEST(FrameAnalysisTest, PinnedBarsAndLooseJoints) {
    Frame frame;
    const Six no_turn{0, 0, 0, rigid, rigid, rigid};
    frame.nodes = {{{0, 0, 0}, "A", held},
                   {{100, 0, 100}, "Top", no_turn},
                   {{200, 0, 0}, "C", {0, rigid, rigid, rigid, rigid, rigid}}};
    frame.nodes[1].support[1] = rigid;
    Member bar = beam(rigid, rigid).members[0];
    bar.joint_i.spring = bar.joint_j.spring = {0, 0, 0};
    for (const auto& [i, j] : {std::pair<size_t, size_t>{0, 1}, {2, 1}, {0, 2}}) {
        bar.i = i;
        bar.j = j;
        frame.members.push_back(bar);
    }
    const LoadVector down{"P", {{1, {0, 0, -1000, 0, 0, 0}}}, {}, {}};
    const Analysis found = analyse(frame, {down});
    ASSERT_EQ(found.fault, "");
    expect_printed(found.responses[0].end_force[0][1][0], "-707.106781", "left");
    expect_printed(found.responses[0].end_force[1][1][0], "-707.106781", "right");
    expect_printed(found.responses[0].end_force[2][1][0], "500", "tie");
    for (const auto& ends : found.responses[0].end_force)
        for (const Six& end : ends)
            for (size_t k = 3; k < 6; k++)
                EXPECT_DOUBLE_EQ(end[k], 0.0);
    frame.nodes[1].support[4] = 0.0;
    const Analysis loose = analyse(frame, {down});
    EXPECT_NE(loose.fault.find("節点 Top が y 軸まわりに回転します"), std::string::npos)
        << loose.fault;
    EXPECT_TRUE(loose.responses.empty());
    frame.nodes[1].support[4] = rigid;
    frame.nodes[2].support[2] = 0.0; // rolls away
    EXPECT_NE(analyse(frame, {down}).fault.find("構造が不安定です: 節点"), std::string::npos);
}

// A spring under a node takes k u; projected load q on a slope gives q times its level run.
TEST(FrameAnalysisTest, SprungSupportAndProjectedLoad) {
    Frame frame = beam(rigid, rigid);
    frame.nodes.resize(2);
    frame.members.resize(1);
    frame.nodes[1] = {{120, 0, 90}, "tip", {0, 0, 40.0, 0, 5e5, 0}};
    LoadVector snow;
    snow.members = {{0, MemberLoad::Kind::projected, {0, 0, -2}, false, 0.0}};
    const Analysis found = analyse(frame, {snow});
    ASSERT_EQ(found.fault, "");
    const Response& r = found.responses[0];
    EXPECT_NEAR(r.reaction[0][2] + r.reaction[1][2], 2.0 * 120, 1e-9);
    EXPECT_NEAR(r.reaction[1][2], -40.0 * r.moved[1][2], 1e-9);
    EXPECT_NEAR(r.reaction[1][4], -5e5 * r.moved[1][4], 1e-7);
    EXPECT_GT(r.reaction[1][2], 1.0);
}

// Rigid joints: the same as the program to its nine digits; one factorisation for all vectors, and
// superposition.
TEST(FrameAnalysisTest, AgreesWithTheProgramAndAddsUp) {
    frameslv::test::Frame f;
    f.node = {{0, 0, 0}, {0, 0, 310}, {400, 30, 300}, {400, 0, 0}};
    f.member = {{1, 2, 1, 1, 15}, {2, 3, 2}, {4, 3}};
    f.section = {{1000, 500, 100, 800}, {700, 900, 80, 300}};
    f.material = {{1e5, 0.25}};
    f.support = {{1}, {4, "111010"}};
    f.load = {{2, frameslv::test::six(10, 3, -20, 5, 6, 7)}, {3, frameslv::test::six(0, -4, 0)}};
    const frameslv::Solution expected = frameslv::test::solution_of(f);
    Frame frame;
    for (const auto& at : f.node)
        frame.nodes.push_back({{at.x(), at.y(), at.z()}, {}, {}});
    frame.nodes[0].support = held;
    frame.nodes[3].support = {rigid, rigid, rigid, 0, rigid, 0};
    for (const auto& m : f.member) {
        const auto& s = f.section[static_cast<size_t>(m.section) - 1];
        Member member;
        member.i = static_cast<size_t>(m.i) - 1;
        member.j = static_cast<size_t>(m.j) - 1;
        member.E = 1e5;
        member.G = 1e5 / 2.5;
        member.A = s.A;
        member.Iy = s.Iy;
        member.Iz = s.Iz;
        member.J = s.J;
        member.turn = m.angle;
        frame.members.push_back(member);
    }
    std::vector<LoadVector> loads(6);
    loads[0].nodes = {{1, {10, 3, -20, 5, 6, 7}}, {2, {0, -4, 0, 0, 0, 0}}};
    for (size_t k = 1; k < 5; k++) {
        loads[k].nodes = {{1, {1.0 * static_cast<double>(k), 0, 0, 0, 0, 3}}};
        loads[k].members = {{1, MemberLoad::Kind::uniform, {0, 0.1, -0.2}, k % 2 == 0, 0}};
        for (const NodeLoad& one : loads[k].nodes)
            loads[5].nodes.push_back(one);
        for (const MemberLoad& one : loads[k].members)
            loads[5].members.push_back(one);
    }
    const auto solve = [&] { return analyse(frame, loads); };
    const Analysis found = solve();
    ASSERT_EQ(found.fault, "");
    double most = 0.0;
    for (const auto& v : expected.moved)
        most = std::max(most, v.cwiseAbs().maxCoeff());
    for (size_t i = 0; i < 4; i++)
        for (size_t k = 0; k < 6; k++) {
            EXPECT_NEAR(found.responses[0].moved[i][k],
                        expected.moved[i](static_cast<Eigen::Index>(k)), 1e-11 * most);
            double sum = 0.0;
            for (size_t c = 1; c < 5; c++)
                sum += found.responses[c].moved[i][k];
            EXPECT_NEAR(found.responses[5].moved[i][k], sum, 1e-11 * most);
        }
    // Several frames on several threads give the same bits.
    std::vector<Analysis> others(4);
    std::vector<std::thread> threads;
    for (Analysis& other : others)
        threads.emplace_back([&other, &solve] { other = solve(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const Analysis& other : others)
        for (size_t c = 0; c < loads.size(); c++)
            EXPECT_EQ(other.responses[c].moved, found.responses[c].moved);
}

// A pinned portal of two posts, a beam and two crossed braces under P at its top: by the joints the
// brace in tension has P L / b, the post under its upper end -P h / b, the beam -P; the other brace
// is idle. With braces for compression it is the other way round.
TEST(FrameAnalysisTest, TensionOnlyBraces) {
    constexpr double h = 300, b = 400, L = 500, P = 1000;
    Frame frame;
    const Six plane{0, rigid, 0, rigid, rigid, rigid},
        foot{rigid, rigid, rigid, rigid, rigid, rigid};
    frame.nodes = {{{0, 0, 0}, "A", foot},
                   {{b, 0, 0}, "B", foot},
                   {{0, 0, h}, "C", plane},
                   {{b, 0, h}, "D", plane}};
    Member bar = beam(rigid, rigid).members[0];
    bar.joint_i.spring = bar.joint_j.spring = {0, 0, 0};
    for (const auto& [i, j] : {std::pair<size_t, size_t>{0, 2}, {1, 3}, {2, 3}, {0, 3}, {1, 2}}) {
        bar.i = i;
        bar.j = j;
        bar.carries = i + j == 3 ? Member::Carries::tension : Member::Carries::both;
        frame.members.push_back(bar);
    }
    std::vector<LoadVector> loads(3);
    loads[0].nodes = {{2, {P, 0, 0, 0, 0, 0}}};
    loads[1].nodes = {{3, {-2 * P, 0, 0, 0, 0, 0}}};
    loads[2].nodes = {{2, {0, 0, -P, 0, 0, 0}}, {3, {0, 0, 3 * P, 0, 0, 0}}};
    const auto normal = [](const Response& r, size_t member) { return r.end_force[member][1][0]; };
    const Analysis found = analyse(frame, loads);
    ASSERT_EQ(found.fault, "");
    const Response& right = found.responses[0];
    const Response& left = found.responses[1];
    EXPECT_EQ(right.idle, std::vector<size_t>{4});
    EXPECT_EQ(left.idle, std::vector<size_t>{3});
    const double right_forces[] = {0, -P * h / b, -P, P * L / b, 0};
    const double left_forces[] = {-2 * P * h / b, 0, -2 * P, 0, 2 * P * L / b};
    for (size_t m = 0; m < 5; m++) {
        EXPECT_NEAR(normal(right, m), right_forces[m], 1e-9 * P) << m;
        EXPECT_NEAR(normal(left, m), left_forces[m], 1e-9 * P) << m;
        for (const Response& r : found.responses)
            EXPECT_LT(r.imbalance, 1e-11);
    }
    for (Member& member : frame.members)
        if (member.carries != Member::Carries::both)
            member.carries = Member::Carries::compression;
    const Analysis pressed = analyse(frame, {loads[0]});
    ASSERT_EQ(pressed.responses[0].fault, "");
    EXPECT_EQ(pressed.responses[0].idle, std::vector<size_t>{3});
    EXPECT_NEAR(normal(pressed.responses[0], 4), -P * L / b, 1e-9 * P);
    EXPECT_EQ(analyse(frame, loads).responses[2].idle,
              analyse(frame, {loads[2]}).responses[0].idle);
    // One round is not enough; and a frame whose only brace goes slack falls, with its load named.
    const Analysis cut = analyse(frame, loads, 1, 1);
    EXPECT_NE(cut.responses[0].fault.find("組が定まりません"), std::string::npos);
    EXPECT_TRUE(cut.responses[0].moved.empty());
    frame.members.pop_back();
    loads[1].name = "西";
    const Analysis slack = analyse(frame, loads);
    ASSERT_EQ(slack.fault, "");
    EXPECT_NE(slack.responses[0].fault.find("構造が不安定です: 節点"), std::string::npos);
    EXPECT_EQ(slack.responses[1].fault, "");
}

// A lattice of pinned bars against the method of sections by its own equations of joints: no
// moments, and the axial forces balance every joint.
TEST(FrameAnalysisTest, PinnedLattice) {
    Frame frame;
    const Six no_turn{0, 0, 0, rigid, rigid, rigid};
    constexpr int n = 4;
    const auto at = [](int i, int j, int level) {
        return static_cast<size_t>((level * (n + 1) + j) * (n + 1) + i);
    };
    for (int level = 0; level < 2; level++)
        for (int j = 0; j <= n; j++)
            for (int i = 0; i <= n; i++)
                frame.nodes.push_back(
                    {{90.0 * i, 80.0 * j, 45.0 * level}, {}, level == 0 ? held : no_turn});
    Member bar = beam(rigid, rigid).members[0];
    bar.joint_i.spring = bar.joint_j.spring = {0, 0, 0};
    const auto join = [&](size_t a, size_t b) {
        bar.i = a;
        bar.j = b;
        frame.members.push_back(bar);
    };
    for (int j = 0; j <= n; j++)
        for (int i = 0; i <= n; i++) {
            join(at(i, j, 0), at(i, j, 1));
            join(at(i, j, 1), at(i < n ? i + 1 : 0, j, 0));
            join(at(i, j, 1), at(i, j < n ? j + 1 : 0, 0));
            if (i < n)
                join(at(i, j, 1), at(i + 1, j, 1));
        }
    LoadVector load;
    for (size_t i = frame.nodes.size() / 2; i < frame.nodes.size(); i++)
        load.nodes.push_back({i, {3.0 * static_cast<double>(i), -7.0, -20.0, 0, 0, 0}});
    const Analysis found = analyse(frame, {load});
    ASSERT_EQ(found.fault, "");
    std::vector<Eigen::Vector3d> left(frame.nodes.size(), Eigen::Vector3d::Zero());
    for (const NodeLoad& one : load.nodes)
        left[one.node] += Eigen::Vector3d(one.value[0], one.value[1], one.value[2]);
    for (size_t m = 0; m < frame.members.size(); m++) {
        const auto& ends = found.responses[0].end_force[m];
        for (const Six& end : ends)
            for (size_t k = 1; k < 6; k++)
                EXPECT_DOUBLE_EQ(end[k], 0.0);
        const Vector3& a = frame.nodes[frame.members[m].i].at;
        const Vector3& b = frame.nodes[frame.members[m].j].at;
        const Eigen::Vector3d axis =
            Eigen::Vector3d(b[0] - a[0], b[1] - a[1], b[2] - a[2]).normalized();
        left[frame.members[m].i] += ends[1][0] * axis;
        left[frame.members[m].j] -= ends[1][0] * axis;
    }
    for (size_t i = frame.nodes.size() / 2; i < frame.nodes.size(); i++)
        EXPECT_LT(left[i].norm(), 1e-9) << i;
}

TEST(FrameAnalysisTest, RefusesByName) {
    const auto fault = [](auto change) {
        Frame frame = beam(rigid, rigid);
        LoadVector load = middle(-1);
        change(frame, load);
        return analyse(frame, {load}).fault;
    };
    EXPECT_EQ(fault([](Frame&, LoadVector&) {}), "");
    EXPECT_NE(fault([](Frame& f, LoadVector&) {
                  f.members[1].joint_i.spring[2] = -1;
              }).find("部材 2 (節点 B - 節点 C) の端のばね"),
              std::string::npos);
    EXPECT_NE(fault([](Frame& f, LoadVector&) { f.members[0].G = std::nan(""); }).find("の G"),
              std::string::npos);
    EXPECT_NE(fault([](Frame& f, LoadVector&) { f.nodes[1].support[0] = -2; }).find("節点 B"),
              std::string::npos);
    EXPECT_NE(fault([](Frame&, LoadVector& l) {
                  l.members = {{5, {}, {}, false, 0}};
              }).find("部材 6 はありません"),
              std::string::npos);
    EXPECT_NE(fault([](Frame& f, LoadVector&) { f.members[0].j = 9; }).find("部材 1"),
              std::string::npos);
}

} // namespace frame_analysis
