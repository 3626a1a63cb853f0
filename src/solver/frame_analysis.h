// Linear analysis of a space frame under many load vectors, in the calling process.
//
// Members, axes and signs are those of element.h and docs/solver.md, with sprung or released ends,
// turned sections and, where shear areas are given, shear flexibility. Any consistent units will
// do; rotations are radians, turns degrees. Nothing is shared between calls: several frames may be
// solved on several threads.
#pragma once

#include "solver/base/note.h"

#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace frame_analysis {

using frameslv::Note;
using Vector3 = std::array<double, 3>;
// Three translations or forces along x, y, z, then three rotations or moments about them.
using Six = std::array<double, 6>;

// A spring that does not give. One of stiffness 0 resists nothing.
constexpr double rigid = std::numeric_limits<double>::infinity();

struct Node {
    Vector3 at{};
    std::string name; // for messages; "節点 <number from 1>" where empty
    // Of the ground, by direction, global axes: 0 free, `rigid` held, between them a spring in
    // force by length or moment by radian.
    Six support{};
};

// How an end is joined to its node: springs against rotation about the local x (torsion), y, z.
struct Joint {
    Vector3 spring{rigid, rigid, rigid};
};

struct Member {
    // The axial forces that it carries: a member for tension only has no axial stiffness where it
    // would be compressed; in bending and torsion it is what its joints make of it.
    enum class Carries { both, tension, compression };

    size_t i = 0, j = 0; // nodes, by index
    double E = 0.0, G = 0.0;
    double A = 0.0, Iy = 0.0, Iz = 0.0, J = 0.0;
    double turn = 0.0;                   // of the section about I -> J, degrees
    double shear_y = 0.0, shear_z = 0.0; // shear areas for forces along y and z; 0: no flexibility
    double weight = 0.0;                 // by length, for LoadVector::gravity
    Joint joint_i, joint_j;
    Carries carries = Carries::both;
};

struct Frame {
    std::vector<Node> nodes;
    std::vector<Member> members;
};

struct NodeLoad {
    size_t node = 0;
    Six value{}; // global axes
};

struct MemberLoad {
    enum class Kind {
        uniform,   // force by length of the member
        projected, // force by length of the member's projection square to the force
        point      // force at a distance
    };
    size_t member = 0;
    Kind kind = Kind::uniform;
    Vector3 force{};
    bool local = false;    // force along the member's axes; not for projected ones
    double distance = 0.0; // of a point load from I, 0 to the member's length
};

struct LoadVector {
    std::string name;
    std::vector<NodeLoad> nodes;
    std::vector<MemberLoad> members;
    Vector3 gravity{}; // times Member::weight is a uniform load; {0, 0, -1} is self-weight
};

// The answer to one load vector.
struct Response {
    // Why there is none, one Japanese sentence: the members that carry tension or compression only
    // do not settle, or leave the frame loose under these loads. The rest is then empty.
    std::string fault;
    std::vector<Six> moved; // of each node
    // Of each member: what the nodes exert on its ends I and J, local axes.
    std::vector<std::array<Six, 2>> end_force;
    std::vector<Six> reaction; // of each node, global axes; zero where it is free
    double residual = 0.0;     // largest unbalanced force of a node, by the largest load
    double imbalance = 0.0;    // loads plus reactions, moments about the first node, by the same
    std::vector<size_t> idle;  // members that carry no axial force, ascending
    int rounds = 0;            // until the members for tension or compression only had settled
};

struct Analysis {
    // Why there is no answer; empty when there is one. One Japanese sentence.
    std::string fault;
    std::vector<Response> responses; // one a load vector
    double condition = 0.0;          // estimate, of the stiffness scaled to unit diagonal
    std::vector<Note> notes;
};

// Solves the frame under all load vectors with one factorisation. Refused, by name: indices that do
// not exist, values that are not finite or out of range (negative springs among them), members
// without length, a frame or a joint that can move without resistance. `most_threads` 0: as many as
// help.
//
// With members for tension or compression only each load vector has its own set of members that
// carry: all at first, then those that their elongation asks for, all changes at once, and one at a
// time, the farthest off first, once a set comes back. Load vectors with the same set share a
// factorisation. After `most_rounds` sets a load vector ends with a fault.
constexpr int usual_rounds = 100;
Analysis analyse(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads = 1,
                 int most_rounds = usual_rounds);

// The internal forces at `distance` from I, on a section whose outward normal points to J, local
// axes: N (tension positive), Qy, Qz, T, My, Mz; exact under the loads of `load`, a point load at
// the distance itself not yet passed. The member, its response and load must be of one analysis.
Six internal_forces(const Frame& frame, const LoadVector& load, const Response& response,
                    size_t member, double distance);

} // namespace frame_analysis
