// A dense solution of a frame in numbers of any precision, and frames that are hard to solve.
// Shares nothing with the solver but the model's tables; used by the tests and by
// bench/certainty.cpp.
#pragma once

#include "solver/model/model.h"
#include "solver/statics/solve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace frameslv::test {

// A frame's answer: of each node three translations and three rotations; of each member the forces
// and moments that the nodes exert on its ends, local axes.
struct Answer {
    std::vector<std::array<double, 6>> moved;
    std::vector<std::array<double, 12>> end_force;
};

// Number has + - * /, is made from a double, and `to_double`, `root`, `cosine_sine` (of degrees)
// are found for it.
template <class Number> class Reference {
  public:
    explicit Reference(const Model& model) : model_(model) {}

    Answer solve();

  private:
    using Matrix12 = std::array<std::array<Number, 12>, 12>;
    using Matrix3 = std::array<std::array<Number, 3>, 3>;

    Matrix3 axes(const Member& member, Number& length) const;
    // Stiffness in local axes times the turn into them; `turned` is the stiffness in global axes.
    void stiffness(const Member& member, Matrix12& half, Matrix12& turned) const;
    static Matrix12 local_stiffness(const Section& s, const Material& m, const Number& L);

    const Model& model_;
};

template <class Number>
typename Reference<Number>::Matrix3 Reference<Number>::axes(const Member& member,
                                                            Number& length) const {
    const Point& i = model_.node[index_of(member.noi)].at;
    const Point& j = model_.node[index_of(member.noj)].at;
    std::array<Number, 3> x{Number(j.x) - Number(i.x), Number(j.y) - Number(i.y),
                            Number(j.z) - Number(i.z)};
    length = root(x[0] * x[0] + x[1] * x[1] + x[2] * x[2]);
    for (Number& part : x)
        part = part / length;
    const Number run = root(x[0] * x[0] + x[1] * x[1]);
    std::array<Number, 3> level{Number(0.0) - x[1], x[0], Number(0.0)};
    if (to_double(run) <= 1e-6)
        level = {Number(0.0) - x[1] * x[0], Number(1.0) - x[1] * x[1], Number(0.0) - x[1] * x[2]};
    const Number size = root(level[0] * level[0] + level[1] * level[1] + level[2] * level[2]);
    for (Number& part : level)
        part = part / size;
    std::array<Number, 3> up;
    for (size_t k = 0; k < 3; k++)
        up[k] = x[(k + 1) % 3] * level[(k + 2) % 3] - x[(k + 2) % 3] * level[(k + 1) % 3];
    const auto [c, s] = cosine_sine(Number(member.angle));
    Matrix3 rows;
    for (size_t k = 0; k < 3; k++) {
        rows[0][k] = x[k];
        rows[1][k] = c * level[k] + s * up[k];
        rows[2][k] = c * up[k] - s * level[k];
    }
    return rows;
}

template <class Number>
typename Reference<Number>::Matrix12
Reference<Number>::local_stiffness(const Section& s, const Material& m, const Number& L) {
    Matrix12 k;
    for (auto& row : k)
        row.fill(Number(0.0));
    const auto set = [&k](size_t i, size_t j, const Number& value) { k[i][j] = k[j][i] = value; };
    const Number E(m.E);
    const Number G = E / (Number(2.0) * (Number(1.0) + Number(m.poisson)));
    const auto bar = [&](size_t at, const Number& stiff) {
        set(at, at, stiff);
        set(at + 6, at + 6, stiff);
        set(at, at + 6, Number(0.0) - stiff);
    };
    bar(0, E * Number(s.A) / L);
    bar(3, G * Number(s.J) / L);
    const auto bend = [&](size_t v, size_t t, const Number& EI, double sign) {
        const Number shear = Number(12.0) * EI / (L * L * L);
        const Number cross = Number(6.0 * sign) * EI / (L * L);
        set(v, v, shear);
        set(v + 6, v + 6, shear);
        set(v, v + 6, Number(0.0) - shear);
        set(v, t, cross);
        set(v, t + 6, cross);
        set(v + 6, t, Number(0.0) - cross);
        set(v + 6, t + 6, Number(0.0) - cross);
        set(t, t, Number(4.0) * EI / L);
        set(t + 6, t + 6, Number(4.0) * EI / L);
        set(t, t + 6, Number(2.0) * EI / L);
    };
    bend(1, 5, E * Number(s.Iz), 1.0);
    bend(2, 4, E * Number(s.Iy), -1.0);
    return k;
}

