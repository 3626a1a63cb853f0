// How long a window of the largest usual frame takes to paint, beside an empty window of its size.
// The wire picture, and every picture of the results window on 2856 members, must take at most 16
// ms on one core at 1280 × 800, and opening the results window 300 ms. Times are processor time,
// which other load on the machine disturbs least.
#include "frames.h"

#include "base/files.h"
#include "draw/model_picture.h"
#include "generate/generate.h"
#include "generate/param.h"
#include "model/sections.h"
#include "sight/perspective.h"
#include "solid/axis_picture.h"
#include "solid/solid.h"
#include "ui/picture/picture_widget.h"
#include "ui/result/frame_slv_form.h"

#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QApplication>
#include <QPixmap>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>

namespace kigumi::bench {
namespace {

constexpr int cells = 33; // 9768 members without columns
constexpr double bound_ms = 16.0;

// The session of one measurement, with its working directory.
struct Workroom {
    Workroom() { project.work_dir = folder.path; }

    const WorkFolder folder;
    const std::unique_ptr<Session> session = std::make_unique<Session>(); // some MB
    Project& project = session->project;
};

void make_frame(Project& project) {
    Param& param = project.param;
    param.NX = param.NY = cells;
    if (check_param(param, {0, 0, 0}) < 0 || make_unit(project.model, param, project.solids) < 0 ||
        rebuild_tables(project.model) < 0) {
        std::abort();
    }
    build_trio_file(project.model, project.solids, project.work_dir);
}

// Measures the processor time of a piece of work over and over.
void measure(const Model& model, benchmark::State& state, double bound, auto&& work) {
    double shortest = 1e9;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        work();
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        shortest = std::min(shortest, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["shortest_ms"] = shortest * 1e3;
    state.counters["members"] = model.N_Beam;
    if (bound > 0.0) {
        state.counters["bound_ms"] = bound;
    }
}

// Paints the widget into a pixmap over and over.
void paint_widget(const Model& model, benchmark::State& state, PictureWidget& widget,
                  double bound) {
    widget.resize(1280, 800);
    QPixmap shown(widget.size());
    widget.render(&shown);
    measure(model, state, bound, [&] { widget.render(&shown); });
}

// What a window paints of its project.
using ProjectPicture = std::function<void(Project& project, Canvas& canvas, DrawArea& area)>;

void paint(benchmark::State& state, const ProjectPicture& picture, double bound = 0.0) {
    const Workroom room;
    Project& project = room.project;
    make_frame(project);
    PictureWidget widget;
    if (picture) {
        widget.set_picture([&](Canvas& canvas, DrawArea& area) { picture(project, canvas, area); });
    }
    paint_widget(project.model, state, widget, bound);
}

// Leaves the result files of 2856 members in the working directory.
void write_results(Project& project) {
    const ResultFiles files = make_result_files(project.model, project.param);
    const fs::path& work_dir = project.work_dir;
    save_file(work_file(work_dir, "frameslv.zlv"), "1 0.0 1 0.0 1 0.0");
    save_file(work_file(work_dir, "frameslv.lst"), files.listing);
    save_file(work_file(work_dir, "frameslv.dsp"), files.displacements);
}

// A picture of the results window, chosen by its menu item.
void results(benchmark::State& state, const char* item) {
    const Workroom room;
    write_results(room.project);
    TFrameSlvForm window(*room.session);
    window.findChild<QAction*>(item)->trigger();
    paint_widget(room.project.model, state, window.picture(), bound_ms);
}
BENCHMARK_CAPTURE(results, sign, "JikuryokuMenu")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(results, width, "FutosaMenu")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(results, wire, "WireMenu")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(results, displaced, "Heni10Menu")->UseManualTime()->Unit(benchmark::kMillisecond);

void results_bars(benchmark::State& state) {
    const Workroom room;
    write_results(room.project);
    TFrameSlvForm window(*room.session);
    QTimer::singleShot(0, [] {
        QApplication::activeModalWidget()->findChild<QAbstractButton*>("OKButton")->click();
    });
    window.findChild<QAction*>("MarukakuMenu")->trigger();
    paint_widget(room.project.model, state, window.picture(), bound_ms);
}
BENCHMARK(results_bars)->UseManualTime()->Unit(benchmark::kMillisecond);

// Reading the files, making the window and painting it once.
void open_results(benchmark::State& state) {
    constexpr double opening_ms = 300.0;
    const Workroom room;
    write_results(room.project);
    measure(room.project.model, state, opening_ms, [&room] {
        TFrameSlvForm window(*room.session);
        window.resize(1280, 800);
        window.grab();
    });
}
BENCHMARK(open_results)->UseManualTime()->Unit(benchmark::kMillisecond);

void empty(benchmark::State& state) {
    paint(state, {});
}
BENCHMARK(empty)->UseManualTime()->Unit(benchmark::kMillisecond);

void draw_labelled(Project& project, Canvas& canvas, DrawArea& area, const ModelLabels& labels) {
    draw_model_picture(project.model, project_model(project.model, project.view), project.lettering,
                       canvas, area, labels);
}

void main_window(benchmark::State& state) {
    ModelLabels marks;
    marks.fixed_nodes = marks.loaded_nodes = true;
    paint(
        state,
        [marks](Project& project, Canvas& canvas, DrawArea& area) {
            draw_labelled(project, canvas, area, marks);
        },
        bound_ms);
}
BENCHMARK(main_window)->UseManualTime()->Unit(benchmark::kMillisecond);

void main_window_with_labels(benchmark::State& state) {
    ModelLabels labels;
    labels.node_names = labels.member_numbers = true;
    paint(state, [labels](Project& project, Canvas& canvas, DrawArea& area) {
        draw_labelled(project, canvas, area, labels);
    });
}
BENCHMARK(main_window_with_labels)->UseManualTime()->Unit(benchmark::kMillisecond);

void wires_with_node_marks(benchmark::State& state) {
    paint(state, [](Project& project, Canvas& canvas, DrawArea& area) {
        draw_wire(project_model(project.model, project.view), canvas, area, true);
    });
}
BENCHMARK(wires_with_node_marks)->UseManualTime()->Unit(benchmark::kMillisecond);

void axis_model(benchmark::State& state) {
    paint(state, [](Project& project, Canvas& canvas, DrawArea& area) {
        draw_axis_model(project.view, project.solids, canvas, area);
    });
}
BENCHMARK(axis_model)->UseManualTime()->Unit(benchmark::kMillisecond);

// The hidden lines are removed at the first paint, which is not measured.
void perspective_model(benchmark::State& state) {
    paint(state, [](Project& project, Canvas& canvas, DrawArea& area) {
        draw_perspective(project.view, project.solids, project.perspective, project.work_dir,
                         canvas, area);
    });
}
BENCHMARK(perspective_model)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kigumi::bench

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
