// The working files of the pictures and the stroke font.
#include "target.h"

#include "base/check.h"
#include "draw/segment_file.h"
#include "draw/stroke_font.h"
#include "export/dxf.h"
#include "export/win3d.h"
#include "model/members.h"
#include "solid/axis_picture.h"
#include "solid/solid.h"

#include <chrono>

namespace kigumi::fuzz {

namespace {

// Files of one size that follow each other within the clock's step would count as one.
void stamp_anew(const fs::path& path) {
    static auto time = fs::file_time_type::clock::now();
    time += std::chrono::seconds(1);
    std::error_code ignored;
    fs::last_write_time(path, time, ignored);
}

} // namespace

// The input stands in for another program's file: it must not be taken for the triangles built.
void read_trio(Project& project, std::string_view input) {
    start_fresh(project);
    append_beam(project.model, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 300.0f}, 10.0f, 10.0f, kind_post,
                2);
    require_told(build_trio_file(project.model, project.solids, project.work_dir));
    std::string bytes(input);
    const bool own_size = bytes.size() % 2 == 1; // else as many bytes as are expected
    if (!own_size) {
        bytes.resize(static_cast<size_t>(project.solids.n_trio) * sizeof(Trio));
    }
    stamp_anew(put(project.work_dir, "TRIO.DAT", bytes));
    BlankCanvas canvas;
    DrawArea area = usual_window();
    KIGUMI_CHECK(saved_records(project.solids)->size() == 12, "triangles");
    require_told(draw_axis_model(project.view, project.solids, canvas, area));
    require_told(save_win3d(project.solids, work_file(project.work_dir, "a.w3d")));
}

void read_temp(Project& project, std::string_view input) {
    start_fresh(project);
    put(project.work_dir, "TEMP.DAT", input);
    BlankCanvas canvas;
    DrawArea area = usual_window();
    require_told(draw_segment_file(project.view, project.work_dir, canvas, area));
    require_told(make_dxf_file(project.work_dir, work_file(project.work_dir, "a.dxf"), 1));
}

void read_symbol(Project& project, std::string_view input) {
    start_fresh(project);
    const int status =
        load_stroke_font(project.lettering, put(project.work_dir, "symbol.cod", input));
    require_told(status);
    BlankCanvas canvas;
    canvas.set_area(usual_window());
    std::string all;
    for (int c = 1; c < 128; ++c) {
        all += static_cast<char>(c);
    }
    all += "柱";
    if (status == 0) {
        draw_text(project.lettering, canvas, all, -128, 1.0f, 2.0f, 30.0f, 12.0f);
    }
}

} // namespace kigumi::fuzz
