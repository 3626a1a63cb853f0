// The frame as the input file tells it. Numbers (`no`, `noi`, `noj`, `size`, `mat`) are 1-based as
// in the file; the record of number `no` stands at position index_of(no). Units are the file's own:
// one length, one force; angles of rotation are radians unless noted.
#pragma once

#include "solver/base/vectors.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace frameslv {

// Position of the record numbered `no`.
inline size_t index_of(int no) {
    return static_cast<size_t>(no) - 1;
}

// Number of the record at a position.
inline int number_of(size_t index) {
    return static_cast<int>(index) + 1;
}

struct Node {
    Point at;
    std::string name;                   // as in the file; may be empty
    std::array<bool, dof_count> held{}; // support digits tx ty tz rx ry rz
    Six load{};                         // sum of all load lines: fx fy fz mx my mz

    bool wholly_held() const {
        for (const bool one : held)
            if (!one)
                return false;
        return true;
    }
};

struct Member {
    int noi = 0;        // node at I
    int noj = 0;        // node at J
    int size = 0;       // section number
    int mat = 0;        // material number
    double angle = 0.0; // section angle about I -> J, right-hand rule, degrees
};

struct Section {
    double Iy = 0.0; // about the local y axis: bending in the vertical plane
    double Iz = 0.0; // about the local z axis: bending in the horizontal plane
    double A = 0.0;
    double J = 0.0; // torsion constant
};

struct Material {
    double E = 0.0;
    double poisson = 0.0;
    double density = 0.0; // not used: loads stand at nodes only

    double G() const { return E / (2.0 * (1.0 + poisson)); }
};

struct Model {
    std::vector<double> Xval, Yval, Zval; // level tables
    std::vector<Node> node;
    std::vector<Member> member;
    std::vector<Section> section;
    std::vector<Material> material;
    int N_Fix = 0;  // support lines read
    int N_Load = 0; // load lines read
};

// "節点 X01Y02Z03", or "節点 12" of a node without a name, for messages.
std::string node_label(const Model& model, int no);

// "部材 5 (節点 1 - 節点 7)" for messages.
std::string member_label(const Model& model, int no);

} // namespace frameslv
