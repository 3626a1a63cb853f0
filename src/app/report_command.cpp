#include "analysis/result_fit.h"
#include "analysis/result_input.h"
#include "analysis/result_reader.h"
#include "analysis/solver_roles.h"
#include "analysis/solver_run.h"
#include "app/commands.h"
#include "app/frame_input.h"
#include "app/summary.h"
#include "base/message.h"
#include "files/jiku.h"
#include "model/members.h"
#include "results/displacement.h"
#include "results/force_picture.h"
#include "results/result_search.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/painter_canvas.h"
#include "ui/picture/table_printer.h"
#include "ui/result/legend_box.h"

#include <QFontDatabase>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace kigumi {

namespace {

constexpr int largest_shown = 20;         // members and nodes
constexpr QSize picture_size(2400, 1425); // pixels; two of them fit on a page
constexpr double legend_scale = 2.3;      // of letters made for a screen
constexpr int leading_member_columns = 7; // number, ends, force, percent
constexpr double cm_a_metre = 100.0;
constexpr double cm3_a_m3 = 1e6;

using Row = std::vector<QString>;

using Columns = std::vector<PrintedTable::Column>;

PrintedTable::Column words(const char* heading) {
    return {heading, false};
}
PrintedTable::Column numbers(const char* heading) {
    return {heading, true};
}

PrintedTable text_table(const Columns& columns, std::vector<Row> rows) {
    PrintedTable table;
    table.columns = columns;
    table.rows = static_cast<int>(rows.size());
    table.cell = [cells = std::move(rows)](int row, int column) {
        return cells[static_cast<size_t>(row)][static_cast<size_t>(column)];
    };
    return table;
}

// The same with short records side by side, from left to right and on in the next row.
PrintedTable text_table_beside(const Columns& columns, const std::vector<Row>& records,
                               size_t beside) {
    beside = std::clamp(records.size(), size_t{1}, beside);
    Columns all;
    for (size_t i = 0; i < beside; ++i) {
        all.insert(all.end(), columns.begin(), columns.end());
    }
    std::vector<Row> rows;
    for (size_t i = 0; i < records.size(); ++i) {
        if (i % beside == 0) {
            rows.emplace_back();
        }
        rows.back().insert(rows.back().end(), records[i].begin(), records[i].end());
    }
    if (!rows.empty()) {
        rows.back().resize(all.size());
    }
    return text_table(all, std::move(rows));
}

QString number(double value, int decimals) {
    return QString::number(value, 'f', decimals);
}

// Name of a node of the results by the model's number; empty when there is none.
QString node_name(const Project& project, int no) {
    const Setuten* node = find_setuten(project.result, no);
    return node == nullptr ? QString() : qt_text(node->pname);
}

// What is known of the frame beside its results.
struct Source {
    QString input;                    // the model's file name; empty without one
    std::optional<SolverFrame> frame; // the solver's input, when it is that of the results
    ResultAge age = ResultAge::unknown;
    bool roles = false; // supports and loads are known
};

// Bars of one sort: number, total length (m), timber (m³).
struct Timber {
    int count = 0;
    double length = 0.0, volume = 0.0;

