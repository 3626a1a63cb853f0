// Two projects in one process, on two threads: neither sees the other.
#include "analysis/solver_input.h"
#include "base/message.h"
#include "draw/model_picture.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/roles.h"
#include "model/sections.h"
#include "project/accept.h"
#include "project/gate.h"
#include "project/project_file.h"
#include "sight/perspective.h"
#include "solid/axis_picture.h"
#include "support.h"
#include "trace/spy.h"

#include <thread>

namespace kigumi::test {
namespace {

struct Frame {
    int NX, NY;
    float TukaHaba, haba;
};

// All that a piece of work leaves: its messages, pictures and files.
using Bytes = std::vector<std::string>;

void draw(Project& p, Bytes& bytes) {
    DrawArea area;
    area.xScreen = 640;
    area.yScreen = 480;
    RecorderCanvas canvas;
    ModelLabels labels;
    labels.node_names = labels.member_numbers = labels.fixed_nodes = true;
    draw_model_picture(p.model, project_model(p.model, p.view), p.lettering, canvas, area, labels);
    draw_wire(project_model(p.model, p.view), canvas, area, true);
    build_trio_file(p.model, p.solids, p.work_dir);
    draw_axis_model(p.view, p.solids, canvas, area);
    draw_perspective(p.view, p.solids, p.perspective, p.work_dir, canvas, area);
    bytes.push_back(canvas.text);
}

Bytes work_on(const Frame& frame, const fs::path& folder) {
    Bytes bytes;
    const ScopedMessageSink sink([&bytes](const Fault& told) { bytes.push_back(told.sentence); });
    fs::create_directories(folder);
    const auto work = std::make_unique<Work>();
    Project& project = work->project;
    project.work_dir = folder;
    work->history.start(project);
    const auto generate = [&frame](Project& p) {
        p.param.NX = frame.NX;
        p.param.NY = frame.NY;
        p.param.TukaHaba = frame.TukaHaba;
        return make_unit(p.model, p.param, p.solids) < 0 ? -1 : accept_model(p);
    };
    const auto edit = [&frame](Project& p) {
        put_fix(p.model, 0, 1, 1, 1);
        put_load(p.model, p.model.N_Node - 1, 0, 0, -frame.haba);
        note_roles_entered(p);
        return change_section(p.model, 1, frame.haba, 21, 0) == Change::stored ? 0 : -1;
    };
    for (int round = 0; round < 3; ++round) {
        change(*work, "骨組の作成", generate);
        change(*work, "断面の変更", edit);
        undo(*work);
        redo(*work);
        change_section(project.model, 0, -1, 0, 0); // refused, with a message
        draw(project, bytes);
    }
    save_project(project, folder / "a.kigumi");
    save_jiku_data(project.model, folder / "a.jik", {});
    save_honegumi(project.model, folder / "a.bon");
    for (const char* name : {"a.kigumi", "a.jik", "a.bon", "TRIO.DAT", "TEMP.DAT"}) {
        bytes.push_back(read_file(folder / name).value_or("no file"));
    }
    return bytes;
}

class TwoProjects : public CoreTest {};

TEST_F(TwoProjects, OnTwoThreadsGiveTheBytesOfEachAlone) {
    const Frame frames[] = {{4, 3, 90.0f, 33.0f}, {3, 5, 75.5f, 27.0f}};
    const Bytes alone[] = {work_on(frames[0], work_dir / "alone0"),
                           work_on(frames[1], work_dir / "alone1")};
    ASSERT_NE(alone[0], alone[1]);
    ASSERT_GT(alone[0].back().size(), 1000u);
    Bytes together[2];
    {
        const auto start = [&](int k) {
            return std::thread([&, k] {
                together[k] = work_on(frames[k], work_dir / ("both" + std::to_string(k)));
            });
        };
        std::thread first = start(0);
        std::thread second = start(1);
        first.join();
        second.join();
    }
    EXPECT_EQ(together[0], alone[0]);
    EXPECT_EQ(together[1], alone[1]);
    expect_messages({}); // each thread had its own
}

} // namespace
} // namespace kigumi::test
