// Small frames and results that several tests of the analysis and the results share.
#pragma once

#include "analysis/result.h"
#include "base/format.h"
#include "model/members.h"
#include "model/roles.h"
#include "model/sections.h"
#include "support.h"

#include <string>

namespace kigumi::test {

// One post of 10 cm x 10 cm and 300 cm height on a support, 200 kgf on its head; all tables made.
inline void make_post(Model& model) {
    append_beam(model, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 300.0f}, 10.0f, 10.0f, kind_post, 2);
    rebuild_tables(model);
    append_fix(model, 1, 1, 1, 1);
    append_load(model, 2, 0.0f, 0.0f, -200.0f);
}

// Adds a result node with this model number and place, cm, and an unmoved displacement for it.
inline void add_setuten(Result& result, int no, const char* name, float x, float y, float z) {
    Setuten& node = result.setuten[result.N_Setuten];
    node = {{}, no, x, y, z};
    set_name(node.pname, name);
    Disp& disp = result.disp[result.N_Setuten++];
    disp = {};
    disp.old_no = no;
    set_name(disp.name, name);
}

// Adds a result member between two result nodes (positions in setuten).
inline void add_stress(Result& result, int start, int end, float force, float percent) {
    const Setuten& i = result.setuten[start];
    const Setuten& j = result.setuten[end];
    Stress& s = result.stress[result.N_Stress++];
    s = {};
    s.no = result.N_Stress;
    set_name(s.iname, i.pname);
    set_name(s.jname, j.pname);
    s.old_noi = i.OldNo;
    s.old_noj = j.OldNo;
    s.xi = i.x;
    s.yi = i.y;
    s.zi = i.z;
    s.xj = j.x;
    s.yj = j.y;
    s.zj = j.z;
    s.force = force;
    s.percent = percent;
}

// A portal in the plane of x and z: two posts of 300 cm, a beam of 400 cm.
inline void make_portal_result(Result& result) {
    add_setuten(result, 1, "X00Y00Z00", 0.0f, 0.0f, 0.0f);
    add_setuten(result, 2, "X00Y00Z01", 0.0f, 0.0f, 300.0f);
    add_setuten(result, 3, "X01Y00Z01", 400.0f, 0.0f, 300.0f);
    add_setuten(result, 4, "X01Y00Z00", 400.0f, 0.0f, 0.0f);
    add_stress(result, 0, 1, -200.0f, 100.0f);
    add_stress(result, 1, 2, 20.0f, 10.0f);
    add_stress(result, 3, 2, 0.0f, 0.0f);
}

// frameslv.lst of `nodes` nodes in a row, 100 cm apart, and members between neighbours.
inline std::string listing_of_row(int nodes) {
    std::string text = text_format("%5d\n", nodes);
    for (int no = 1; no <= nodes; ++no) {
        text +=
            text_format(" %5d %5d %12.5e %12.5e %12.5e N%05d\n", no, no, no * 100.0, 0.0, 0.0, no);
    }
    text += text_format("%5d\n", nodes - 1);
    for (int no = 1; no < nodes; ++no) {
        text += text_format(" %5d %5d %5d N%05d %5d %5d N%05d %12.5e\n", no, no, no, no, no + 1,
                            no + 1, no + 1, no * 1.5);
        text += text_format(" %12.5e %12.5e %12.5e %12.5e %12.5e %12.5e\n", 1.0, 2.0, 3.0, 4.0, 5.0,
                            6.0);
        text += text_format(" %12.5e %12.5e %12.5e %12.5e %12.5e\n", 7.0, 8.0, 9.0, 10.0, 11.0);
    }
    return text;
}

// frameslv.dsp of the same nodes.
inline std::string displacements_of_row(int nodes) {
    std::string text = text_format("%5d\n", nodes);
    for (int no = 1; no <= nodes; ++no) {
        text += text_format(" %5d %5d N%05d %12.5e %12.5e %12.5e %12.5e %12.5e %12.5e\n", no, no,
                            no, no * 1.0e-3, 0.0, -1.0e-3, 0.0, 0.0, 0.0);
    }
    return text;
}

} // namespace kigumi::test