    void add(double cm, double cm3) {
        ++count;
        length += cm / cm_a_metre;
        volume += cm3 / cm3_a_m3;
    }
    Row row(const QString& name) const {
        return {name, QString::number(count), number(length, 1), number(volume, 3)};
    }
};

void add_total(std::vector<Row>& rows, const std::vector<Timber>& parts) {
    Timber total;
    for (const Timber& part : parts) {
        total.count += part.count;
        total.length += part.length;
        total.volume += part.volume;
    }
    rows.push_back(total.row("合計"));
}

template <class Key, class Name>
PrintedTable timber_table(const char* heading, const std::map<Key, Timber>& sorts, Name name) {
    std::vector<Row> rows;
    std::vector<Timber> parts;
    for (const auto& [key, timber] : sorts) {
        rows.push_back(timber.row(name(key)));
        parts.push_back(timber);
    }
    add_total(rows, parts);
    return text_table({words(heading), numbers("本数"), numbers("延長 (m)"), numbers("材積 (m³)")},
                      std::move(rows));
}

QString section_name(const CrossSection& section) {
    return number(section.haba, 1) + " × " + number(section.atumi, 1);
}

void add_timber(const Project& project, TablePrinter& pages, const Source& source) {
    pages.add_heading("材積");
    if (!source.input.isEmpty()) {
        std::map<int, Timber> kinds;
        for (const KindTotal& each : kind_totals(project)) {
            kinds[each.kind] = {each.count, each.length, each.volume};
        }
        pages.add_table(timber_table("区分", kinds, [](int kind) { return kind_name(kind); }));
        std::map<CrossSection, Timber> sections;
        for (int i = 0; i < project.model.N_Beam; ++i) {
            const Beam& beam = project.model.beam[i];
            sections[{beam.haba, beam.atumi}].add(beam_length(beam), beam_volume(beam) * cm3_a_m3);
        }
        pages.add_table(timber_table("断面 巾 × 厚み (cm)", sections, section_name));
        return;
    }
    if (!source.frame) {
        pages.add_text("軸データも、この結果の FRAMESLV.IN もないため、材積は出せません。");
        return;
    }
    std::map<double, Timber> areas;
    for (const SolverFrame::Member& member : source.frame->members) {
        areas[member.area].add(member.length, member.area * member.length);
    }
    pages.add_text(
        "FRAMESLV.IN による断面積ごとの材積です。区分ごとの材積は、軸データを指定すると出ます。");
    pages.add_table(
        timber_table("断面積 (cm²)", areas, [](double area) { return number(area, 1); }));
}

QString member_text(const Stress* member) {
    if (member == nullptr) {
        return "なし";
    }
    return QString("%1 kgf　部材 %2（%3 - %4）")
        .arg(member->force, 0, 'f', 1)
        .arg(member->no)
        .arg(qt_text(member->iname), qt_text(member->jname));
}

// The member of the largest force of one sign, or null.
const Stress* largest_member(const Project& project, bool tension) {
    const auto end = project.result.stress.begin() + project.result.N_Stress;
    const auto found =
        std::find_if(project.result.stress.begin(), end, [tension](const Stress& member) {
            return tension ? member.force > 0.0f : member.force < 0.0f;
        });
    return found == end ? nullptr : &*found;
}

struct Bounds {
    float low[3], high[3];
};

Bounds result_bounds(const Project& project) {
    Bounds bounds{};
    for (int i = 0; i < project.result.N_Setuten; ++i) {
        const Setuten& node = project.result.setuten[i];
        const float at[3] = {node.x, node.y, node.z};
        for (int axis = 0; axis < 3; ++axis) {
            bounds.low[axis] = i == 0 ? at[axis] : std::min(bounds.low[axis], at[axis]);
            bounds.high[axis] = i == 0 ? at[axis] : std::max(bounds.high[axis], at[axis]);
        }
    }
    return bounds;
}

// What the solver did of the members' own weight.
const char* self_weight_sentence(const Project& project) {
    switch (project.result.input.self_weight) {
    case SelfWeight::no:
        return "自重は含みません";
    case SelfWeight::yes:
        return "自重を含みます";
    case SelfWeight::unknown:
        break;
    }
    return "自重の有無は不明です";
}

void add_summary(const Project& project, TablePrinter& pages, const Source& source) {
    std::vector<Row> rows = {{"計算結果のフォルダ", qt_path(project.work_dir.filename())}};
    rows.push_back({"軸データ", source.input.isEmpty() ? "指定なし" : source.input});
    if (source.age != ResultAge::current) {
        rows.push_back({"結果の入力", age_sentence(source.age)});
    }
    rows.push_back({"自重", self_weight_sentence(project)});
    rows.push_back({"節点", QString::number(project.result.N_Setuten)});
    rows.push_back({"部材", QString::number(project.result.N_Stress)});
    if (!source.input.isEmpty()) {
        rows.push_back({"断面の種類", QString::number(cross_sections(project.model).size())});
    }
    const Bounds bounds = result_bounds(project);
    constexpr const char* axes[] = {"X の範囲", "Y の範囲", "Z の範囲"};
    for (int axis = 0; axis < 3; ++axis) {
        rows.push_back({axes[axis], QString("%1 ～ %2 cm")
                                        .arg(bounds.low[axis], 0, 'f', 1)
                                        .arg(bounds.high[axis], 0, 'f', 1)});
    }
    if (source.roles) {
        rows.push_back({"固定節点", QString::number(project.result.roles.fix.size())});
        rows.push_back({"荷重節点", QString::number(project.result.roles.load.size())});
    }
    rows.push_back({"最大引張", member_text(largest_member(project, true))});
    rows.push_back({"最大圧縮", member_text(largest_member(project, false))});
    if (project.result.N_Setuten > 0) {
        const Disp& disp = project.result.disp[0];
        rows.push_back({"最大変位", QString("%1 cm　節点 %2（%3）")
                                        .arg(disp.mag, 0, 'f', 4)
                                        .arg(disp.old_no)
                                        .arg(qt_text(disp.name))});
    }
    pages.add_heading("概要");
    pages.add_table(text_table({words("項目"), words("内容")}, std::move(rows)));
}

void add_supports(const Project& project, TablePrinter& pages) {
    constexpr size_t beside = 4;
    std::vector<Row> records;
    for (const ResultFix& role : project.result.roles.fix) {
        const Fix& fix = role.fix;
        QString held;
        held += fix.ix != 0 ? "x " : "";
        held += fix.iy != 0 ? "y " : "";
        held += fix.iz != 0 ? "z" : "";
        records.push_back({QString::number(fix.no), node_name(project, fix.no),
                           held.isEmpty() ? "なし" : held.trimmed()});
    }
    pages.add_heading("支点");
    pages.add_text(
        QString("固定節点 %1 個。拘束は動かない方向です。").arg(project.result.roles.fix.size()));
    if (!records.empty()) {
        pages.add_table(
            text_table_beside({numbers("節点"), words("節点名"), words("拘束")}, records, beside));
    }
}

void add_loads(const Project& project, TablePrinter& pages) {
    constexpr size_t beside = 2;
    using Force = std::array<float, 3>;
    std::map<Force, int> groups;
    double total[3] = {};
    std::vector<Row> records;
    for (const ResultLoad& role : project.result.roles.load) {
        const Load& load = role.load;
        const Force force = {load.fx, load.fy, load.fz};
        ++groups[force];
        Row record = {QString::number(load.no), node_name(project, load.no)};
        for (size_t axis = 0; axis < force.size(); ++axis) {
            total[axis] += static_cast<double>(force[axis]);
            record.push_back(number(force[axis], 1));
        }
        records.push_back(record);
    }
    pages.add_heading("荷重");
    pages.add_text(QString("荷重節点 %1 個。合計 FX %2 kgf、FY %3 kgf、FZ %4 kgf。%5。")
                       .arg(project.result.roles.load.size())
                       .arg(total[0], 0, 'f', 1)
                       .arg(total[1], 0, 'f', 1)
                       .arg(total[2], 0, 'f', 1)
                       .arg(self_weight_sentence(project)));
    if (records.empty()) {
        return;
    }
    std::vector<Row> sorts;
    for (const auto& [force, count] : groups) {
        Row row = {QString::number(count)};
        for (const float each : force) {
            row.push_back(number(each, 1));
        }
        for (const float each : force) {
            row.push_back(number(static_cast<double>(each) * count, 1));
        }
        sorts.push_back(row);
    }
    pages.add_table(text_table({numbers("節点数"), numbers("FX (kgf)"), numbers("FY (kgf)"),
                                numbers("FZ (kgf)"), numbers("FX 計 (kgf)"), numbers("FY 計 (kgf)"),
                                numbers("FZ 計 (kgf)")},
                               std::move(sorts)));
    pages.add_table(text_table_beside({numbers("節点"), words("節点名"), numbers("FX (kgf)"),
                                       numbers("FY (kgf)"), numbers("FZ (kgf)")},
                                      records, beside));
}

void add_picture(Project& project, TablePrinter& pages, const QString& heading, int mode,
                 float scale, ResultAge age) {
    ResultView shown;
    shown.mode = mode;
    shown.area.xScreen = picture_size.width();
    shown.area.yScreen = picture_size.height();
    pages.add_heading(heading);
    if (!fit_result(project.result, shown)) {
        pages.add_text("この骨組は図に収まりません。");
        return;
    }
    pages.add_picture(picture_size, [shown, scale, age, &project](PainterCanvas& canvas) mutable {
        if (draw_result_picture(project.view, project.result, project.lettering, canvas, shown) <
            0) {
            return -1;
        }
        paint_legend(canvas, picture_size.width(), result_legend(project.result, shown, scale, age),
                     legend_scale);
        return 0;
    });
}

// The largest magnification at which the displacements stay a small part of the frame's size.
float displacement_scale(const Project& project) {
    constexpr double part = 0.05;
    const Bounds bounds = result_bounds(project);
    const double size = std::hypot(bounds.high[0] - bounds.low[0], bounds.high[1] - bounds.low[1],
                                   bounds.high[2] - bounds.low[2]);
    for (const float scale : {10.0f, 5.0f}) {
        if (scale * static_cast<double>(project.result.disp[0].mag) <= part * size) {
            return scale;
        }
    }
    return 1.0f;
}

void add_pictures(Project& project, TablePrinter& pages, ResultAge age) {
    add_picture(project, pages, "軸力図（太さ色分）", mode_width, 1.0f, age);
    const float scale = displacement_scale(project);
    if (get_new_beam(project.result, scale) < 0) {
        pages.add_heading("変位図");
        pages.add_text("部材の端の変位が見つからないため、変位図は作れません。");
        return;
    }
    add_picture(project, pages, QString("変位図（%1 倍）").arg(scale), mode_displaced, scale, age);
}

std::vector<int> first_rows(int rows) {
    std::vector<int> first(static_cast<size_t>(std::min(rows, largest_shown)));
    std::iota(first.begin(), first.end(), 0);
    return first;
}

void add_largest(const Project& project, TablePrinter& pages) {
    const ResultSheet members(project.result, member_table());
    pages.add_heading(QString("軸力の大きい部材（%1 本まで）").arg(largest_shown));
    pages.add_text("引張が正です。最大値比は、絶対値の最大の軸力に対する割合です。");
    pages.add_table(printed_rows(members, first_rows(members.rows()), leading_member_columns));

    const ResultSheet stresses(project.result, stress_table());
    const std::vector<double> largest = largest_magnitudes(
        project.result, stress_table(), all_rows(project.result, stress_table()));
    std::vector<Row> rows;
    for (int column = 0; column < stresses.columns(); ++column) {
        const ResultColumn& value = stresses.column(column);
        if (!(largest[static_cast<size_t>(column)] > 0.0)) {
            continue;
        }
        int row = 0;
        while (std::fabs(value.number(project.result, row)) <
               largest[static_cast<size_t>(column)]) {
            ++row;
        }
        rows.push_back({value.heading, qt_text(stresses.text(row, 1)),
                        qt_text(stresses.text(row, 2)), qt_text(stresses.text(row, 0)),
                        qt_text(stresses.text(row, column)) + " " + value.unit});
    }
    pages.add_heading("部材端の応力の最大（絶対値）");
    pages.add_table(text_table(
        {words("応力"), words("I 節点名"), words("J 節点名"), numbers("部材番号"), numbers("値")},
        std::move(rows)));

    const ResultSheet displacements(project.result, displacement_table());
    pages.add_heading(QString("変位の大きい節点（%1 個まで）").arg(largest_shown));
    pages.add_table(printed_rows(displacements, first_rows(displacements.rows())));
}

int read_source(Project& project, const ReportOptions& options, Source& source) {
    if (!options.input.empty()) {
        if (read_frame(project, options.input) < 0) {
            return -1;
        }
        source.input = qt_path(path_of(options.input).filename());
    }
    if (FrameSlv(project.model, project.result, project.work_dir) < 0) {
        return -1;
    }
    if (project.result.N_Stress == 0) {
        return refuse("計算結果に部材がありません");
    }
    if (!options.input.empty() && !results_fit(project.model, project.result)) {
        return refuse(text_format("%s: この計算結果の骨組ではありません", options.input.c_str()));
    }
    source.frame = read_solver_frame(project.work_dir);
    source.roles = project.result.roles.state == ResultRoles::State::read;
    if (!source.roles) {
        source.frame.reset();
    }
    source.age = result_age_of_frame(project.model, project.result);
    return 0;
}

} // namespace