template <class Number>
void Reference<Number>::stiffness(const Member& member, Matrix12& half, Matrix12& turned) const {
    Number L(0.0);
    const Matrix3 T = axes(member, L);
    const Matrix12 k = local_stiffness(model_.section[index_of(member.size)],
                                       model_.material[index_of(member.mat)], L);
    for (size_t r = 0; r < 12; r++)
        for (size_t c = 0; c < 12; c++) {
            half[r][c] = Number(0.0);
            for (size_t q = 0; q < 3; q++)
                half[r][c] = half[r][c] + k[r][c / 3 * 3 + q] * T[q][c % 3];
        }
    for (size_t r = 0; r < 12; r++)
        for (size_t c = 0; c < 12; c++) {
            turned[r][c] = Number(0.0);
            for (size_t q = 0; q < 3; q++)
                turned[r][c] = turned[r][c] + T[q][r % 3] * half[r / 3 * 3 + q][c];
        }
}

template <class Number> Answer Reference<Number>::solve() {
    std::vector<int> place(model_.node.size() * 6, -1);
    size_t n = 0;
    for (size_t i = 0; i < place.size(); i++)
        if (!model_.node[i / 6].held[i % 6])
            place[i] = static_cast<int>(n++);
    std::vector<std::vector<Number>> K(n, std::vector<Number>(n, Number(0.0)));
    std::vector<Matrix12> halves(model_.member.size());
    const auto dof = [&](const Member& m, size_t k) {
        return index_of(k < 6 ? m.noi : m.noj) * 6 + k % 6;
    };
    for (size_t e = 0; e < halves.size(); e++) {
        Matrix12 turned;
        stiffness(model_.member[e], halves[e], turned);
        for (size_t r = 0; r < 12; r++)
            for (size_t c = 0; c < 12; c++) {
                const int i = place[dof(model_.member[e], r)];
                const int j = place[dof(model_.member[e], c)];
                if (i >= 0 && j >= 0) {
                    Number& to = K[static_cast<size_t>(i)][static_cast<size_t>(j)];
                    to = to + turned[r][c];
                }
            }
    }
    std::vector<Number> x(n, Number(0.0));
    for (size_t i = 0; i < place.size(); i++)
        if (place[i] >= 0)
            x[static_cast<size_t>(place[i])] = Number(model_.node[i / 6].load[i % 6]);
    for (size_t j = 0; j < n; j++)
        for (size_t i = j + 1; i < n; i++) {
            const Number factor = K[i][j] / K[j][j];
            if (to_double(factor * factor) <= 0.0)
                continue;
            for (size_t k = j; k < n; k++)
                K[i][k] = K[i][k] - factor * K[j][k];
            x[i] = x[i] - factor * x[j];
        }
    for (size_t i = n; i-- > 0;) {
        for (size_t k = i + 1; k < n; k++)
            x[i] = x[i] - K[i][k] * x[k];
        x[i] = x[i] / K[i][i];
    }
    Answer answer;
    answer.moved.resize(model_.node.size());
    answer.end_force.resize(halves.size());
    const auto value = [&](size_t at) {
        return place[at] < 0 ? Number(0.0) : x[static_cast<size_t>(place[at])];
    };
    for (size_t i = 0; i < place.size(); i++)
        answer.moved[i / 6][i % 6] = to_double(value(i));
    for (size_t e = 0; e < halves.size(); e++)
        for (size_t r = 0; r < 12; r++) {
            Number sum(0.0);
            for (size_t c = 0; c < 12; c++)
                sum = sum + halves[e][r][c] * value(dof(model_.member[e], c));
            answer.end_force[e][r] = to_double(sum);
        }
    return answer;
}

// The largest errors of a solution by the largest translation, rotation, force and moment of the
// answer; a kind that is below the part `beside` of the one beside it (by `arm`) is compared with
// that.
std::array<double, 4> errors_of(const Solution& solution, const Answer& answer, double arm,
                                double beside = 1e-9);

// A random frame of 3 to 10 nodes whose lengths, stiffness and loads may be far apart: rows, trees
// and meshes.
Model hard_frame(std::mt19937& random);

// Changes some number of the frame: a place, a section's value, an angle, a load or a support.
void change_frame(Model& model, std::mt19937& random);

// Tries to solve; false when it is refused. `silent`: nothing warns of lost digits.
bool try_to_solve(const Model& model, Solution& solution, double& arm, bool& silent);

} // namespace frameslv::test
