// The basic data (基本データ): the handful of numbers from which a whole frame is generated.
#pragma once

#include <cstdint>
#include <string_view>

namespace kigumi {

// The basic data of one frame, which all generators read. Lengths are cm.
struct Param {
    std::int32_t NX = 8;     // X束数: cells along x
    std::int32_t NY = 8;     // Y束数: cells along y
    float TukaHaba = 90.0f;  // 束巾: cell pitch T
    float TukaAtumi = 45.0f; // 束高: floor depth D, bottom to top chord level
    float Hashira = 12.0f;   // 柱材巾: posts and columns, width and thickness
    float WakuHaba = 12.0f;  // 枠材巾: frame members
    float GenHaba = 10.0f;   // 弦材巾: chords
    float ShaHaba = 9.0f;    // 斜材巾: diagonals
    float Sujikai = 9.0f;    // 筋交巾: braces
    float Lowest = 50.0f;    // 最低レベル: bottom chord level, or column base with columns
    float HashiraHeight1 = 240.0f; // １層柱高
    float HashiraHeight2 = 240.0f; // ２層柱高
    float HashiraHeight3 = 240.0f; // ３層柱高
    float YaneHashira = 240.0f;    // 屋根柱高: roof posts
    float YaneTakasa = 180.0f;     // 屋根高さ: rise of the roof
    float Takasa = 95.0f;          // 高さ: computed overall height
    std::int32_t SumiType = 0;     // 柱有無: 0 no columns, 1 type I, 2 type II
    std::int32_t N_Sou = 0;        // 階層: storeys; 0 until chosen
    std::int32_t YaneMode = -1;    // 屋上形状: 0 nothing, 1 roof, -1 terrace (庇付)
    std::int32_t SouMode = 0;      // 1 when the floor stands on columns (set by the check)

    // Roof settings (屋根データ入力).
    std::int32_t YaneType = 1;     // 1 寄棟 hip, 2 切妻 gable
    float YaneHashiraHaba = 12.0f; // roof post thickness
    float KetaHaba = 12.0f;        // 屋根桁 girder, width
    float KetaAtumi = 18.0f;       //   and thickness
    float SumiGashoHaba = 12.0f;   // 隅合掌 hip rafter
    float SumiGashoAtumi = 18.0f;
    float HiraGashoHaba = 12.0f; // 平合掌 common rafter
    float HiraGashoAtumi = 18.0f;
    float HiuchiHaba = 12.0f; // 火打合掌 angle rafter
    float HiuchiAtumi = 18.0f;
    float MoyaHaba = 12.0f; // 母屋 purlin
    float MoyaAtumi = 12.0f;
};

// All parameters to their defaults; what the basic unit window does each time it is created.
void set_default_param(Param& param);

// The choices of the dialog's three radio groups, as item positions; -1 is no choice.
struct KihonChoice {
    int hashira = 0; // HashiraGroup: 0 柱なし, 1 タイプⅠ, 2 タイプⅡ
    int kaisou = -1; // KaisouGroup: storeys - 1
    int yane = -1;   // YaneGroup: 0 屋根庇無し, 1 屋根付, 2 庇付
};

// Item of YaneGroup for a YaneMode, and back.
int yane_choice(int yane_mode);
int yane_mode(int choice);

// What choosing an item of YaneGroup does to the parameters: the mode, the heights that a frame
// without a roof does not have, and the storeys that a roof closes off.
void apply_yane_choice(Param& param, int choice);

// The check of the basic data dialog, over the numbers that stand in `param`: sets SumiType,
// SouMode and Takasa. 0, or -1 after a message. Dimensions from which no frame can be made, and
// frames that would not fit the model's tables, are refused last.
int check_param(Param& param, const KihonChoice& choice);

// Number of members, nodes (at most) and grid levels that make_unit would make.
struct FrameSize {
    long long beams, nodes;
    long long levels_x, levels_y;
};
FrameSize predict_frame_size(const Param& param);

// Sets the parameter of this name (NX, TukaHaba, N_Sou, ...) from text.
enum class SetParam { done, unknown_name, not_a_number };
SetParam set_param(Param& param, std::string_view name, std::string_view value);

} // namespace kigumi
