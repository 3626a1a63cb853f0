#include "solver/precise/balance.h"

#include "solver/precise/pair.h"

#include <algorithm>

namespace frameslv {

namespace {

using Wide = Pair<double>;

struct Turn {
    Wide cosine, sine;
};

// The series of sine or cosine from its first term on: term n + 2 is term n times -x^2 / ((n + 1)
// (n
// + 2)).
Wide series(Wide term, Wide x, int n) {
    constexpr int last = 30; // below 1e-33 for a quarter of pi
    const Wide square = x * x;
    Wide sum = term;
    for (; n < last; n += 2) {
        term = -(term * square * reciprocal(paired(static_cast<double>((n + 1) * (n + 2)))));
        sum = sum + term;
    }
    return sum;
}

Turn turn_of(double degrees) {
    constexpr Wide radians{0.017453292519943295, 2.9486522708701687e-19}; // of a degree
    constexpr double quarter = 90.0;
    const double within = std::fmod(degrees, 4.0 * quarter);
    const double quarters = std::nearbyint(within / quarter);
    const Wide x = times(radians, within - quarters * quarter);
    const Wide cosine = series(paired(1.0), x, 0);
    const Wide sine = series(x, x, 1);
    switch ((static_cast<int>(quarters) % 4 + 4) % 4) {
    case 0:
        return {cosine, sine};
    case 1:
        return {-sine, cosine};
    case 2:
        return {-cosine, -sine};
    default:
        return {sine, -cosine};
    }
}

Wide shear_modulus(const Material& material) {
    return times(reciprocal(exact_sum(1.0, material.poisson)), 0.5 * material.E);
}

void set(double (&to)[2][PreciseBatch::members], size_t k, Wide value) {
    to[0][k] = value.high;
    to[1][k] = value.low;
}

void add_to(Vector6& high, Vector6& low, Eigen::Index i, Wide more) {
    const Wide sum = Wide{high(i), low(i)} + more;
    high(i) = sum.high;
    low(i) = sum.low;
}

class Batches {
  public:
    Batches(const Model& model, const std::vector<Element>& elements, const PreciseVectors& moved)
        : model_(model), elements_(elements), moved_(moved) {
        modulus_.reserve(model.material.size());
        for (const Material& material : model.material)
            modulus_.push_back(shear_modulus(material));
    }

    void put(size_t k, size_t member);
    // Does the members of which the first is `first`.
    void finish(size_t first, size_t count, PreciseVectors& forces, std::vector<EndForces>* local);

  private:
    const Model& model_;
    const std::vector<Element>& elements_;
    const PreciseVectors& moved_;
    std::vector<Wide> modulus_; // of shear, of each material
    PreciseForces fill_ = precise_forces();
    PreciseBatch batch_;
};

void Batches::put(size_t k, size_t number) {
    if (k == 0)
        batch_.turned = batch_.tense = batch_.jointed = false;
    const Member& member = model_.member[number];
    const Section& section = model_.section[index_of(member.size)];
    const size_t ends[] = {index_of(member.noi), index_of(member.noj)};
    const auto place = [&](double(&to)[3][PreciseBatch::members], const Point& at) {
        to[0][k] = at.x;
        to[1][k] = at.y;
        to[2][k] = at.z;
    };
    place(batch_.at_i, model_.node[ends[0]].at);
    place(batch_.at_j, model_.node[ends[1]].at);
    batch_.vertical[k] = elements_[number].vertical ? 1.0 : 0.0;
    set(batch_.cosine, k, paired(1.0));
    set(batch_.sine, k, paired(0.0));
    if (std::abs(member.angle) > 0.0) {
        const Turn turn = turn_of(member.angle);
        set(batch_.cosine, k, turn.cosine);
        set(batch_.sine, k, turn.sine);
        batch_.turned = true;
    }
    batch_.E[k] = model_.material[index_of(member.mat)].E;
    set(batch_.G, k, modulus_[index_of(member.mat)]);
    batch_.A[k] = section.A;
    batch_.Iy[k] = section.Iy;
    batch_.Iz[k] = section.Iz;
    batch_.J[k] = section.J;
    batch_.tension[k] = elements_[number].tension;
    batch_.tense = batch_.tense || std::abs(batch_.tension[k]) > 0.0;
    for (size_t end = 0; end < 2; end++)
        for (size_t i = 0; i < dof_count; i++) {
            const Eigen::Index dof = static_cast<Eigen::Index>(i);
            batch_.moved[end * dof_count + i][0][k] = moved_.high[ends[end]](dof);
            batch_.moved[end * dof_count + i][1][k] = moved_.low[ends[end]](dof);
        }
}

void Batches::finish(size_t first, size_t count, PreciseVectors& forces,
                     std::vector<EndForces>* local) {
    fill_(batch_);
    for (size_t k = 0; k < count; k++) {
        const Member& member = model_.member[first + k];
        const size_t ends[] = {index_of(member.noi), index_of(member.noj)};
        for (size_t end = 0; end < 2; end++)
            for (size_t i = 0; i < dof_count; i++) {
                const auto& value = batch_.global[end * dof_count + i];
                add_to(forces.high[ends[end]], forces.low[ends[end]], static_cast<Eigen::Index>(i),
                       {value[0][k], value[1][k]});
                if (local != nullptr) {
                    EndForces& own = (*local)[first + k];
                    (end == 0 ? own.i : own.j)(static_cast<Eigen::Index>(i)) =
                        batch_.local[end * dof_count + i][0][k];
                }
            }
    }
}

} // namespace

void PreciseVectors::add(const std::vector<Vector6>& more) {
    for (size_t i = 0; i < more.size(); i++)
        for (Eigen::Index k = 0; k < 6; k++)
            add_to(high[i], low[i], k, paired(more[i](k)));
}

PreciseVectors precise_member_forces(const Model& model, const std::vector<Element>& elements,
                                     const PreciseVectors& moved, std::vector<EndForces>* local) {
    PreciseVectors forces(model.node.size());
    if (local != nullptr)
        local->resize(elements.size());
    Batches batches(model, elements, moved);
    for (size_t first = 0; first < elements.size(); first += PreciseBatch::members) {
        const size_t count = std::min(PreciseBatch::members, elements.size() - first);
        for (size_t k = 0; k < PreciseBatch::members; k++)
            batches.put(k, first + std::min(k, count - 1));
        batches.finish(first, count, forces, local);
    }
    return forces;
}

} // namespace frameslv
