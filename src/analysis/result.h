// Result tables: what the solver's files said, in tables of fixed capacity.
#pragma once

#include "analysis/fingerprint.h"
#include "model/model.h"

#include <string>
#include <vector>

namespace kigumi {

constexpr int result_capacity = 3000;

// Names of results are matched in their first nine characters only.
constexpr int matched_name_length = 9;

struct Setuten {            // result node
    char pname[name_bytes]; // node name as the solver echoes it
    std::int32_t OldNo;     // the model's node number
    float x, y, z;          // cm
};

struct Stress {                    // member result
    std::int32_t no;               // member number as read
    char iname[name_bytes];        // name of end I
    char jname[name_bytes];        // name of end J
    std::int32_t old_noi, old_noj; // model node numbers of the ends
    float xi, yi, zi;              // end I, cm, from setuten
    float xj, yj, zj;              // end J
    float force;                   // axial force, tension positive, kgf
    float percent;                 // |force| in percent of force_max; 0 when that is 0
    float p1, p2;                  // axial force at the ends
    float xv1, xv2, yv1, yv2;      // shear across the width and along the depth, at I and J
    float xm1, xm2;                // moment about the width axis at I and J, kgf·cm
    float ym1, ym2;                // moment about the depth axis; ym1 with the file's sign reversed
    float zm;                      // torsion
};

struct Disp {            // node displacement
    std::int32_t old_no; // model node number
    char name[name_bytes];
    float disp_x, disp_y, disp_z; // translations, cm
    float rad_x, rad_y, rad_z;    // rotations, rad
    float mag;                    // length of the translation, cm
};

// A displaced node or member of the displacement picture (get_new_beam).
struct HeniNode {
    std::int32_t no; // model node number; 0 while unset
    char name[name_bytes];
    float x, y, z; // displaced place, cm
};
struct HeniBeam {
    float xs, ys, zs, xl, yl, zl; // displaced ends, cm
};

// What a triangle of the bars shows.
struct Bar {
    std::int32_t row;
    std::int32_t colour;
};

// What a solver did of the members' own weight.
enum class SelfWeight { unknown, no, yes };

// Of which input results are.
struct ResultInput {
    Fingerprint print; // of the input that was solved; empty: unknown
    SelfWeight self_weight = SelfWeight::unknown;
    // FRAMESLV.IN may be of a later run, for a run since then did not start.
    bool put_back = false;
};

// A support or load of the input, and where its node stands, cm.
struct ResultFix {
    Fix fix;
    float x, y, z;
};
struct ResultLoad {
    Load load;
    float x, y, z;
};

// Supports and loads of the input that was solved, numbered as the results are.
struct ResultRoles {
    enum class State { missing, read, of_other_frame };
    State state = State::missing; // the tables are empty but for `read`
    std::vector<ResultFix> fix;
    std::vector<ResultLoad> load;
};

struct Result {
    Table<Setuten, result_capacity> setuten; // ascending by OldNo
    std::int32_t N_Setuten = 0;              // count of setuten and of disp
    Table<Stress, result_capacity> stress;   // descending by percent
    std::int32_t N_Stress = 0;
    Table<Disp, result_capacity> disp; // descending by mag
    float force_max = 0.0f;            // largest |force|

    ResultInput input;
    ResultRoles roles;
    // Of FRAMESLV.IN as it was when the results were read; empty without one.
    Fingerprint input_file;

    Table<HeniNode, result_capacity> heni_node;
    Table<HeniBeam, result_capacity> heni_beam;

    // The selection (results/selection.h): a copy of chosen records of `stress`, in their order.
    Table<Stress, result_capacity> kensaku;
    Table<std::int32_t, result_capacity> kensaku_row; // their 0-based positions in `stress`
    std::int32_t Nken_Stress = 0;
    // The bars built last (角丸表示): for each triangle the 0-based position in `stress` of the
    // member whose bar it is part of, and its pen colour.
    std::vector<Bar> bar_of_record;
    std::uint64_t kensaku_edition = 0; // grows with every change of the selection
};

} // namespace kigumi
