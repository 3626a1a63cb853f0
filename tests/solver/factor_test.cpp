// The factorisation: every set of kernels against a dense library, frames large enough for
// dissection, many fronts and several threads.
#include "support.h"

#include "solver/sparse/dense.h"
#include "solver/text/input.h"

#include <random>

namespace frameslv::test {

namespace {

// A braced lattice of nx x ny x 2 nodes on held feet, with three kinds of unsymmetric sections.
Frame lattice(int nx, int ny) {
    Frame f;
    const auto node = [&](int x, int y, int z) { return 1 + x + nx * (y + ny * z); };
    for (int z = 0; z < 2; z++)
        for (int y = 0; y < ny; y++)
            for (int x = 0; x < nx; x++)
                f.node.push_back({90.0 * x, 85.0 * y, 60.0 * z});
    for (int y = 0; y < ny; y++)
        for (int x = 0; x < nx; x++) {
            for (int z = 0; z < 2; z++) {
                if (x + 1 < nx)
                    f.member.push_back({node(x, y, z), node(x + 1, y, z), 1, 1, 15.0 * z});
                if (y + 1 < ny)
                    f.member.push_back({node(x, y, z), node(x, y + 1, z), 2});
            }
            f.member.push_back({node(x, y, 0), node(x, y, 1), 3, 1, 40.0});
            if (x + 1 < nx && y + 1 < ny)
                f.member.push_back({node(x, y, 0), node(x + 1, y + 1, 1), 2, 1, -25.0});
            if ((x + y) % 7 == 0)
                f.load.push_back({node(x, y, 1), six(30, -10, -200, 500, -300, 100)});
        }
    f.section = {{1700, 900, 120, 1500}, {700, 300, 80, 600}, {2500, 1200, 144, 2400}};
    f.material = {{1e5, 0.3}};
    f.support = {
        {1}, {node(nx - 1, 0, 0)}, {node(0, ny - 1, 0)}, {node(nx - 1, ny - 1, 0), "111000"}};
    return f;
}

// The frame turned about the origin, its sections with it.
Frame turned(Frame f, const Eigen::Matrix3d& turn) {
    const std::vector<Vector3> before = f.node;
    for (Vector3& at : f.node)
        at = turn * at;
    for (Frame::Member& m : f.member) {
        const size_t i = static_cast<size_t>(m.i) - 1, j = static_cast<size_t>(m.j) - 1;
        const Vector3 y = turn * turned_axes(before[i], before[j], m.angle).row(1).transpose();
        const Eigen::Matrix3d level =
            local_axes({f.node[i].x(), f.node[i].y(), f.node[i].z()},
                       {f.node[j].x(), f.node[j].y(), f.node[j].z()}, 0.0);
        m.angle =
            std::atan2(level.row(2).dot(y), level.row(1).dot(y)) * 180.0 / 3.14159265358979324;
    }
    for (Frame::Load& one : f.load)
        one.value << turn * one.value.head<3>(), turn * one.value.tail<3>();
    return f;
}

using FactorTest = SolverTest;

} // namespace

TEST(DenseTest, EveryKernelSetEliminatesAsADenseLibraryDoes) {
    std::mt19937 random(7);
    const std::pair<int, int> sizes[] = {{1, 0},  {5, 3},   {6, 6},    {13, 40},
                                         {48, 1}, {49, 97}, {100, 17}, {250, 301}};
    for (const Kernels* const* set = usable_kernels(); *set != nullptr; set++)
        for (const auto& [columns, below] : sizes) {
            const Eigen::Index k = columns, m = columns + below;
            const Eigen::MatrixXd half = Eigen::MatrixXd::NullaryExpr(
                m, m, [&] { return static_cast<double>(random()) / 4e9 - 0.5; });
            const Eigen::MatrixXd A = half * half.transpose() + Eigen::MatrixXd::Identity(m, m);
            std::vector<double> panel(static_cast<size_t>(m * k) + Kernels::slack);
            std::vector<double> update(static_cast<size_t>(below * below) + Kernels::slack);
            std::vector<double> pivots(static_cast<size_t>(k));
            Eigen::Map<Eigen::MatrixXd> P(panel.data(), m, k);
            Eigen::Map<Eigen::MatrixXd> U(update.data(), below, below);
            P = A.leftCols(k);
            U = A.bottomRightCorner(below, below);
            std::vector<PackBuffers> buffers(2);
            Team team(2);
            DenseEliminator dense(columns % 2 == 0 ? &team : nullptr, buffers, 0, **set);
            ASSERT_TRUE(dense.eliminate(panel.data(), static_cast<size_t>(k), update.data(),
                                        static_cast<size_t>(below), pivots.data()));
            const Eigen::MatrixXd L = A.llt().matrixL();
            const Eigen::MatrixXd rest =
                A.bottomRightCorner(below, below) -
                L.bottomLeftCorner(below, k) * L.bottomLeftCorner(below, k).transpose();
            const Eigen::MatrixXd lower = P.topRows(k).triangularView<Eigen::Lower>();
            const double tolerance = 1e-11 * A.norm();
            EXPECT_LE((lower - L.topLeftCorner(k, k)).norm(), tolerance) << columns;
            EXPECT_LE((P.bottomRows(below) - L.bottomLeftCorner(below, k)).norm(), tolerance);
            const Eigen::MatrixXd error = (U - rest).triangularView<Eigen::Lower>();
            EXPECT_LE(error.norm(), tolerance) << columns << "+" << below;
            EXPECT_NEAR(pivots.back(), L(k - 1, k - 1) * L(k - 1, k - 1), tolerance);
            P(k / 2, k / 2) = -1.0; // of L: the panel is no longer positive definite
            EXPECT_FALSE(dense.eliminate(panel.data(), static_cast<size_t>(k), update.data(),
                                         static_cast<size_t>(below), pivots.data()));
        }
}

// 1800 nodes: beyond where minimum degree alone orders the nodes. Every node is in balance, and
// the files are the same whatever the threads.
TEST_F(FactorTest, LargeFrameIsInBalanceWithAnyThreads) {
    const Frame f = lattice(30, 30);
    settings_.threads = 1;
    const Results one = solved(f);
    const std::string listing = read("frameslv.lst"), displacements = read("frameslv.dsp");
    for (const int threads : {2, 3}) {
        settings_.threads = threads;
        solved(f);
        EXPECT_TRUE(read("frameslv.lst") == listing && read("frameslv.dsp") == displacements)
            << threads;
    }
    double largest = 0.0;
    for (const Results::Stress& m : one.stress)
        largest = std::max({largest, std::abs(m.xm1), std::abs(m.ym1), std::abs(m.force)});
    std::vector<Vector6> left(f.node.size(), Vector6::Zero());
    const Solution solution = solution_of(f, 2);
    EXPECT_LT(solution.residual, 1e-9);
    for (size_t k = 0; k < f.member.size(); k += 97)
        for (const int no : {f.member[k].i, f.member[k].j})
            if (no != 1 && no != 30 && no != 871 && no != 900) {
                EXPECT_LE(reaction(f, one, no).norm(), 1e-8 * largest) << "node " << no;
            }
}

// Memory that does not suffice is told beforehand, with both figures; what it says is needed is at
// least the factor, and not more than the factor and two of its largest updates.
TEST_F(FactorTest, RefusesWhatDoesNotFitInMemory) {
    Model model;
    ASSERT_FALSE(read_input(lattice(20, 20).text(), model));
    const System system(model, 1);
    const Cholesky& factor = system.factor();
    size_t most = 0;
    for (const Front& front : factor.symbolic().fronts)
        most = std::max(most, static_cast<size_t>(front.below));
    EXPECT_GE(factor.needed_bytes(), factor.factor_bytes() - 8 * Kernels::slack);
    EXPECT_LE(factor.needed_bytes(), factor.factor_bytes() + 16 * most * most);
    EXPECT_FALSE(system.equations().fits_memory(factor.needed_bytes()));
    const Fault fault = system.equations().fits_memory(factor.needed_bytes() - 1);
    EXPECT_EQ(fault.code, Exit::no_memory);
    EXPECT_NE(fault.text.find("GB 要りますが、使えるのは 0.0"), std::string::npos) << fault.text;
    EXPECT_FALSE(system.equations().fits_memory());
}

// Any turn in space, sections turned along: the same member forces and, turned back, the same
// displacements.
TEST_F(FactorTest, TurnedInSpaceByAnyAngles) {
    const Frame f = lattice(6, 5);
    const Solution plain = solution_of(f);
    double force = 0.0, moved = 0.0;
    for (const EndForces& own : plain.end_force)
        force = std::max({force, own.i.norm(), own.j.norm()});
    for (const Vector6& u : plain.moved)
        moved = std::max(moved, u.norm());
    for (const Vector3& angles :
         {Vector3(0.3, 0, 0), Vector3(1.1, -0.7, 2.5), Vector3(-2, 0.4, 9)}) {
        const Eigen::Matrix3d turn = (Eigen::AngleAxisd(angles.x(), Vector3::UnitX()) *
                                      Eigen::AngleAxisd(angles.y(), Vector3::UnitY()) *
                                      Eigen::AngleAxisd(angles.z(), Vector3::UnitZ()))
                                         .toRotationMatrix();
        Frame other = turned(f, turn);
        const Solution solution = solution_of(other);
        for (size_t k = 0; k < f.member.size(); k++) {
            EXPECT_LE((solution.end_force[k].i - plain.end_force[k].i).norm(), 1e-9 * force) << k;
            EXPECT_LE((solution.end_force[k].j - plain.end_force[k].j).norm(), 1e-9 * force) << k;
        }
        for (size_t i = 0; i < f.node.size(); i++) {
            Vector6 back;
            back << turn.transpose() * solution.moved[i].head<3>(),
                turn.transpose() * solution.moved[i].tail<3>();
            EXPECT_LE((back - plain.moved[i]).norm(), 1e-9 * moved) << i;
        }
    }
}

} // namespace frameslv::test
