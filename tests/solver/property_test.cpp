// What must hold for every frame: agreement with a dense solver, invariance, reciprocity, energy,
// rigid motion; and frames that are nearly mechanisms.
#include "support.h"

#include <random>

namespace frameslv::test {

namespace {

using Random = std::mt19937;

double draw(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

int pick(Random& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

// A connected frame of random members, sections, supports and loads; some members upright.
Frame random_frame(Random& random) {
    Frame f;
    const int nodes = pick(random, 3, 14);
    for (int no = 1; no <= nodes; no++) {
        Vector3 at(draw(random, -500, 500), draw(random, -500, 500), draw(random, -500, 500));
        if (no > 1) {
            const int other = pick(random, 1, no - 1);
            const Vector3& from = f.node[static_cast<size_t>(other) - 1];
            if (pick(random, 0, 3) == 0)
                at = from + Vector3(0, 0, draw(random, 50, 400) * (pick(random, 0, 1) ? 1 : -1));
            f.member.push_back({other, no, pick(random, 1, 3), pick(random, 1, 2),
                                pick(random, 0, 1) ? draw(random, -720, 720) : 0.0});
        }
        f.node.push_back(at);
    }
    for (int extra = pick(random, 0, 2 * nodes); extra > 0; extra--) {
        const int i = pick(random, 1, nodes), j = pick(random, 1, nodes);
        if (i != j)
            f.member.push_back({i, j, pick(random, 1, 3), pick(random, 1, 2), 0.0});
    }
    for (int k = 0; k < 3; k++)
        f.section.push_back({draw(random, 500, 5000), draw(random, 500, 5000),
                             draw(random, 50, 200), draw(random, 500, 5000)});
    f.material = {{draw(random, 5e4, 2e5), 0.3}, {draw(random, 5e4, 2e5), 0.1}};
    f.support = {{pick(random, 1, nodes)}};
    for (int k = pick(random, 0, 3); k > 0; k--) {
        Frame::Support one{pick(random, 1, nodes), "000000"};
        for (char& digit : one.digits)
            digit = pick(random, 0, 1) ? '1' : '0';
        f.support.push_back(one);
    }
    for (int k = pick(random, 1, 4); k > 0; k--) {
        const auto force = [&] { return draw(random, -300, 300); };
        f.load.push_back({pick(random, 1, nodes), six(force(), force(), force(), 50 * force(),
                                                      50 * force(), 50 * force())});
    }
    return f;
}

// The textbook stiffness in local axes, written out entry by entry.
Eigen::Matrix<double, 12, 12> dense_local(const Frame::Section& s, const Frame::Material& m,
                                          double L) {
    Eigen::Matrix<double, 12, 12> k = Eigen::Matrix<double, 12, 12>::Zero();
    const auto set = [&k](int i, int j, double value) { k(i, j) = k(j, i) = value; };
    const double G = m.E / (2 * (1 + m.nu));
    for (const auto& [a, stiff] : {std::pair{0, m.E * s.A / L}, std::pair{3, G * s.J / L}}) {
        set(a, a, stiff);
        set(a + 6, a + 6, stiff);
        set(a, a + 6, -stiff);
    }
    const auto bend = [&](int v, int t, double EI, double sign) {
        set(v, v, 12 * EI / (L * L * L));
        set(v + 6, v + 6, 12 * EI / (L * L * L));
        set(v, v + 6, -12 * EI / (L * L * L));
        set(v, t, sign * 6 * EI / (L * L));
        set(v, t + 6, sign * 6 * EI / (L * L));
        set(v + 6, t, -sign * 6 * EI / (L * L));
        set(v + 6, t + 6, -sign * 6 * EI / (L * L));
        set(t, t, 4 * EI / L);
        set(t + 6, t + 6, 4 * EI / L);
        set(t, t + 6, 2 * EI / L);
    };
    bend(1, 5, m.E * s.Iz, 1.0);
    bend(2, 4, m.E * s.Iy, -1.0);
    return k;
}

std::vector<Vector6> dense_solution(const Frame& f) {
    const Eigen::Index n = static_cast<Eigen::Index>(f.node.size()) * 6;
    Eigen::MatrixXd K = Eigen::MatrixXd::Zero(n, n);
    Eigen::VectorXd b = Eigen::VectorXd::Zero(n);
    for (const Frame::Member& m : f.member) {
        const Vector3 &i = f.node[static_cast<size_t>(m.i) - 1],
                      &j = f.node[static_cast<size_t>(m.j) - 1];
        Eigen::Matrix<double, 12, 12> T = Eigen::Matrix<double, 12, 12>::Zero();
        for (int q = 0; q < 4; q++)
            T.block<3, 3>(3 * q, 3 * q) = turned_axes(i, j, m.angle);
        const Eigen::Matrix<double, 12, 12> k =
            T.transpose() *
            dense_local(f.section[static_cast<size_t>(m.section) - 1],
                        f.material[static_cast<size_t>(m.material) - 1], (j - i).norm()) *
            T;
        const Eigen::Index at[2] = {6 * (m.i - 1), 6 * (m.j - 1)};
        for (int p = 0; p < 2; p++)
            for (int q = 0; q < 2; q++)
                K.block<6, 6>(at[p], at[q]) += k.block<6, 6>(6 * p, 6 * q);
    }
    for (const Frame::Load& one : f.load)
        b.segment<6>(6 * (one.no - 1)) += one.value;
    for (const Frame::Support& one : f.support)
        for (int q = 0; q < 6; q++)
            if (one.digits[static_cast<size_t>(q)] == '1') {
                const Eigen::Index at = 6 * (one.no - 1) + q;
                K.row(at).setZero();
                K.col(at).setZero();
                K(at, at) = 1.0;
                b(at) = 0.0;
            }
    const Eigen::VectorXd x = K.fullPivLu().solve(b);
    std::vector<Vector6> moved;
    for (Eigen::Index at = 0; at < n; at += 6)
        moved.push_back(x.segment<6>(at));
    return moved;
}

Frame table_frame() {
    Frame f;
    f.node = {{0, 0, 0},   {300, 0, 0},   {300, 200, 0},   {0, 200, 0},
              {0, 0, 250}, {300, 0, 250}, {300, 200, 250}, {0, 200, 270}};
    f.member = {{1, 5}, {2, 6}, {3, 7}, {4, 8}, {5, 6, 2}, {6, 7, 2}, {7, 8, 2}, {8, 5, 2}, {5, 7}};
    f.section = {{900, 400, 100, 500}, {2000, 700, 150, 900}};
    f.material = {{1e5, 0.3}};
    f.support = {{1}, {2}, {3}, {4, "111000"}};
    f.load = {{5, six(50, 20, -300)}, {7, six(0, -40, -200, 1000, 500, -800)}};
    return f;
}

using PropertyTest = SolverTest;

} // namespace

TEST_F(PropertyTest, AgreesWithDenseSolverOnRandomFrames) {
    constexpr unsigned seed = 20260;
    Random random(seed);
    for (int k = 0; k < 300; k++) {
        const Frame f = random_frame(random);
        const Results r = solved(f);
        expect_same(r.moved, dense_solution(f), 2e-8); // nine digits in the file
        if (HasFailure())
            FAIL() << "frame " << k << " of seed " << seed;
        // Listed member forces balance every node, and the whole.
        Vector6 whole = Vector6::Zero();
        double size = 0.0, largest = 0.0;
        for (const Results::Stress& m : r.stress)
            largest = std::max({largest, std::abs(m.xm1), std::abs(m.ym1), std::abs(m.zm),
                                std::abs(m.xm2), std::abs(m.ym2), std::abs(m.force)});
        for (int no = 1; no <= static_cast<int>(f.node.size()); no++) {
            const Vector6 left = reaction(f, r, no);
            const Vector3& at = f.node[static_cast<size_t>(no) - 1];
            whole += left;
            whole.tail<3>() += at.cross(left.head<3>());
            size = std::max(size, left.norm());
            bool held = false;
            for (const Frame::Support& one : f.support)
                held = held || one.no == no;
            if (!held) {
                EXPECT_LE(left.norm(), 1e-8 * largest) << "node " << no;
            }
        }
        for (const Frame::Load& one : f.load) {
            whole += one.value;
            const Vector3& at = f.node[static_cast<size_t>(one.no) - 1];
            whole.tail<3>() += at.cross(one.value.head<3>());
        }
        EXPECT_LE(whole.norm(), 1e-6 * size);
    }
}

TEST_F(PropertyTest, SameFrameMovedRenumberedReversedSplit) {
    const Frame f = table_frame();
    const std::vector<Vector6> moved = solved(f).moved;

    Frame elsewhere = f;
    for (Vector3& at : elsewhere.node)
        at += Vector3(1000, -2000, 3000);
    expect_same(solved(elsewhere).moved, moved, 2e-8);

    Frame renumbered = f; // node k becomes 9 - k
    std::reverse(renumbered.node.begin(), renumbered.node.end());
    for (Frame::Member& m : renumbered.member)
        m = {9 - m.i, 9 - m.j, m.section, m.material, m.angle};
    for (Frame::Support& one : renumbered.support)
        one.no = 9 - one.no;
    for (Frame::Load& one : renumbered.load)
        one.no = 9 - one.no;
    std::vector<Vector6> back = solved(renumbered).moved;
    std::reverse(back.begin(), back.end());
    expect_same(back, moved, 2e-8);

    Frame reversed = f;
    for (Frame::Member& m : reversed.member)
        std::swap(m.i, m.j);
    expect_same(solved(reversed).moved, moved, 2e-8);

    Frame split = f;
    for (size_t k = 0; k < f.member.size(); k++) {
        const Frame::Member m = f.member[k];
        split.node.push_back(0.3 * f.node[static_cast<size_t>(m.i) - 1] +
                             0.7 * f.node[static_cast<size_t>(m.j) - 1]);
        const int middle = static_cast<int>(split.node.size());
        split.member[k].j = middle;
        split.member.push_back({middle, m.j, m.section, m.material, m.angle});
    }
    back = solved(split).moved;
    back.resize(moved.size());
    expect_same(back, moved, 2e-8);
}

TEST_F(PropertyTest, LoadsAddUpAndAreReciprocal) {
    Frame f = table_frame();
    const std::vector<Vector6> both = solved(f).moved;
    f.load = {{5, six(1, 0, 0)}};
    const Results a = solved(f);
    f.load = {{7, six(0, 0, 0, 0, 1, 0)}};
    const Results b = solved(f);
    EXPECT_NEAR(a.u(7)(4), b.u(5)(0), 1e-8 * std::abs(b.u(5)(0)));
    // Several lines of one node add up; half the work of the loads is positive.
    f.load = {{5, six(20, 20, -100)},
              {7, six(0, -40, -200)},
              {5, six(30, 0, -200)},
              {7, six(0, 0, 0, 1000, 500, -800)}};
    const Results sum = solved(f);
    expect_same(sum.moved, both, 2e-8);
    double work = 0.0;
    for (const Frame::Load& one : f.load)
        work += one.value.dot(sum.u(one.no));
    EXPECT_GT(work, 0.0);
}

// The long chain is sound though its pivots fall; a ratio of 1e10 is told, and the result still
// good to the digits that are left; a ratio beyond double precision is refused, not guessed.
TEST_F(PropertyTest, NearMechanisms) {
    Frame f;
    constexpr int pieces = 200;
    for (int k = 0; k <= pieces; k++)
        f.node.push_back({10.0 * k, 0, 0});
    for (int k = 1; k <= pieces; k++)
        f.member.push_back({k, k + 1});
    f.section = {{1000, 1000, 100, 1000}};
    f.material = {{1e5, 0.3}};
    f.support = {{1}};
    f.load = {{pieces + 1, six(0, 0, -1)}};
    const double tip = -8e9 / 3e8;
    EXPECT_NEAR(solved(f).u(pieces + 1)(2), tip, 1e-6 * std::abs(tip));

    f.node = {{0, 0, 0}, {100, 0, 0}, {200, 0, 0}};
    f.member = {{1, 2, 1, 1}, {2, 3, 1, 2}};
    f.load = {{3, six(1, 0, -1)}};
    for (const auto& [soft, stiff] : {std::pair{1e-5, 1e5}, std::pair{1e-3, 1e7}}) {
        f.material = {{soft, 0.3}, {stiff, 0.3}};
        const Results r = solved(f);
        EXPECT_NE(r.out.find("WARNING"), std::string::npos) << r.out;
        const double stretch = 1 * 100 / (soft * 100);
        EXPECT_NEAR(r.u(3)(0), stretch, 1e-4 * stretch);
        EXPECT_NEAR(r.s(1).force, 1.0, 1e-4);
        EXPECT_NEAR(r.s(2).force, 1.0, 1e-4);
    }
    f.material = {{1e-9, 0.3}, {1e9, 0.3}};
    const Results refused = run(f);
    EXPECT_NE(refused.code, 0);
    EXPECT_NE(refused.err.find("がほとんど抵抗なく"), std::string::npos) << refused.err;
    // The other way round nothing is lost: the stiff member is the held one.
    f.support = {{3}};
    f.load = {{1, six(1, 0, 0)}};
    EXPECT_NE(solved(f).out.find("WARNING"), std::string::npos);
}

// The library's own figures: what the program prints of residual and reactions.
TEST_F(PropertyTest, ResidualAndReactionsAreChecked) {
    const Frame f = table_frame();
    const Results r = solved(f);
    const Solution solution = solution_of(f);
    EXPECT_LT(solution.residual, 1e-9);
    EXPECT_LT(solution.imbalance, 1e-9);
    EXPECT_NEAR(solution.reactions(2), 500.0, 1e-6);
    for (const int no : {1, 2, 3, 4})
        EXPECT_LE((solution.reaction[index_of(no)] - reaction(f, r, no)).norm(), 1e-3);
    EXPECT_NE(r.out.find("500"), std::string::npos) << r.out;
}

} // namespace frameslv::test
