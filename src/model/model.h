// The structural model: nodes, members, sections, materials, supports, loads and the grid levels,
// in tables of fixed capacity with a count beside each.
//
// Positions are 0-based; every `no` is the 1-based number of its record (position + 1), and every
// reference from one table to another is such a number. Lengths are cm, z is vertical,
// right-handed.
#pragma once

#include "base/float_index.h"
#include "model/table.h"

#include <cstddef>
#include <cstdint>

namespace kigumi {

constexpr int node_capacity = 10000;
constexpr int beam_capacity = 10000;
constexpr int size_capacity = 1000;
constexpr int mat_capacity = 1000;
constexpr int fix_capacity = 1000;
constexpr int load_capacity = 1000;
constexpr int level_capacity = 100;

// Node names and member ends are matched and stored in fields of this many bytes.
constexpr int name_bytes = 32;

// A member's category (`kind`): who made it. The axis data file groups members by it.
enum Kind : std::int32_t {
    kind_none = 0,      // 無印: read from a file or drawn by hand
    kind_post = 1,      // スペース床の柱部
    kind_frame = 2,     // スペース床の枠材
    kind_chord = 3,     // スペース床の弦材, and the terrace
    kind_diagonal = 4,  // スペース床の斜材
    kind_brace = 5,     // スペース床の筋交
    kind_column = 6,    // 小屋組の柱: outer columns and their braces
    kind_roof_post = 7, // 屋根柱
    kind_girder = 8,    // 屋根桁
    kind_hip = 9,       // 隅合掌
    kind_rafter = 10,   // 平合掌
    kind_angle = 11,    // 火打平合掌
    kind_purlin = 12,   // 母屋
};
constexpr int kind_count = 13;

// A node's role (`Node::flag`) outside the hand-drawn editor.
enum NodeRole : std::int32_t {
    role_plain = 0,
    role_fixed = 1,  // becomes a support
    role_loaded = 2, // becomes a load
    role_found = 99, // transient hit of a search
};

struct Node {
    char id[name_bytes]; // name, normally "X%02dY%02dZ%02d"; may be empty
    std::int32_t no;     // position + 1
    float x, y, z;       // cm; -1 each while a hand-drawn node's place is unknown
    float X, Y;          // place on the drawing sheet
    std::int32_t flag;   // NodeRole; in the hand-drawn editor 0 drawn, 1 used, 2 place known
};
static_assert(sizeof(Node) == 60);

struct Beam {
    std::int32_t no;       // position + 1
    char idi[name_bytes];  // name of the start node
    char idj[name_bytes];  // name of the end node
    std::int32_t noi, noj; // numbers of the start and end node
    float xs, ys, zs;      // start point, cm
    float xl, yl, zl;      // end point, cm
    std::int32_t size;     // section number; -1 while unassigned
    std::int32_t mat;      // material number; -1 while unassigned
    float haba;            // section width 巾, cm (diameter of a circular member)
    float atumi;           // section thickness 厚み, cm
    std::int32_t kind;     // Kind
    float XS, YS;          // place of the start on the drawing sheet
    float XL, YL;          // and of the end
    std::int32_t flag;     // 0 first end placed, 1 both ends placed, 2 data set
};
static_assert(sizeof(Beam) == 140);

// Bytes of a timber's id in a member's edit, UTF-8, the closing 0 included.
constexpr int species_bytes = 26;

// What a person changed of a member's section and material. It belongs to the member, beside its
// record in `beam`, and is laid on the tables whenever they are made anew (model/sections.h).
struct MemberEdit {
    std::uint8_t section;        // 1: haba, atumi and angle hold
    std::uint8_t material;       // 1: E, poisson and density hold
    char species[species_bytes]; // id of the timber; empty: 任意材料
    float haba, atumi;           // cm
    float angle;                 // turn about the member's axis, degrees
    float E, poisson, density;   // as in MatTable
};
static_assert(sizeof(MemberEdit) == 52);

// Sections; entry k is section number k + 1. Made by check_size, changed by the section dialog.
struct SizeTable {
    Table<float, size_capacity> haba;   // width, cm
    Table<float, size_capacity> atumi;  // thickness, cm
    Table<float, size_capacity> length; // length of the member it was made for, cm
    Table<float, size_capacity> A;      // area, cm²
    Table<float, size_capacity> Iy;     // haba·atumi³/12, cm⁴: bending in the vertical plane
    Table<float, size_capacity> Iz;     // atumi·haba³/12, cm⁴: bending in the horizontal plane
    Table<float, size_capacity> J;      // torsion constant, cm⁴
    Table<float, size_capacity> angle;  // turn about the member's axis, degrees; 0 when made
};

// Materials; entry k is material number k + 1.
struct MatTable {
    Table<float, mat_capacity> E;       // Young's modulus
    Table<float, mat_capacity> poisson; // Poisson's ratio
    Table<float, mat_capacity> density; // mass density
};

struct Fix {
    char id[name_bytes];     // the node's name
    std::int32_t no;         // node number
    std::int32_t ix, iy, iz; // 1 translation held, 0 free; rotations are always held
};
static_assert(sizeof(Fix) == 48);

struct Load {
    char id[name_bytes]; // the node's name
    std::int32_t no;     // node number
    float fx, fy, fz;    // force, kgf; negative z acts downwards
};
static_assert(sizeof(Load) == 48);

// First position of every place among the first `count` nodes; find_or_add_node keeps it in step.
struct NodeIndex {
    FloatIndex first;
    std::int32_t count = 0;
};

struct Model {
    Table<Node, node_capacity> node;
    std::int32_t N_Node = 0;
    Table<Beam, beam_capacity> beam;
    std::int32_t N_Beam = 0;
    Table<MemberEdit, beam_capacity> edit; // of the member at this position; beyond N_Beam all 0
    SizeTable size;
    std::int32_t N_Size = 0;
    MatTable mat;
    std::int32_t N_Mat = 0;
    Table<Fix, fix_capacity> fix;
    std::int32_t N_Fix = 0;
    Table<Load, load_capacity> load;
    std::int32_t N_Load = 0;

