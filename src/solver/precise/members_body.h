// The body of precise_forces for vectors of PRECISE_LANES numbers, included by one source file for
// each width. As in sparse/kernel_body.h nothing that the linker could share may be included.
#include "solver/precise/members.h"
#include "solver/precise/pair.h"

namespace frameslv {

namespace {

#if PRECISE_LANES > 1
typedef double Vector __attribute__((vector_size(PRECISE_LANES * sizeof(double))));
// The same in arrays.
typedef double Stored __attribute__((vector_size(PRECISE_LANES * sizeof(double)),
                                     aligned(sizeof(double)), may_alias));
inline double& lane(Vector& v, int k) {
    return reinterpret_cast<double*>(&v)[k];
}
#else
typedef double Vector;
typedef double Stored;
inline double& lane(Vector& v, int) {
    return v;
}
#endif

using Wide = Pair<Vector>;
static_assert(PreciseBatch::members % PRECISE_LANES == 0);

struct Triple {
    Wide x, y, z;
};

inline Vector load(const double* from) {
    return *reinterpret_cast<const Stored*>(from);
}

inline Vector root(Vector a) {
    for (int k = 0; k < PRECISE_LANES; k++)
        lane(a, k) = __builtin_sqrt(lane(a, k));
    return a;
}

inline Wide load_pair(const double (&from)[2][PreciseBatch::members], size_t at) {
    return {load(from[0] + at), load(from[1] + at)};
}

inline void store_pair(double (&to)[2][PreciseBatch::members], size_t at, Wide value) {
    *reinterpret_cast<Stored*>(to[0] + at) = value.high;
    *reinterpret_cast<Stored*>(to[1] + at) = value.low;
}

inline Wide dot(const Triple& a, const Triple& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Triple cross(const Triple& a, const Triple& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline Triple times(const Triple& a, Wide b) {
    return {a.x * b, a.y * b, a.z * b};
}

inline Triple sum(const Triple& a, const Triple& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Triple difference(const Triple& a, const Triple& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

struct Axes {
    Triple x, y, z;
    Wide length, inverse;
};

inline Wide inverse_root(Wide a) {
    return reciprocal_root(a, Vector(1.0 / root(a.high)));
}

inline Axes axes_of(const PreciseBatch& b, size_t at) {
    Axes axes;
    const auto run = [&](int k) {
        return exact_difference(load(b.at_j[k] + at), load(b.at_i[k] + at));
    };
    const Triple d{run(0), run(1), run(2)};
    const Wide square = dot(d, d);
    axes.inverse = inverse_root(square);
    axes.length = square * axes.inverse;
    axes.x = times(d, axes.inverse);
    // Level: (-y, x, 0), or for a vertical member what global Y has across the member.
    const Vector upright = load(b.vertical + at);
    const Wide is = paired(upright);
    const Wide is_not = paired(Vector(1.0 - upright));
    const Wide one = paired(Vector(upright - upright + 1.0));
    const Triple across{-(axes.x.y * (is_not + is * axes.x.x)),
                        is_not * axes.x.x + is * (one - axes.x.y * axes.x.y),
                        -(is * axes.x.y * axes.x.z)};
    axes.y = times(across, inverse_root(dot(across, across)));
    axes.z = cross(axes.x, axes.y);
    if (b.turned) {
        const Wide c = load_pair(b.cosine, at);
        const Wide s = load_pair(b.sine, at);
        const Triple level = axes.y;
        axes.y = sum(times(level, c), times(axes.z, s));
        axes.z = difference(times(axes.z, c), times(level, s));
    }
    return axes;
}

inline Triple in_axes(const Axes& axes, const Triple& v) {
    return {dot(axes.x, v), dot(axes.y, v), dot(axes.z, v)};
}

inline Triple out_of_axes(const Axes& axes, const Triple& v) {
    return sum(sum(times(axes.x, v.x), times(axes.y, v.y)), times(axes.z, v.z));
}

// End moments by the rotations against the chord.
struct Bending {
    Wide near_i, far, near_j;
};

inline Bending bending_of(const PreciseBatch& b, size_t at, int plane, Wide stiffness) {
    if (b.jointed)
        return {load_pair(b.near_i[plane], at), load_pair(b.far[plane], at),
                load_pair(b.near_j[plane], at)};
    const Wide twice = scaled(stiffness, 2.0);
    return {scaled(twice, 2.0), twice, scaled(twice, 2.0)};
}

struct Forces {
    Triple force_i, moment_i, force_j, moment_j;
};

inline Forces forces_of(const PreciseBatch& b, size_t at, const Axes& axes) {
    const auto end = [&](int first) -> Triple {
        return {load_pair(b.moved[first], at), load_pair(b.moved[first + 1], at),
                load_pair(b.moved[first + 2], at)};
    };
    const Triple turn = end(3);
    const Triple shift = in_axes(axes, difference(end(6), end(0)));
    const Triple twist = in_axes(axes, difference(end(9), turn));
    const Triple turn_i = in_axes(axes, turn);
    const Wide chord_y = shift.z * axes.inverse;
    const Wide chord_z = shift.y * axes.inverse;
    const Wide about_y = turn_i.y + chord_y;
    const Wide about_z = turn_i.z - chord_z;
    const Vector E = load(b.E + at);
    const auto stiffness = [&](const double* value) {
        return exact_product(E, load(value + at)) * axes.inverse;
    };
    const Bending in_y = bending_of(b, at, 0, stiffness(b.Iy));
    const Bending in_z = bending_of(b, at, 1, stiffness(b.Iz));
    const Wide far_y = about_y + twist.y;
    const Wide far_z = about_z + twist.z;
    Wide my_i = in_y.near_i * about_y + in_y.far * far_y;
    Wide my_j = in_y.far * about_y + in_y.near_j * far_y;
    Wide mz_i = in_z.near_i * about_z + in_z.far * far_z;
    Wide mz_j = in_z.far * about_z + in_z.near_j * far_z;
    const Wide axial = stiffness(b.A) * shift.x;
    Wide torsion = b.jointed ? load_pair(b.torsion, at)
                             : times(load_pair(b.G, at), load(b.J + at)) * axes.inverse;
    Wide side_y = paired(Vector(E - E));
    Wide side_z = side_y;
    if (b.tense) {
        const Wide P = paired(load(b.tension + at));
        const Wide share = P * axes.length * reciprocal(paired(Vector(E - E + 30.0)));
        const Wide four = paired(Vector(E - E + 4.0));
        my_i = my_i + share * (four * about_y - far_y);
        my_j = my_j + share * (four * far_y - about_y);
        mz_i = mz_i + share * (four * about_z - far_z);
        mz_j = mz_j + share * (four * far_z - about_z);
        const Wide inertia = exact_sum(load(b.Iy + at), load(b.Iz + at));
        torsion = torsion + P * inertia * reciprocal(paired(load(b.A + at))) * axes.inverse;
        side_y = P * chord_z;
        side_z = P * chord_y;
    }
    const Wide torque = torsion * twist.x;
    const Wide shear_y = (mz_i + mz_j) * axes.inverse - side_y;
    const Wide shear_z = -((my_i + my_j) * axes.inverse) - side_z;
    return {{-axial, shear_y, shear_z},
            {-torque, my_i, mz_i},
            {axial, -shear_y, -shear_z},
            {torque, my_j, mz_j}};
}

void fill_forces(PreciseBatch& b) {
    for (size_t at = 0; at < PreciseBatch::members; at += PRECISE_LANES) {
        const Axes axes = axes_of(b, at);
        const Forces forces = forces_of(b, at, axes);
        const Triple* const local[] = {&forces.force_i, &forces.moment_i, &forces.force_j,
                                       &forces.moment_j};
        for (int k = 0; k < 4; k++) {
            const Triple out = out_of_axes(axes, *local[k]);
            const Wide* const from[] = {&local[k]->x, &local[k]->y, &local[k]->z};
            const Wide* const to[] = {&out.x, &out.y, &out.z};
            for (int i = 0; i < 3; i++) {
                store_pair(b.local[3 * k + i], at, *from[i]);
                store_pair(b.global[3 * k + i], at, *to[i]);
            }
        }
    }
}

} // namespace

extern const PreciseForces PRECISE_NAME;
const PreciseForces PRECISE_NAME = fill_forces;

} // namespace frameslv