int run_report(const ReportOptions& options) {
    Project project;
    if (ending_of(path_of(options.output)) != ".pdf") {
        show_message(text_format("%s: 報告書の形式は .pdf です", options.output.c_str()));
        return wrong_usage;
    }
    Source source;
    if (use_result_dir(project, options.dir) < 0 || read_source(project, options, source) < 0) {
        return -1;
    }
    if (QFontDatabase::families(QFontDatabase::Japanese).isEmpty()) {
        show_message("日本語のフォントがないため、報告書の文字が正しく出ません");
    }
    tell_result_age(project);
    const QString mark =
        source.age == ResultAge::current ? "" : "　" + qt_text(age_words(source.age));
    TablePrinter pages("構造解析報告書" + mark, qt_path(project.work_dir.filename()));
    add_summary(project, pages, source);
    add_timber(project, pages, source);
    if (source.roles) {
        add_supports(project, pages);
        add_loads(project, pages);
    } else {
        pages.add_heading("支点と荷重");
        pages.add_text("この結果の FRAMESLV.IN がフォルダにないため、支点と荷重は出せません。");
        pages.add_text(QString(self_weight_sentence(project)) + "。");
    }
    add_pictures(project, pages, source.age);
    add_largest(project, pages);
    return pages.save_pdf(path_of(options.output));
}

} // namespace kigumi
