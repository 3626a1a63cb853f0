// Published frames and trusses and closed forms. Problems given with y upward are turned to z
// upward.
#include "support.h"

#include <cmath>

namespace frameslv::test {

namespace {

class BenchmarkTest : public SolverTest {
  protected:
    struct Printed {
        int no;
        const char* value[6]; // null: not given
    };
    static void expect_moved(const Results& r, const std::vector<Printed>& rows) {
        for (const Printed& row : rows)
            expect_six(y_up(r.u(row.no)), row, "displacement");
    }
    static void expect_reactions(const Frame& f, const Results& r,
                                 const std::vector<Printed>& rows) {
        for (const Printed& row : rows)
            expect_six(y_up(reaction(f, r, row.no)), row, "reaction");
    }
    static void expect_axial(const Results& r, const std::vector<const char*>& printed) {
        for (size_t i = 0; i < printed.size(); i++)
            expect_printed(r.stress.at(i).force, printed[i], "axial " + std::to_string(i + 1));
    }
    static void expect_six(const Vector6& v, const Printed& row, const std::string& what) {
        for (int k = 0; k < 6; k++)
            if (row.value[k] != nullptr)
                expect_printed(v(k), row.value[k],
                               what + " " + std::to_string(k) + " of " + std::to_string(row.no));
    }
};

} // namespace

// Logan, A First Course in the Finite Element Method, 4th ed., example 5.8.
TEST_F(BenchmarkTest, Logan58) {
    Frame f;
    f.node = {z_up(0, 0, 0), z_up(-100, 0, 0), z_up(0, 0, -100), z_up(0, -100, 0)};
    f.member = {{2, 1}, {3, 1}, {4, 1}};
    f.section = {{100, 100, 10, 50}};
    f.material = {{30000, 0.5}};
    f.support = {{2}, {3}, {4}};
    f.load = {{1, z_up(six(0, -50, 0, -1000))}};
    const Results r = solved(f);
    expect_moved(r, {{1,
                      {"7.09826e-5", "-1.399513e-2", "-2.351889e-3", "-3.996090e-3", "1.780069e-5",
                       "-1.033429e-4"}}});
    expect_axial(r, {"0.21295", "-7.05567", "-41.98540"});
    expect_reactions(
        f, r, {{4, {"0.183462", "41.98540", "-7.108295", "-235.5320", "-0.0890035", "-6.072806"}}});
}

// Weaver, Computer Programs for Structural Analysis (1967), p. 146, problem 8.
TEST_F(BenchmarkTest, Weaver146) {
    Frame f;
    f.node = {z_up(0, 120, 0), z_up(240, 120, 0), z_up(0, 0, 0), z_up(360, 0, 120)};
    f.member = {{1, 2}, {3, 1}, {2, 4}};
    f.section = {{56, 56, 11, 83}};
    f.material = {{30000, 0.25}};
    f.support = {{3}, {4}};
    f.load = {{1, z_up(six(2, 0, 0))}, {2, z_up(six(0, -1, 0, 0, 0, -120))}};
    const Results r = solved(f);
    expect_moved(r, {{2, {"0.22202", "-0.48119", "-0.70161", "-0.00802", "0.00101", "-0.00435"}},
                     {1,
                      {"0.2226715", "0.000157170", "-0.1718231", "-0.00255327", "0.00216542",
                       "-0.00213387"}}});
    expect_reactions(f, r,
                     {{3, {"-1.1041", "-0.43222", "0.21731", "48.785", "-17.973", "96.122"}},
                      {4, {"-0.89588", "1.4322", "-0.21731", "123.08", "47.246", "-11.72"}}});
    expect_axial(r, {"-0.895878", "0.432217", "-1.46959"});
}

// Kassimali, example 8.1, a space truss: the bending of thin bars changes nothing in five digits.
TEST_F(BenchmarkTest, Kassimali81) {
    Frame f;
    f.node = {z_up(-144, 0, -96), z_up(72, 0, -96), z_up(-72, 0, 96), z_up(144, 0, 96),
              z_up(0, 288, 0)};
    f.member = {{1, 5}, {2, 5}, {3, 5}, {4, 5}};
    f.section = {{1e-6, 1e-6, 8.4, 1e-6}};
    f.material = {{10000, 0.3}};
    f.support = {{1}, {2}, {3}, {4}};
    f.load = {{5, z_up(six(0, -100, -50))}};
    const Results r = solved(f);
    expect_moved(r, {{5, {"0.10913", "-0.12104", "-0.57202"}}});
    expect_reactions(f, r,
                     {{1, {"23.61617", "47.23234", "15.74411"}},
                      {2, {"-19.44191", "77.76766", "25.92255"}},
                      {3, {"-5.55809", "-22.23234", "7.41078"}},
                      {4, {"1.38383", "-2.76766", "0.92255"}}});
    expect_axial(r, {"-55.10440", "-84.24830", "24.08504", "3.22893"});
}

// Ferreira, MATLAB Codes for Finite Element Analysis, example 8.3: tells Iy from Iz.
TEST_F(BenchmarkTest, Ferreira83) {
    Frame f;
    f.node = {z_up(0, 0, 0), z_up(3, 0, 0), z_up(0, 0, -3), z_up(0, -4, 0)};
    f.member = {{1, 2}, {1, 3}, {1, 4}};
    // The book's y of a horizontal member is vertical: its Iz is the one of vertical bending here.
    f.section = {{20e-5, 10e-5, 0.02, 5e-5}};
    f.material = {{210e6, 0.25}};
    f.support = {{2}, {3}, {4}};
    f.load = {{1, z_up(six(-10, 0, 20))}};
    expect_moved(solved(f), {{1,
                              {"-7.05148e-6", "-6.65367e-8", "1.41770e-5", "1.44779e-6",
                               "1.74858e-6", "1.13605e-6"}}});
    Frame exchanged = f;
    exchanged.section.push_back({10e-5, 20e-5, 0.02, 5e-5});
    exchanged.member[2].section = 2;
    expect_moved(solved(exchanged),
                 {{1, {nullptr, nullptr, nullptr, "2.26458e-6", nullptr, "7.37023e-7"}}});
    // A quarter turn of the section is the same exchange.
    Frame turned = f;
    turned.member[2].angle = 90.0;
    expect_same(solved(turned).moved, solved(exchanged).moved, 1e-8);
}

// Levy and Spillers, Analysis of Geometrically Nonlinear Structures, section 2.4.2, linear dome.
TEST_F(BenchmarkTest, LevySpillersDome) {
    for (const double inertia : {1e-12, 1e-9}) {
        Frame f;
        f.node = {{0, 0, 3.2346},
                  {4.92125, 8.5239, 2.4472},
                  {-4.92125, 8.5239, 2.4472},
                  {-9.8425, 0, 2.4472},
                  {-4.92125, -8.5239, 2.4472},
                  {4.92125, -8.5239, 2.4472},
                  {9.8425, 0, 2.4472},
                  {0, 19.685, 0},
                  {-17.0472, 9.8425, 0},
                  {-17.0472, -9.8425, 0},
                  {0, -19.685, 0},
                  {17.0472, -9.8425, 0},
                  {17.0472, 9.8425, 0}};
        f.member = {{1, 2},  {1, 3},  {1, 4}, {1, 5}, {1, 6}, {1, 7}, {6, 12}, {7, 12},
                    {7, 13}, {2, 13}, {2, 8}, {3, 8}, {3, 9}, {4, 9}, {4, 10}, {5, 10},
                    {5, 11}, {6, 11}, {2, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 7},  {7, 2}};
        f.section = {{inertia, inertia, 0.0155, inertia}};
        f.material = {{3e7, 0.3}};
        for (int no = 8; no <= 13; no++)
            f.support.push_back({no});
        f.load = {{1, six(0, 0, -220.46)}};
        const Results r = solved(f);
        expect_printed(r.u(1)(2), inertia < 1e-10 ? "-0.20641184" : "-0.20641", "crown");
        for (const int no : {1, 2, 4, 5})
            expect_printed(r.s(no).force, "-460.76", "radial");
        for (int no = 7; no <= 18; no++)
            EXPECT_NEAR(r.s(no).force, -93.396, 0.002) << "leg " << no;
        for (int no = 19; no <= 24; no++)
            EXPECT_NEAR(r.s(no).force, 351.1145, 0.003) << "ring " << no;
    }
}

// Hutton, Fundamentals of Finite Element Analysis, example 3.3.
TEST_F(BenchmarkTest, Hutton33) {
    Frame f;
    f.node = {z_up(0, 0, 30), z_up(0, 0, -30), z_up(0, -30, 0), z_up(40, 0, 0)};
    f.member = {{1, 4}, {2, 4}, {3, 4}};
    f.section = {{1e-8, 1e-8, 1.5, 1e-8}};
    f.material = {{1e7, 0.3}};
    f.support = {{1}, {2}, {3}};
    f.load = {{4, z_up(six(0, -5000, 0))}};
    const Results r = solved(f);
    expect_moved(r, {{4, {"0.01736111", "-0.06944444", "0.0000000"}}});
    expect_axial(r, {"4166.667", "4166.667", "-8333.333"});
}

namespace {

Frame mcguire() {
    Frame f;
    f.node = {z_up(0, 0, 0), z_up(8000, 0, 0), z_up(13000, 0, 0)};
    f.member = {{1, 2, 1}, {2, 3, 2}};
    f.section = {{200e6, 200e6, 6000, 300e3}, {50e6, 50e6, 4000, 100e3}};
    f.material = {{200, 0.3}};
    return f;
}

} // namespace

// McGuire, Gallagher, Ziemian, Matrix Structural Analysis, example 4.8.
TEST_F(BenchmarkTest, McGuire48) {
    Frame f = mcguire();
    f.support = {{1}, {2, "011000"}}; // y and z are held whichever is upward
    f.load = {{3, z_up(six(5 / std::sqrt(2.0), -5 / std::sqrt(2.0), 0))}};
    expect_moved(solved(f),
                 {{2, {"0.0235702", nullptr, nullptr, nullptr, nullptr, "-0.000883883"}},
                  {3, {"0.0456673", "-19.15081", nullptr, nullptr, nullptr, "-0.00530330"}}});
}

// The same book, example 4.12; its printed v_b = -0.545 is cut off, not rounded.
TEST_F(BenchmarkTest, McGuire412) {
    Frame f = mcguire();
    f.support = {{1}, {3}};
    f.load = {{2, z_up(six(0, -1, 0, 40))}};
    const Results r = solved(f);
    expect_moved(r, {{2, {nullptr, "-0.5457292", nullptr, "9.0434783e-3", nullptr, "-0.263e-4"}},
                     {2, {nullptr, nullptr, nullptr, nullptr, nullptr, "-2.631194e-5"}}});
    expect_reactions(f, r,
                     {{1, {nullptr, nullptr, nullptr, "-26.087", nullptr, "1783.365"}},
                      {3, {nullptr, nullptr, nullptr, "-13.913", nullptr, "-1414.998"}}});
    EXPECT_NEAR(std::abs(r.s(1).zm), 40 * 37.5 / 57.5, 1e-6);
    EXPECT_NEAR(std::abs(r.s(2).zm), 40 * 20 / 57.5, 1e-6);
}

// A cantilever with all six end loads, in any direction and with a turned section: PL/EA, PL^3/3EI,
// ML^2/2EI, TL/GJ; and the section forces with their signs.
TEST_F(BenchmarkTest, CantileverInAnyDirection) {
    const double E = 1e5, nu = 0.3, A = 110, Iy = 1500, Iz = 700, J = 900, L = 250;
    const double G = E / (2 * (1 + nu));
    const Vector6 P = six(3, 5, -7, 110, -130, 170); // local
    const Vector6 at_start = P + six(0, 0, 0, 0, -P(2) * L, P(1) * L);
    const Vector6 expected =
        six(P(0) * L / (E * A), P(1) * L * L * L / (3 * E * Iz) + P(5) * L * L / (2 * E * Iz),
            P(2) * L * L * L / (3 * E * Iy) - P(4) * L * L / (2 * E * Iy), P(3) * L / (G * J),
            P(4) * L / (E * Iy) - P(2) * L * L / (2 * E * Iy),
            P(5) * L / (E * Iz) + P(1) * L * L / (2 * E * Iz));
    for (const Vector3& way : {Vector3(1, 0, 0), Vector3(0, 0, 1), Vector3(0, 0, -1),
                               Vector3(-1, 2, 0), Vector3(1, -2, 2), Vector3(1e-4, 0, -1)})
        for (const double angle : {0.0, 30.0, -405.0}) {
            Frame f;
            f.node = {{10, 20, 30}, Vector3(10, 20, 30) + L * way.normalized()};
            f.member = {{1, 2, 1, 1, angle}};
            f.section = {{Iy, Iz, A, J}};
            f.material = {{E, nu}};
            f.support = {{1}};
            const Eigen::Matrix3d axes = turned_axes(f.node[0], f.node[1], angle);
            Vector6 load, moved;
            load << axes.transpose() * P.head<3>(), axes.transpose() * P.tail<3>();
            moved << axes.transpose() * expected.head<3>(), axes.transpose() * expected.tail<3>();
            f.load = {{2, load}};
            const Results r = solved(f);
            EXPECT_LE((r.u(2) - moved).norm(), 2e-8 * moved.norm()) << way.transpose();
            const Results::Stress& s = r.s(1);
            EXPECT_NEAR(s.force, P(0), 1e-5);
            EXPECT_LE((six(s.p1, s.xv1, s.yv1, s.zm, s.xm1, s.ym1) - at_start).norm(), 1e-5);
            EXPECT_LE((six(s.p2, s.xv2, s.yv2, s.zm, s.xm2, s.ym2) - P).norm(), 1e-5);
        }
}

// Tip of a right-angle bend in plan: F (L1^3/3EI + L2^3/3EI + L2^2 L1/GJ).
TEST_F(BenchmarkTest, RightAngleBend) {
    Frame f;
    f.node = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}};
    f.member = {{1, 2}, {2, 3}};
    f.section = {{2e-4, 1e-4, 0.01, 1.5e-4}};
    f.material = {{200e6, 0.3}};
    f.support = {{1}};
    f.load = {{3, six(0, 0, -10)}};
    expect_printed(solved(f).u(3)(2), "-0.03878333", "tip");
}

