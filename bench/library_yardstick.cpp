// The yardstick of the solver: the same frame through sparse libraries, as a whole process that
// reads FRAMESLV.IN in its folder, makes the stiffness matrix, orders the graph of the nodes,
// factorises and solves. It writes nothing and refines nothing, which is left in its favour.
// usage: library_yardstick eigen|cholmod
#include "solver/model/check.h"
#include "solver/model/element.h"
#include "solver/sparse/graph.h"
#include "solver/sparse/minimum_degree.h"
#include "solver/text/input.h"

#include <Eigen/SparseCholesky>

#if defined(HAVE_CHOLMOD)
#include <cholmod.h>
#include <metis.h>
#endif

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

using namespace frameslv;
using Matrix = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;
using Eigen::Index;

struct Problem {
    Model model;
    Graph graph;
};

bool read(Problem& problem) {
    std::ifstream file("FRAMESLV.IN", std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    if (read_input(text, problem.model) || check_model(problem.model))
        return false;
    std::vector<Edge> edges;
    for (const Member& member : problem.model.member)
        edges.emplace_back(member.noi - 1, member.noj - 1);
    problem.graph = make_graph(static_cast<int>(problem.model.node.size()), edges);
    return true;
}

// The lower triangle for an order of the nodes, and the loads.
Matrix stiffness(const Model& model, const std::vector<int>& order, Eigen::VectorXd& load) {
    std::vector<std::array<int, dof_count>> number(model.node.size());
    int n = 0;
    for (const int node : order)
        for (size_t k = 0; k < dof_count; k++)
            number[node][k] = model.node[node].held[k] ? -1 : n++;
    std::vector<Eigen::Triplet<double, int>> entries;
    entries.reserve(model.member.size() * 80);
    const auto add = [&](size_t a, size_t b, const Matrix6& block) {
        for (size_t r = 0; r < dof_count; r++)
            for (size_t c = 0; c < dof_count; c++)
                if (number[a][r] >= 0 && number[b][c] >= 0 && number[a][r] >= number[b][c])
                    entries.emplace_back(number[a][r], number[b][c],
                                         block(static_cast<Index>(r), static_cast<Index>(c)));
    };
    for (int no = 1; no <= static_cast<int>(model.member.size()); no++) {
        const size_t a = index_of(model.member[index_of(no)].noi);
        const size_t b = index_of(model.member[index_of(no)].noj);
        const StiffnessBlocks blocks = stiffness_blocks(make_element(model, no));
        add(a, a, blocks.ii);
        add(b, b, blocks.jj);
        add(a, b, blocks.ij);
        add(b, a, blocks.ij.transpose());
    }
    Matrix matrix(n, n);
    matrix.setFromTriplets(entries.begin(), entries.end());
    load = Eigen::VectorXd::Zero(n);
    for (size_t i = 0; i < model.node.size(); i++)
        for (size_t k = 0; k < dof_count; k++)
            if (number[i][k] >= 0)
                load(number[i][k]) = model.node[i].load[k];
    return matrix;
}

double by_eigen(const Problem& problem) {
    Eigen::VectorXd load;
    const Matrix matrix = stiffness(problem.model, minimum_degree(problem.graph), load);
    const Eigen::SimplicialLLT<Matrix, Eigen::Lower, Eigen::NaturalOrdering<int>> factor(matrix);
    return factor.solve(load).cwiseAbs().maxCoeff();
}

#if defined(HAVE_CHOLMOD)
std::vector<int> metis_order(const Graph& graph) {
    idx_t n = graph.size();
    std::vector<idx_t> start(graph.start.begin(), graph.start.end());
    std::vector<idx_t> next(graph.next.begin(), graph.next.end());
    std::vector<idx_t> order(graph.start.size()), place(graph.start.size());
    METIS_NodeND(&n, start.data(), next.data(), nullptr, nullptr, order.data(), place.data());
    return {order.begin(), order.begin() + n};
}

double by_cholmod(const Problem& problem) {
    Eigen::VectorXd load;
    Matrix matrix = stiffness(problem.model, metis_order(problem.graph), load);
    cholmod_common common;
    cholmod_start(&common);
    common.supernodal = CHOLMOD_SUPERNODAL;
    common.nmethods = 1;
    common.method[0].ordering = CHOLMOD_NATURAL;
    common.postorder = 1;
    cholmod_sparse a;
    std::memset(&a, 0, sizeof a);
    a.nrow = a.ncol = static_cast<size_t>(matrix.rows());
    a.nzmax = static_cast<size_t>(matrix.nonZeros());
    a.p = matrix.outerIndexPtr();
    a.i = matrix.innerIndexPtr();
    a.x = matrix.valuePtr();
    a.stype = -1;
    a.itype = CHOLMOD_INT;
    a.xtype = CHOLMOD_REAL;
    a.dtype = CHOLMOD_DOUBLE;
    a.sorted = a.packed = 1;
    cholmod_dense b;
    std::memset(&b, 0, sizeof b);
    b.nrow = b.d = b.nzmax = a.nrow;
    b.ncol = 1;
    b.x = load.data();
    b.xtype = CHOLMOD_REAL;
    b.dtype = CHOLMOD_DOUBLE;
    cholmod_factor* factor = cholmod_analyze(&a, &common);
    cholmod_factorize(&a, factor, &common);
    const cholmod_dense* x = cholmod_solve(CHOLMOD_A, factor, &b, &common);
    return Eigen::Map<const Eigen::VectorXd>(static_cast<const double*>(x->x), matrix.rows())
        .cwiseAbs()
        .maxCoeff();
}
#endif

} // namespace

int main(int argc, char** argv) {
    Problem problem;
    if (argc != 2 || !read(problem))
        return 1;
    if (std::strcmp(argv[1], "eigen") == 0)
        std::printf("%.9e\n", by_eigen(problem));
#if defined(HAVE_CHOLMOD)
    else if (std::strcmp(argv[1], "cholmod") == 0)
        std::printf("%.9e\n", by_cholmod(problem));
#endif
    else
        return 1;
    return 0;
}