    // NodeRole that the node at this position had before the search found it (role_found).
    Table<std::int32_t, node_capacity> found_role;

    // Distinct node coordinates, ascending; the grid on which node names are built.
    Table<float, level_capacity> Xval, Yval, Zval;
    std::int32_t N_X = 0, N_Y = 0, N_Z = 0;

    // 1 once supports and loads were entered by hand: they are then no longer made from node flags.
    std::int32_t fix_load_edited = 0;

    // Member counts when make_gaichu started and ended: the outer columns are the members between.
    std::int32_t GaichuStart = 0, GaichuEnd = 0;

    NodeIndex node_index;

    // The radius of search_2dim_node and of picking, plane units.
    float snap_radius = 10.0f;

    // What a new material starts with.
    float default_E = 100000.0f;
    float default_poisson = 0.3f;
    float default_density = 0.0005f;
};

// Node or member number (1-based) and table position (0-based).
constexpr int position_of(int no) {
    return no - 1;
}
constexpr int number_at(int position) {
    return position + 1;
}

// The group label of a category as the axis data file writes it ("// スペース床の柱部"), or null
// when there is no such category.
const char* kind_label(int kind);

// The same without the comment mark, for lists on the screen.
const char* kind_name(int kind);

// Empties nodes, members with what was changed of them, sections, materials, supports, loads and
// levels, and forgets that supports and loads were edited. Every command that makes a model starts
// with it.
void reset_model(Model& model);

// Copies a name (UTF-8) into a fixed name field, cut between characters to what the field holds.
void set_name(char (&field)[name_bytes], const char* name);

} // namespace kigumi
