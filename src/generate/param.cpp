#include "generate/param.h"

#include "base/format.h"
#include "base/message.h"
#include "base/scan.h"
#include "generate/generate.h"
#include "generate/roof.h"
#include "model/model.h"

#include <algorithm>
#include <cmath>

namespace kigumi {

void set_default_param(Param& param) {
    param = Param{};
}

int yane_choice(int yane_mode) {
    return yane_mode == -1 ? 2 : yane_mode;
}

int yane_mode(int choice) {
    return choice == 2 ? -1 : choice;
}

void apply_yane_choice(Param& param, int choice) {
    param.YaneMode = yane_mode(choice);
    if (choice != 1) {
        param.YaneHashira = 0.0f;
        param.YaneTakasa = 0.0f;
        return;
    }
    if (param.N_Sou == 1) {
        param.HashiraHeight2 = 0.0f;
    }
    param.HashiraHeight3 = 0.0f;
}

namespace {

// Overall height by storeys and what stands on top, cm. False when the choice leaves it as it was.
bool overall_height(const Param& param, const KihonChoice& choice, float& height) {
    const double L = param.Lowest;
    const double D = param.TukaAtumi;
    const double one = L + param.HashiraHeight1 + D;
    const double two = one + param.HashiraHeight2 + D;
    const double three = two + param.HashiraHeight3 + D;
    const bool roofed = choice.yane == 1;
    if (param.SouMode == 0 && !roofed) {
        height = static_cast<float>(L + D);
        return true;
    }
    if (roofed && choice.kaisou != 0 && choice.kaisou != 1) {
        return false;
    }
    const double floors = choice.kaisou == 0 ? one : choice.kaisou == 1 ? two : three;
    const double roof = roofed ? static_cast<double>(param.YaneHashira) + param.YaneTakasa : 0.0;
    height = static_cast<float>(floors + roof);
    return true;
}

// Files keep six decimals, and single precision seven digits: shorter lengths and farther places
// would come back as others.
constexpr float shortest_length = 0.001f; // cm
constexpr float farthest_place = 1.0e7f;  // cm

// Numbers from which no frame of any sense comes, whatever the choices.
int check_dimensions(const Param& param) {
    if (param.NX < 1 || param.NY < 1) {
        return refuse("束数は 1 以上にしてください");
    }
    struct Length {
        const char* label;
        float value;
    };
    const Length lengths[] = {
        {"束巾", param.TukaHaba},   {"束高", param.TukaAtumi}, {"柱材巾", param.Hashira},
        {"枠材巾", param.WakuHaba}, {"弦材巾", param.GenHaba}, {"斜材巾", param.ShaHaba},
        {"筋交巾", param.Sujikai},
    };
    for (const Length& length : lengths) {
        if (!(length.value > 0.0f)) {
            return refuse(text_format("%sは 0 より大きくしてください", length.label).c_str());
        }
        if (!(length.value >= shortest_length && length.value <= farthest_place)) {
            return refuse(text_format("%sが大きすぎるか小さすぎます", length.label).c_str());
        }
    }
    return 0;
}

// True when levels and half pitches stay apart as they are stored.
bool places_stay_apart(const Param& param, int storeys) {
    const int last = 2 * std::max(param.NX, param.NY) + 1; // with the eave tip
    if (!(half_pitch(param, 1) >= shortest_length && half_pitch(param, last) <= farthest_place)) {
        return false;
    }
    for (int storey = 1; storey <= storeys; ++storey) {
        for (int level = param.SouMode == 1 ? 1 : 5; level < levels_a_storey; ++level) {
            const float z = storey_level(param, storey, level);
            if (!(z - storey_level(param, storey, level - 1) >= shortest_length &&
                  std::fabs(z) <= farthest_place)) {
                return false;
            }
        }
    }
    return true;
}

int check_places(const Param& param) {
    const int storeys =
        param.SouMode == 1 && (param.N_Sou == 2 || param.N_Sou == 3) ? param.N_Sou : 1;
    if (!places_stay_apart(param, storeys)) {
        return refuse("寸法が大きすぎるか小さすぎるため、節点の位置を区別できません");
    }
    return 0;
}

// A frame larger than the model's tables is refused before anything is made.
int check_capacity(const Param& param) {
    const FrameSize size = predict_frame_size(param);
    if (size.levels_x > level_capacity || size.levels_y > level_capacity) {
        return refuse(text_format("座標の種類が多すぎます（X %lld、Y %lld、それぞれ最大 %d）",
                                  size.levels_x, size.levels_y, level_capacity)
                          .c_str());
    }
    if (size.beams > beam_capacity) {
        return refuse(
            text_format("部材が多すぎます（%lld 本、最大 %d 本）", size.beams, beam_capacity)
                .c_str());
    }
    if (size.nodes > node_capacity) {
        return refuse(
            text_format("節点が多すぎます（%lld 個、最大 %d 個）", size.nodes, node_capacity)
                .c_str());
    }
    return 0;
}

} // namespace

int check_param(Param& param, const KihonChoice& choice) {
    if (choice.hashira >= 1) {
        const int storeys = choice.kaisou + 1;
        if (!(param.HashiraHeight1 > 0.0f)) {
            return refuse("柱高さを入力してください 01");
        }
        if (storeys == 2 && !(param.HashiraHeight2 > 0.0f)) {
            return refuse("柱高さを入力してください 02");
        }
        if (storeys == 3 && !(param.HashiraHeight3 > 0.0f)) {
            return refuse("柱高さを入力してください 03");
        }
        param.SumiType = choice.hashira;
        param.SouMode = 1;
    } else {
        if (choice.yane >= 1 || choice.kaisou >= 1) {
            return refuse("柱なしが指定されている");
        }
        param.SouMode = 0;
    }
    if (choice.yane < 0) {
        return refuse("屋根形状が指定されていない");
    }
    float height = 0.0f;
    if (overall_height(param, choice, height)) {
        param.Takasa = height;
    }
    if (check_dimensions(param) < 0 || check_capacity(param) < 0 || check_places(param) < 0) {
        return -1;
    }
    const bool roof_is_built = choice.yane == 1 && (choice.kaisou == 0 || choice.kaisou == 1);
    if (const char* fault = roof_is_built ? find_roof_fault(param) : nullptr) {
        return refuse(fault);
    }
    return 0;
}

FrameSize predict_frame_size(const Param& param) {
    // Far beyond every table, and small enough to be multiplied.
    constexpr std::int32_t most_cells = 1'000'000;
    const long long nx = std::min(param.NX, most_cells);
    const long long ny = std::min(param.NY, most_cells);
    const long long frame = 8 * (nx + ny);
    const long long chords = nx * (ny + 1) + ny * (nx + 1) + (nx - 1) * ny + (ny - 1) * nx;
    long long storey = 4 + frame + chords + 4 * nx * ny + frame - 4;
    // Perimeter nodes of both levels, interior nodes of both grids.
    long long storey_nodes = 8 * (nx + ny) + nx * ny + (nx - 1) * (ny - 1);
    FrameSize size{};
    size.levels_x = 2LL * param.NX + 1;
    size.levels_y = 2LL * param.NY + 1;
    if (param.SouMode == 0) {
        size.beams = storey;
        size.nodes = storey_nodes;
        return size;
    }
    const long long columns = param.SumiType == 1 ? 24 + 8 + 64 : 24 + 16 + 32;
    storey += columns;
    storey_nodes += columns;
    const long long storeys = param.N_Sou == 2 || param.N_Sou == 3 ? param.N_Sou : 1;
    size.beams = storey * storeys;
    size.nodes = storey_nodes * storeys;
    if (param.YaneMode == -1) {
        size.beams += 2 * (nx + ny) + 4 * (nx + 1) + 4 * ny + 2 * (nx + ny + 2);
        size.nodes += 2 * (nx + ny + 2);
        size.levels_x += 2;
        size.levels_y += 2;
    } else if (param.YaneMode == 1 && storeys < 3) {
        const long long roof = predict_roof_beams(param);
        size.beams += roof;
        size.nodes += roof;
    }
    return size;
}

namespace {

struct IntField {
    const char* name;
    std::int32_t Param::*field;
};
struct FloatField {
    const char* name;
    float Param::*field;
};

constexpr IntField int_fields[] = {
    {"NX", &Param::NX},
    {"NY", &Param::NY},
    {"SumiType", &Param::SumiType},
    {"N_Sou", &Param::N_Sou},
    {"YaneMode", &Param::YaneMode},
    {"YaneType", &Param::YaneType},
};

constexpr FloatField float_fields[] = {
    {"TukaHaba", &Param::TukaHaba},
    {"TukaAtumi", &Param::TukaAtumi},
    {"Hashira", &Param::Hashira},
    {"WakuHaba", &Param::WakuHaba},
    {"GenHaba", &Param::GenHaba},
    {"ShaHaba", &Param::ShaHaba},
    {"Sujikai", &Param::Sujikai},
    {"Lowest", &Param::Lowest},
    {"HashiraHeight1", &Param::HashiraHeight1},
    {"HashiraHeight2", &Param::HashiraHeight2},
    {"HashiraHeight3", &Param::HashiraHeight3},
    {"YaneHashira", &Param::YaneHashira},
    {"YaneTakasa", &Param::YaneTakasa},
    {"YaneHashiraHaba", &Param::YaneHashiraHaba},
    {"KetaHaba", &Param::KetaHaba},
    {"KetaAtumi", &Param::KetaAtumi},
    {"SumiGashoHaba", &Param::SumiGashoHaba},
    {"SumiGashoAtumi", &Param::SumiGashoAtumi},
    {"HiraGashoHaba", &Param::HiraGashoHaba},
    {"HiraGashoAtumi", &Param::HiraGashoAtumi},
    {"HiuchiHaba", &Param::HiuchiHaba},
    {"HiuchiAtumi", &Param::HiuchiAtumi},
    {"MoyaHaba", &Param::MoyaHaba},
    {"MoyaAtumi", &Param::MoyaAtumi},
};

} // namespace

SetParam set_param(Param& param, std::string_view name, std::string_view value) {
    for (const IntField& field : int_fields) {
        if (name == field.name) {
            return parse_number(value, param.*field.field) ? SetParam::done
                                                           : SetParam::not_a_number;
        }
    }
    for (const FloatField& field : float_fields) {
        if (name == field.name) {
            return parse_number(value, param.*field.field) ? SetParam::done
                                                           : SetParam::not_a_number;
        }
    }
    return SetParam::unknown_name;
}

} // namespace kigumi