// Fixed beam under a middle load: PL^3/192EI, moments PL/8. Portal under a side load: with a beam
// of infinite stiffness the posts sway by HL^3/24EI together. Tripod: P/3 each by symmetry.
TEST_F(BenchmarkTest, FixedBeamPortalTripod) {
    Frame f;
    f.node = {{0, 0, 0}, {100, 0, 0}, {200, 0, 0}};
    f.member = {{1, 2}, {2, 3}};
    f.section = {{1000, 500, 100, 800}, {1e9, 1e9, 1e7, 1e9}};
    f.material = {{1e5, 0.3}};
    f.support = {{1}, {3}};
    f.load = {{2, six(0, 0, -200)}};
    const Results beam = solved(f);
    EXPECT_NEAR(beam.u(2)(2), -200 * 8e6 / (192 * 1e8), 1e-9);
    EXPECT_NEAR(beam.s(1).xm1, 5000, 1e-4);
    EXPECT_NEAR(beam.s(1).xm2, -5000, 1e-4);
    EXPECT_NEAR(beam.s(2).xm2, 5000, 1e-4);

    f.node = {{0, 0, 0}, {0, 0, 300}, {400, 0, 300}, {400, 0, 0}};
    f.member = {{1, 2}, {2, 3, 2}, {4, 3}};
    f.support = {{1}, {4}};
    f.load = {{2, six(10, 0, 0)}};
    const double sway = 10 * 27e6 / (24 * 1e5 * 1000); // a post's y is Y: Iy for a sway along X
    EXPECT_NEAR(solved(f).u(2)(0), sway, 2e-3 * sway);

    f.node = {{0, 0, 300}};
    f.member.clear();
    f.support.clear();
    for (int k = 0; k < 3; k++) {
        const double turn = 0.3 + 2.0 * 3.14159265358979 / 3.0 * k;
        f.node.push_back({100 * std::cos(turn), 100 * std::sin(turn), 0});
        f.member.push_back({1, k + 2});
        f.support.push_back({k + 2});
    }
    f.load = {{1, six(0, 0, -300)}};
    const Results tripod = solved(f);
    for (int no = 1; no <= 3; no++) {
        EXPECT_NEAR(tripod.s(no).force, tripod.s(1).force, 1e-5);
        EXPECT_NEAR(reaction(f, tripod, no + 1)(2), 100.0, 1e-5);
    }
}

} // namespace frameslv::test
