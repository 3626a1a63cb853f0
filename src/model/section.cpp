#include "model/section.h"

#include "base/float.h"
#include "base/message.h"
#include "model/lookup.h"
#include "model/model.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

// Widths beyond it would overflow the properties, which grow with its fourth power, cm.
constexpr float largest_width = 1.0e6f;

Change refuse_value(const char* text) {
    show_message(text);
    return Change::refused;
}

bool is_width(float value) {
    return value > 0.0f && value <= largest_width;
}

} // namespace

Change change_section(int k, float haba, float atumi, float angle) {
    if (!is_width(haba)) {
        return refuse_value("巾の値に誤りがあります");
    }
    if (!is_width(atumi)) {
        return refuse_value("厚みの値に誤りがあります");
    }
    SizeTable& size = model.size;
    if (same_float(haba, size.haba[k]) && same_float(atumi, size.atumi[k]) &&
        same_float(angle, size.angle[k])) {
        return Change::none;
    }
    size.haba[k] = haba;
    size.atumi[k] = atumi;
    size.angle[k] = angle;
    compute_section(k);
    spy_now("再計算した");
    return Change::stored;
}

Change change_material(int k, float E, float poisson, float density) {
    if (!(E > 0.0f)) {
        return refuse_value("ヤング率の値に誤りがあります");
    }
    if (!(poisson > 0.0f)) {
        return refuse_value("ポワソン比の値に誤りがあります");
    }
    if (!(density > 0.0f)) {
        return refuse_value("質量密度の値に誤りがあります");
    }
    model.mat.E[k] = E;
    model.mat.poisson[k] = poisson;
    model.mat.density[k] = density;
    return Change::stored;
}

} // namespace kigumi
