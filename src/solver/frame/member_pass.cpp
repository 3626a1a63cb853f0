#include "solver/frame/member_pass.h"

namespace frame_analysis {

namespace {

template <size_t width>
inline Lanes<width> operator+(const Lanes<width>& a, const Lanes<width>& b) {
    Lanes<width> c;
    for (size_t k = 0; k < width; k++)
        c.v[k] = a.v[k] + b.v[k];
    return c;
}

template <size_t width>
inline Lanes<width> operator-(const Lanes<width>& a, const Lanes<width>& b) {
    Lanes<width> c;
    for (size_t k = 0; k < width; k++)
        c.v[k] = a.v[k] - b.v[k];
    return c;
}

template <size_t width> inline Lanes<width> operator*(double a, const Lanes<width>& b) {
    Lanes<width> c;
    for (size_t k = 0; k < width; k++)
        c.v[k] = a * b.v[k];
    return c;
}

template <size_t width> struct Triple { Lanes<width> x, y, z; };

template <size_t width>
inline Triple<width> operator-(const Triple<width>& a, const Triple<width>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

template <size_t width> inline Triple<width> triple(const Lanes<width>* from) {
    return {from[0], from[1], from[2]};
}

template <size_t width>
inline Triple<width> in_axes(const Eigen::Matrix3d& T, const Triple<width>& v) {
    return {T(0, 0) * v.x + T(0, 1) * v.y + T(0, 2) * v.z,
            T(1, 0) * v.x + T(1, 1) * v.y + T(1, 2) * v.z,
            T(2, 0) * v.x + T(2, 1) * v.y + T(2, 2) * v.z};
}

template <size_t width>
inline void subtract_turned(const Eigen::Matrix3d& T, const Lanes<width>* v, Lanes<width>* from) {
    for (Eigen::Index k = 0; k < 3; k++)
        from[k] = from[k] - (T(0, k) * v[0] + T(1, k) * v[1] + T(2, k) * v[2]);
}

// Under the displacements: near and far as in Bending.
template <size_t width>
inline void stiffness_forces(const Jointed& member, bool axial, const LanesSix<width>& moved_i,
                             const LanesSix<width>& moved_j, EndLanes<width>& ends,
                             Lanes<width>& normal) {
    const double inverse = 1.0 / member.length;
    const Triple<width> shift = in_axes(member.axes, triple(&moved_j[0]) - triple(&moved_i[0]));
    const Triple<width> turn_i = in_axes(member.axes, triple(&moved_i[3]));
    const Triple<width> turn_j = in_axes(member.axes, triple(&moved_j[3]));
    const Lanes<width> chord_y = inverse * shift.z;
    const Lanes<width> chord_z = inverse * shift.y;
    const auto bend = [&](const Bending& own, const Lanes<width>& r_i, const Lanes<width>& r_j,
                          Lanes<width>& m_i, Lanes<width>& m_j) {
        m_i = own.near_i * r_i + own.far * r_j;
        m_j = own.far * r_i + own.near_j * r_j;
    };
    auto& [at_i, at_j] = ends;
    bend(member.about_y, turn_i.y + chord_y, turn_j.y + chord_y, at_i[4], at_j[4]);
    bend(member.about_z, turn_i.z - chord_z, turn_j.z - chord_z, at_i[5], at_j[5]);
    normal = member.axial * shift.x;
    at_j[0] = (axial ? 1.0 : 0.0) * normal;
    at_i[0] = -1.0 * at_j[0];
    at_j[3] = member.torsion * (turn_j.x - turn_i.x);
    at_i[3] = -1.0 * at_j[3];
    at_i[1] = inverse * (at_i[5] + at_j[5]);
    at_j[1] = -1.0 * at_i[1];
    at_j[2] = inverse * (at_i[4] + at_j[4]);
    at_i[2] = -1.0 * at_j[2];
}

// Each held force under a uniform load comes from one local axis of the load alone.
template <size_t width>
inline void add_weight(const Pass<width>& pass, size_t number, EndLanes<width>& ends) {
    constexpr size_t none = 3;
    constexpr size_t axis_of[] = {0, 1, 2, none, 2, 1};
    const Jointed& member = pass.members[number];
    const frameslv::EndForces held =
        held_forces_uniform(member, Eigen::Vector3d::Constant(pass.frame.members[number].weight));
    const Triple<width> along = in_axes(member.axes, triple(pass.gravity.data()));
    const Lanes<width>* const of[] = {&along.x, &along.y, &along.z};
    for (size_t k = 0; k < 6; k++)
        if (axis_of[k] != none) {
            const auto dof = static_cast<Eigen::Index>(k);
            ends[0][k] = ends[0][k] + held.i(dof) * *of[axis_of[k]];
            ends[1][k] = ends[1][k] + held.j(dof) * *of[axis_of[k]];
        }
}

} // namespace

template <size_t width>
void subtract_members(const Pass<width>& pass, const NodeLanes<width>* moved,
                      NodeLanes<width>& left, std::vector<Lanes<width>>* stretch) {
    EndLanes<width> own{};
    Lanes<width> normal{};
    for (size_t i = 0; i < pass.members.size(); i++) {
        const Jointed& member = pass.members[i];
        const Member& given = pass.frame.members[i];
        if (moved != nullptr)
            stiffness_forces(member, pass.axial[i] != 0, (*moved)[given.i], (*moved)[given.j], own,
                             normal);
        else
            own = {};
        if (pass.weighs && given.weight > 0.0)
            add_weight(pass, i, own);
        subtract_turned(member.axes, &own[0][0], &left[given.i][0]);
        subtract_turned(member.axes, &own[0][3], &left[given.i][3]);
        subtract_turned(member.axes, &own[1][0], &left[given.j][0]);
        subtract_turned(member.axes, &own[1][3], &left[given.j][3]);
        for (size_t c = 0; c < pass.ends.size(); c++)
            for (size_t end = 0; end < 2; end++)
                for (size_t k = 0; k < own[end].size(); k++)
                    pass.ends[c][i][end][k] = own[end][k].v[c];
        if (stretch != nullptr)
            (*stretch)[i] = normal;
    }
}

template void subtract_members<1>(const Pass<1>&, const NodeLanes<1>*, NodeLanes<1>&,
                                  std::vector<Lanes<1>>*);
constexpr size_t wide = frameslv::Kernels::wide_block;
template void subtract_members<wide>(const Pass<wide>&, const NodeLanes<wide>*, NodeLanes<wide>&,
                                     std::vector<Lanes<wide>>*);

} // namespace frame_analysis
