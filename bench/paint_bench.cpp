// How long a window of the largest usual frame takes to paint, beside an empty window of its size.
// The wire picture must take at most 16 ms on one core at 1280 × 800. Times are processor time,
// which other load on the machine disturbs least.
#include "base/files.h"
#include "generate/generate.h"
#include "generate/param.h"
#include "geometry/axis_picture.h"
#include "geometry/perspective.h"
#include "geometry/solid.h"
#include "model/lookup.h"
#include "results/model_picture.h"
#include "ui/picture_widget.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace kigumi::bench {
namespace {

constexpr int cells = 33; // 9768 members without columns
constexpr double bound_ms = 16.0;

void make_frame() {
    reset_model();
    set_default_param();
    param.NX = param.NY = cells;
    if (check_param({0, 0, 0}) < 0 || make_unit() < 0 || rebuild_tables() < 0) {
        std::abort();
    }
    build_trio_file();
}

// Paints the widget into a pixmap over and over.
void paint(benchmark::State& state, const PictureWidget::Picture& picture) {
    make_frame();
    PictureWidget widget;
    widget.resize(1280, 800);
    widget.set_picture(picture);
    QPixmap shown(widget.size());
    widget.render(&shown);
    double shortest = 1e9;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        widget.render(&shown);
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        shortest = std::min(shortest, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["shortest_ms"] = shortest * 1e3;
    state.counters["members"] = model.N_Beam;
}

void empty(benchmark::State& state) {
    paint(state, {});
}
BENCHMARK(empty)->UseManualTime()->Unit(benchmark::kMillisecond);

void main_window(benchmark::State& state) {
    ModelLabels marks;
    marks.fixed_nodes = marks.loaded_nodes = true;
    paint(state,
          [marks](Canvas& canvas, DrawArea& area) { draw_model_picture(canvas, area, marks); });
    state.counters["bound_ms"] = bound_ms;
}
BENCHMARK(main_window)->UseManualTime()->Unit(benchmark::kMillisecond);

void main_window_with_labels(benchmark::State& state) {
    ModelLabels labels;
    labels.node_names = labels.member_numbers = true;
    paint(state,
          [labels](Canvas& canvas, DrawArea& area) { draw_model_picture(canvas, area, labels); });
}
BENCHMARK(main_window_with_labels)->UseManualTime()->Unit(benchmark::kMillisecond);

void wires_with_node_marks(benchmark::State& state) {
    paint(state, [](Canvas& canvas, DrawArea& area) { draw_wire(canvas, area, true); });
}
BENCHMARK(wires_with_node_marks)->UseManualTime()->Unit(benchmark::kMillisecond);

void axis_model(benchmark::State& state) {
    paint(state, [](Canvas& canvas, DrawArea& area) { draw_axis_model(canvas, area); });
}
BENCHMARK(axis_model)->UseManualTime()->Unit(benchmark::kMillisecond);

// The hidden lines are removed at the first paint, which is not measured.
void perspective_model(benchmark::State& state) {
    paint(state, [](Canvas& canvas, DrawArea& area) { draw_perspective(canvas, area); });
}
BENCHMARK(perspective_model)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kigumi::bench

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    kigumi::work_dir() = folder.path().toStdString();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
