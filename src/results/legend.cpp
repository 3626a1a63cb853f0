#include "results/legend.h"

#include "base/format.h"
#include "results/force_picture.h"

namespace kigumi {

namespace {

using Lines = std::vector<LegendLine>;

// The members of the largest tension and the largest compression; null where there is none. The
// table is descending by percent, so the first of each sign is the largest.
struct Extremes {
    const Stress* tension = nullptr;
    const Stress* compression = nullptr;
};

Extremes extremes(const Result& result) {
    Extremes found;
    for (int i = result.N_Stress - 1; i >= 0; --i) {
        const Stress& s = result.stress[i];
        if (s.force > 0.0f) {
            found.tension = &s;
        } else if (s.force < 0.0f) {
            found.compression = &s;
        }
    }
    return found;
}

void add_extreme(Lines& lines, const char* sign, const Stress* s) {
    lines.push_back({-1, 1,
                     s == nullptr
                         ? text_format("最大%s　なし", sign)
                         : text_format("最大%s　%.1f kgf（部材 %d）", sign, s->force, s->no)});
}

void add_extremes(const Result& result, Lines& lines) {
    const Extremes found = extremes(result);
    add_extreme(lines, "引張", found.tension);
    add_extreme(lines, "圧縮", found.compression);
}

void add_signs(Lines& lines, int width, const char* tension, const char* compression) {
    lines.push_back({colour_red, width, tension});
    lines.push_back({colour_blue, width, compression});
}

// `others_shown`: the members outside the selection are in the picture, too.
void add_selection(const Result& result, Lines& lines, bool others_shown = true) {
    if (result.Nken_Stress > 0) {
        if (others_shown) {
            lines.push_back({colour_silver, 1, "選択していない部材"});
        }
        lines.push_back(
            {-1, 1,
             text_format("選択した部材　%d 本 / %d 本", result.Nken_Stress, result.N_Stress)});
    }
}

void add_axes(Lines& lines) {
    lines.push_back({colour_black, 1, "部材"});
    lines.push_back({colour_blue, 1, "X 軸（100 cm）"});
    lines.push_back({colour_green, 1, "Y 軸（100 cm）"});
    lines.push_back({colour_red, 1, "Z 軸（100 cm）"});
}

void add_displacements(const Result& result, Lines& lines, float scale) {
    lines.push_back({colour_black, 1, "変位前"});
    lines.push_back({colour_red, 1, text_format("変位後（変位 %g 倍）", scale)});
    if (result.N_Setuten > 0) {
        const Disp& largest = result.disp[0];
        lines.push_back(
            {-1, 1, text_format("最大変位　%.3f cm（節点 %s）", largest.mag, largest.name)});
    }
}

Lines picture_legend(const Result& result, const ResultView& shown, float scale) {
    constexpr int wide = 5; // sample of a large force
    Lines lines;
    switch (shown.mode) {
    case mode_wire:
        add_axes(lines);
        add_selection(result, lines);
        break;
    case mode_sign:
        add_signs(lines, 1, "引張（＋）", "圧縮（－）、軸力 0");
        add_extremes(result, lines);
        add_selection(result, lines);
        break;
    case mode_band:
        add_signs(lines, 1, "引張（＋）", "圧縮（－）、軸力 0");
        lines.push_back({colour_black, 1, "範囲の外"});
        lines.push_back({-1, 1,
                         text_format("範囲　最大軸力 %.1f kgf の %g～%g ％", result.force_max,
                                     shown.lower, shown.upper)});
        add_extremes(result, lines);
        add_selection(result, lines);
        break;
    case mode_width:
        add_signs(lines, wide, "引張（＋）", "圧縮（－）");
        lines.push_back({colour_black, 1, "最大軸力の 10 ％未満"});
        lines.push_back({-1, 1, "太さ　10 ％ごとに 1 ピクセル"});
        add_extremes(result, lines);
        add_selection(result, lines);
        break;
    case mode_solids:
        add_signs(lines, wide, "丸　引張（＋）", "角　圧縮（－）、1 ％以下の引張は赤い角");
        lines.push_back(
            {-1, 1, text_format("断面積　1 cm² が最大軸力 %.1f kgf の 1 ％", result.force_max)});
        add_extremes(result, lines);
        add_selection(result, lines, shown.all_bars);
        break;
    case mode_displaced:
        add_displacements(result, lines, scale);
        add_selection(result, lines);
        break;
    default:
        break;
    }
    return lines;
}

std::string picture_title(const ResultView& shown, float scale) {
    switch (shown.mode) {
    case mode_wire:
        return "ワイヤモデル";
    case mode_sign:
        return "軸力表示";
    case mode_band:
        return text_format("軸力表示（%g～%g ％）", shown.lower, shown.upper);
    case mode_width:
        return "太さ色分";
    case mode_solids:
        return "角丸表示";
    case mode_displaced:
        return text_format("変位%g倍", scale);
    default:
        return {};
    }
}

} // namespace

std::vector<LegendLine> result_legend(const Result& result, const ResultView& shown, float scale,
                                      ResultAge age) {
    Lines lines = picture_legend(result, shown, scale);
    if (!lines.empty() && age != ResultAge::current) {
        lines.insert(lines.begin(), {-1, 1, age_words(age)});
    }
    return lines;
}

std::string result_title(const ResultView& shown, float scale, ResultAge age) {
    const std::string title = picture_title(shown, scale);
    return age == ResultAge::current ? title : title + "　" + age_words(age);
}

} // namespace kigumi
