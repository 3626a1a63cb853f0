#include "reference.h"

#include "solver/model/check.h"

namespace frameslv::test {

namespace {

using Random = std::mt19937;

double draw(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

int pick(Random& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

// A number of any size in `decades` powers of ten around `middle`.
double any_size(Random& random, double middle, double decades) {
    return middle * std::pow(10.0, draw(random, -decades, decades));
}

double rounded(double value, int places) {
    const double unit = std::pow(10.0, places);
    return std::round(value * unit) / unit;
}

Section any_section(Random& random, double decades) {
    return {any_size(random, 1e3, decades), any_size(random, 1e3, decades),
            any_size(random, 1e2, decades / 2.0), any_size(random, 1e3, decades)};
}

Six any_load(Random& random) {
    Six load{};
    for (size_t k = 0; k < 6; k++)
        if (pick(random, 0, 2) == 0)
            load[k] = rounded(draw(random, -300, 300) * (k < 3 ? 1.0 : 100.0), 1);
    return load;
}

} // namespace

std::array<double, 4> errors_of(const Solution& solution, const Answer& answer, double arm,
                                double beside) {
    std::array<double, 4> most{}, off{};
    for (size_t i = 0; i < answer.moved.size(); i++)
        for (size_t k = 0; k < 6; k++) {
            const double exact = answer.moved[i][k];
            const double own = solution.moved[i](static_cast<Eigen::Index>(k));
            most[k / 3] = std::max(most[k / 3], std::abs(exact));
            off[k / 3] = std::max(off[k / 3], std::abs(own - exact));
        }
    for (size_t i = 0; i < answer.end_force.size(); i++)
        for (size_t k = 0; k < 12; k++) {
            const Vector6& end = k < 6 ? solution.end_force[i].i : solution.end_force[i].j;
            const double exact = answer.end_force[i][k];
            const size_t kind = 2 + k / 3 % 2;
            most[kind] = std::max(most[kind], std::abs(exact));
            off[kind] =
                std::max(off[kind], std::abs(end(static_cast<Eigen::Index>(k % 6)) - exact));
        }
    const std::array<double, 4> size{
        std::max(most[0], beside * most[1] * arm), std::max(most[1], beside * most[0] / arm),
        std::max(most[2], beside * most[3] / arm), std::max(most[3], beside * most[2] * arm)};
    for (size_t k = 0; k < 4; k++)
        off[k] = off[k] <= 0.0 ? 0.0 : off[k] / size[k];
    return off;
}

Model hard_frame(Random& random) {
    Model model;
    const int nodes = pick(random, 3, 10);
    const int shape = pick(random, 0, 3); // a row, two trees, a mesh
    const double spread = draw(random, 0.0, 2.0);
    const double decades = draw(random, 0.0, 4.0);
    for (int no = 1; no <= nodes; no++) {
        Node node;
        const int from = no == 1 ? 0 : shape == 0 ? no - 1 : pick(random, 1, no - 1);
        if (from > 0) {
            const Point& base = model.node[index_of(from)].at;
            const double length = any_size(random, 100.0, spread);
            const auto step = [&] { return rounded(draw(random, -1, 1) * length, 1); };
            node.at = shape == 0 ? Point{rounded(base.x + length, 1), 0.0, 0.0}
                                 : Point{base.x + step(), base.y + step(), base.z + step()};
            if (shape > 0 && pick(random, 0, 2) == 0)
                node.at = {base.x, base.y, base.z + length};
            model.member.push_back({from, no, pick(random, 1, 3), pick(random, 1, 2),
                                    pick(random, 0, 2) == 0 ? draw(random, -400, 400) : 0.0});
        }
        model.node.push_back(node);
    }
    for (int extra = shape == 3 ? pick(random, 1, 2 * nodes) : 0; extra > 0; extra--) {
        const int i = pick(random, 1, nodes), j = pick(random, 1, nodes);
        if (i != j)
            model.member.push_back({i, j, pick(random, 1, 3), pick(random, 1, 2), 0.0});
    }
    for (int k = 0; k < 3; k++)
        model.section.push_back(any_section(random, decades));
    for (int k = 0; k < 2; k++)
        model.material.push_back({any_size(random, 1e5, decades / 4.0), 0.3, 0.0});
    model.node[pick(random, 0, 1) == 0 ? 0 : static_cast<size_t>(pick(random, 0, nodes - 1))]
        .held.fill(true);
    for (int k = pick(random, 0, 2); k > 0; k--)
        for (bool& held : model.node[static_cast<size_t>(pick(random, 0, nodes - 1))].held)
            held = held || pick(random, 0, 1) == 0;
    for (int k = pick(random, 1, 3); k > 0; k--)
        model.node[static_cast<size_t>(pick(random, 0, nodes - 1))].load = any_load(random);
    return model;
}

void change_frame(Model& model, Random& random) {
    const auto one_of = [&](auto& table) -> auto& {
        return table[static_cast<size_t>(pick(random, 0, static_cast<int>(table.size()) - 1))];
    };
    const double factor = any_size(random, 1.0, 1.5);
    Section& section = one_of(model.section);
    switch (pick(random, 0, 7)) {
    case 0:
        section.Iy *= factor;
        section.Iz *= pick(random, 0, 1) == 0 ? factor : 1.0;
        break;
    case 1:
        section.A *= factor;
        break;
    case 2:
        section.J *= factor;
        break;
    case 3:
        one_of(model.material).E *= factor;
        break;
    case 4:
        one_of(model.node).load = any_load(random);
        break;
    case 5:
        one_of(model.member).angle = draw(random, -400, 400);
        break;
    case 6:
        one_of(model.member).size = pick(random, 1, static_cast<int>(model.section.size()));
        break;
    default: {
        Point& at = one_of(model.node).at;
        at = {at.x * std::pow(factor, 0.2), at.y, at.z * std::pow(factor, 0.1)};
    }
    }
}

bool try_to_solve(const Model& model, Solution& solution, double& arm, bool& silent) {
    if (check_model(model) || check_held(model))
        return false;
    System system(model, 1);
    arm = system.arm();
    solution = {};
    if (solve(model, {}, system, solution))
        return false;
    silent = std::none_of(solution.notes.begin(), solution.notes.end(),
                          [](const Note& note) { return note.key == "digits"; });
    return true;
}

} // namespace frameslv::test
