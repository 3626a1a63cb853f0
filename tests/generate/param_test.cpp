// The check of the basic data.
#include "generate/param.h"

#include "support.h"

namespace kigumi {
namespace {

// Settings over the defaults, a choice, and what the check answers: a message, or a height.
struct Case {
    const char* name;
    KihonChoice choice;
    std::vector<std::pair<const char*, const char*>> settings;
    const char* message; // null when the check succeeds
    float takasa = 0.0f;
};

using Settings = test::CoreTest;

constexpr const char* bad_section = "屋根部材の巾・厚みは 0 より大きくしてください";
constexpr const char* bad_places = "寸法が大きすぎるか小さすぎるため、節点の位置を区別できません";
constexpr const char* too_wide = "座標の種類が多すぎます（X 101、Y 17、それぞれ最大 100）";
constexpr const char* too_deep = "座標の種類が多すぎます（X 19、Y 101、それぞれ最大 100）";
constexpr const char* too_many = "部材が多すぎます（11808 本、最大 10000 本）";

const Case cases[] = {
    {"floor", {0, 0, 0}, {}, nullptr, 95.0f},
    {"no_top_chosen", {0, -1, -1}, {}, "屋根形状が指定されていない"},
    {"floor_with_storeys", {0, 1, 0}, {}, "柱なしが指定されている"},
    {"floor_with_roof", {0, 0, 1}, {}, "柱なしが指定されている"},
    {"one_storey", {1, 0, 0}, {}, nullptr, 335.0f},
    {"two_storeys", {2, 1, 2}, {{"HashiraHeight2", "250.5"}}, nullptr, 630.5f},
    {"three_storeys", {1, 2, 2}, {}, nullptr, 905.0f},
    {"no_height_1", {1, 0, 0}, {{"HashiraHeight1", "0"}}, "柱高さを入力してください 01"},
    {"no_height_2", {1, 1, 0}, {{"HashiraHeight2", "0"}}, "柱高さを入力してください 02"},
    {"no_height_3", {1, 2, 0}, {{"HashiraHeight3", "-1"}}, "柱高さを入力してください 03"},
    {"height_2_not_needed", {1, 0, 0}, {{"HashiraHeight2", "0"}}, nullptr, 335.0f},
    {"roof_on_one", {1, 0, 1}, {}, nullptr, 755.0f},
    {"roof_on_three", {1, 2, 1}, {}, nullptr, 95.0f},
    {"roof_type", {1, 0, 1}, {{"YaneType", "3"}}, "屋根形式は 1（寄棟）か 2（切妻）にしてください"},
    {"roof_rise", {1, 0, 1}, {{"YaneTakasa", "0"}}, "屋根高さは 0 より大きくしてください"},
    {"roof_post", {1, 1, 1}, {{"YaneHashira", "-1"}}, "屋根柱高は 0 以上にしてください"},
    {"roof_section", {2, 0, 1}, {{"MoyaHaba", "0"}}, bad_section},
    {"roof_section_not_needed", {2, 0, 0}, {{"MoyaHaba", "0"}}, nullptr, 335.0f},
    {"no_cells", {0, 0, 0}, {{"NX", "0"}}, "束数は 1 以上にしてください"},
    {"negative_depth", {0, 0, 0}, {{"TukaAtumi", "-45"}}, "束高は 0 より大きくしてください"},
    {"tiny_pitch", {0, 0, 0}, {{"TukaHaba", "1e-45"}}, "束巾が大きすぎるか小さすぎます"},
    {"level_without_decimals", {0, 0, 0}, {{"Lowest", "1e9"}}, bad_places},
    {"widest", {0, 0, 0}, {{"NX", "49"}}, nullptr, 95.0f},
    {"too_wide", {0, 0, 0}, {{"NX", "50"}}, too_wide},
    {"too_wide_for_eaves", {1, 0, 2}, {{"NY", "49"}}, too_deep},
    {"too_many_members", {1, 2, 0}, {{"NX", "20"}, {"NY", "20"}}, too_many},
};

TEST_F(Settings, AreAcceptedOrSaidToBeWrong) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        set_default_param(param);
        param.N_Sou = c.choice.kaisou + 1;
        param.YaneMode = yane_mode(c.choice.yane);
        for (const auto& [name, value] : c.settings) {
            ASSERT_EQ(set_param(param, name, value), SetParam::done) << name;
        }
        EXPECT_EQ(check_param(param, c.choice), c.message == nullptr ? 0 : -1);
        const std::vector<std::string> told = take_messages();
        if (c.message != nullptr) {
            EXPECT_EQ(told, std::vector<std::string>{c.message});
            continue;
        }
        EXPECT_TRUE(told.empty());
        EXPECT_FLOAT_EQ(param.Takasa, c.takasa);
        EXPECT_EQ(param.SouMode, c.choice.hashira >= 1 ? 1 : 0);
        EXPECT_EQ(param.SumiType, c.choice.hashira);
    }
}

TEST_F(Settings, TopChoicesCloseOffHeights) {
    param.N_Sou = 1;
    apply_yane_choice(param, 1);
    EXPECT_EQ(param.YaneMode, 1);
    EXPECT_FLOAT_EQ(param.HashiraHeight2 + param.HashiraHeight3, 0.0f);
    EXPECT_FLOAT_EQ(param.YaneTakasa, 180.0f);
    set_default_param(param);
    param.N_Sou = 2;
    apply_yane_choice(param, 1);
    EXPECT_FLOAT_EQ(param.HashiraHeight2, 240.0f);
    EXPECT_FLOAT_EQ(param.HashiraHeight3, 0.0f);
    apply_yane_choice(param, 2);
    EXPECT_EQ(param.YaneMode, -1);
    EXPECT_FLOAT_EQ(param.YaneHashira + param.YaneTakasa, 0.0f);
    EXPECT_EQ(yane_choice(param.YaneMode), 2);
}

} // namespace
} // namespace kigumi
