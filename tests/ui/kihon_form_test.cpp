#include "model/model.h"
#include "ui/frame/kihon_form.h"
#include "ui/frame/yane_form.h"
#include "ui_support.h"

namespace kigumi::test {

namespace {

constexpr int none = -1;

class KihonForm : public UiTest {
  protected:
    static void choose(TKihonForm& form, int hashira, int kaisou, int yane) {
        for (const auto& [group, item] :
             {std::pair{"HashiraGroup", hashira}, {"KaisouGroup", kaisou}, {"YaneGroup", yane}}) {
            if (item != none) {
                click_item(form, group, item);
            }
        }
    }

    // Chooses the roof and ends its dialog.
    static void choose_roof(TKihonForm& form, std::function<void(QDialog&)> answer) {
        answer_next(std::move(answer));
        click_item(form, "YaneGroup", 1);
    }
};

TEST_F(KihonForm, OpensWithTheDefaults) {
    param.SouMode = 1;
    TKihonForm form(session);
    for (const auto& [box, text] : {std::pair{"XtukaEdit", "    8"},
                                    {"TukaHabaEdit", "    90.0"},
                                    {"SujiEdit", "     9.0"},
                                    {"LowestEdit", "     50.0"},
                                    {"No3HashiraHeightEdit", "    240.0"},
                                    {"YaneTakasaEdit", "    180.0"},
                                    {"TakasaEdit", ""}}) {
        EXPECT_EQ(text_in(form, box), text) << box;
    }
    EXPECT_FALSE(is_enabled(form, "YaneHashiraEdit"));
    EXPECT_FALSE(is_enabled(form, "YaneTakasaEdit"));
    EXPECT_EQ(item_of(form, "HashiraGroup"), 0);
    EXPECT_EQ(item_of(form, "KaisouGroup"), none);
    EXPECT_EQ(item_of(form, "YaneGroup"), none);
    EXPECT_EQ(param.SouMode, 0);
}

struct Refusal {
    int hashira, kaisou, yane; // items clicked
    const char* box;           // typed into, or null
    const char* text;
    const char* message;
};

// What each choice needs is tested with the settings; here is what the window makes of a refusal.
const Refusal refusals[] = {
    {1, 1, 2, "No2HashiraHeightEdit", "0", "柱高さを入力してください 02"},
    {0, none, 2, nullptr, nullptr, "柱なしが指定されている"},
    {0, 0, none, nullptr, nullptr, "屋根形状が指定されていない"},
    {0, 0, 0, "XtukaEdit", "8.5", "X束数: 「8.5」は数値ではありません"},
    {0, 0, 0, "TukaTakasaEdit", "", "束高: 「」は数値ではありません"},
    {1, 0, 0, "No1HashiraHeightEdit", "nan", "１層柱高: 「nan」は数値ではありません"}};

TEST_F(KihonForm, ARefusalKeepsTheDialogOpen) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.message);
        set_default_param(param);
        TKihonForm form(session);
        form.show();
        choose(form, refusal.hashira, refusal.kaisou, refusal.yane);
        if (refusal.box != nullptr) {
            type(form, refusal.box, refusal.text);
        }
        for (const char* button : {"CheckButton", "OKButton"}) {
            press(form, button);
            expect_message(refusal.message);
            EXPECT_TRUE(form.isVisible());
            EXPECT_EQ(text_in(form, "TakasaEdit"), "");
        }
    }
}

TEST_F(KihonForm, ShowsTheHeightAndCloses) {
    const struct {
        int hashira, kaisou, yane;
        const char* takasa;
        int sou_mode;
    } choices[] = {{0, 0, 0, "     95.0", 0}, {2, 1, 0, "    620.0", 1}, {1, 2, 2, "    905.0", 1}};
    for (const auto& [hashira, kaisou, yane, takasa, sou_mode] : choices) {
        set_default_param(param);
        TKihonForm form(session);
        form.show();
        choose(form, hashira, kaisou, yane);
        press(form, "CheckButton");
        EXPECT_EQ(text_in(form, "TakasaEdit"), takasa);
        EXPECT_TRUE(form.isVisible());
        press(form, "OKButton");
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(form.QDialog::result(), QDialog::Accepted);
        EXPECT_EQ(param.SouMode, sou_mode);
    }
}

TEST_F(KihonForm, OpensTheHeightsOfTheStoreysAndTakesThemIn) {
    TKihonForm form(session);
    type(form, "XtukaEdit", "１２");
    for (int item = 0; item < 3; ++item) {
        click_item(form, "KaisouGroup", item);
        EXPECT_EQ(param.N_Sou, item + 1);
        EXPECT_TRUE(is_enabled(form, "No1HashiraHeightEdit"));
        EXPECT_EQ(is_enabled(form, "No2HashiraHeightEdit"), item >= 1);
        EXPECT_EQ(is_enabled(form, "No3HashiraHeightEdit"), item >= 2);
    }
    choose(form, 1, 0, 2);
    EXPECT_EQ(text_in(form, "YaneTakasaEdit"), "      0.0");
    EXPECT_FALSE(is_enabled(form, "YaneTakasaEdit"));
    press(form, "OKButton");
    EXPECT_EQ(param.NX, 12) << "full-width digits are digits";
}

TEST_F(KihonForm, CancelRestoresTheDimensionsAndTheFirstMaterialOnly) {
    model.mat.E[0] = 70000.0f;
    model.mat.density[0] = 0.25f;
    TKihonForm form(session);
    choose(form, 1, 1, 2);
    for (const char* box :
         {"XtukaEdit", "YtukaEdit", "TukaHabaEdit", "TukaTakasaEdit", "HashiraEdit", "WakuEdit",
          "GenEdit", "ShaEdit", "SujiEdit", "LowestEdit", "No1HashiraHeightEdit"}) {
        type(form, box, "3");
    }
    press(form, "CheckButton");
    EXPECT_EQ(param.NX, 3);
    model.mat.E[0] = 1.0f;
    model.mat.density[0] = 1.0f;
    press(form, "CancelButton");
    EXPECT_EQ(form.QDialog::result(), QDialog::Rejected);
    const Param initial;
    EXPECT_EQ(param.NX, initial.NX);
    EXPECT_EQ(param.NY, initial.NY);
    for (float Param::*dimension :
         {&Param::TukaHaba, &Param::TukaAtumi, &Param::Hashira, &Param::WakuHaba, &Param::GenHaba,
          &Param::ShaHaba, &Param::Sujikai}) {
        EXPECT_FLOAT_EQ(param.*dimension, initial.*dimension);
    }
    EXPECT_FLOAT_EQ(model.mat.E[0], 70000.0f);
    EXPECT_FLOAT_EQ(model.mat.density[0], 0.25f);
    EXPECT_FLOAT_EQ(param.Lowest, 3.0f);
    EXPECT_FLOAT_EQ(param.HashiraHeight1, 3.0f);
    EXPECT_EQ(param.SumiType, 1);
    EXPECT_EQ(param.N_Sou, 2);
}

TEST_F(KihonForm, ARoofSetsItsHeightsAndClosesTheStoreysAbove) {
    for (const int storey : {0, 1}) {
        set_default_param(param);
        TKihonForm form(session);
        choose(form, 1, storey, none);
        choose_roof(form, [](QDialog& roof) {
            EXPECT_STREQ(roof.metaObject()->className(), "TYaneForm");
            EXPECT_EQ(label_text(roof, "HashiraTypeLabel"), "タイプⅠ");
            click_item(roof, "YaneTypeGroup", 1);
            type(roof, "YaneHashiraEdit", "60");
            type(roof, "YaneTakasaEdit", "150.5");
            type(roof, "MoyaAtumiEdit", "11");
            press(roof, "OKButton");
        });
        EXPECT_EQ(item_of(form, "YaneGroup"), 1);
        EXPECT_EQ(param.YaneMode, 1);
        EXPECT_EQ(param.YaneType, 2);
        EXPECT_FLOAT_EQ(param.MoyaAtumi, 11.0f);
        EXPECT_EQ(text_in(form, "YaneHashiraEdit"), "     60.0");
        EXPECT_EQ(text_in(form, "YaneTakasaEdit"), "    150.5");
        EXPECT_EQ(is_enabled(form, "No2HashiraHeightEdit"), storey == 1);
        EXPECT_EQ(text_in(form, "No2HashiraHeightEdit"), storey == 1 ? "    240.0" : "      0.0");
        EXPECT_FALSE(is_enabled(form, "No3HashiraHeightEdit"));
        EXPECT_EQ(text_in(form, "No3HashiraHeightEdit"), "      0.0");
        press(form, "OKButton");
        EXPECT_EQ(text_in(form, "TakasaEdit"), storey == 1 ? "    830.5" : "    545.5");
    }
}

TEST_F(KihonForm, ACancelledRoofLeavesNone) {
    TKihonForm form(session);
    choose(form, 1, 0, none);
    choose_roof(form, [](QDialog& roof) {
        type(roof, "KetaHabaEdit", "99");
        press(roof, "CancelButton");
    });
    EXPECT_EQ(item_of(form, "YaneGroup"), 0);
    EXPECT_EQ(param.YaneMode, 0);
    EXPECT_EQ(text_in(form, "YaneTakasaEdit"), "      0.0");
    EXPECT_FLOAT_EQ(param.KetaHaba, 12.0f);
}

class YaneForm : public UiTest {};

TEST_F(YaneForm, OffersHeightsWhereAnotherChoiceTookThemAway) {
    param.NX = 6;
    apply_yane_choice(param, 0);
    const TYaneForm offering(session);
    EXPECT_EQ(text_in(offering, "YaneHashiraEdit"), "240.0");
    EXPECT_EQ(text_in(offering, "YaneTakasaEdit"), "135.0");
    param.YaneMode = 1;
    param.YaneTakasa = 159.25f;
    TYaneForm chosen(session);
    EXPECT_EQ(text_in(chosen, "YaneHashiraEdit"), "0.0") << "a roof without posts is one";
    press(chosen, "OKButton");
    EXPECT_EQ(chosen.QDialog::result(), QDialog::Accepted);
    EXPECT_FLOAT_EQ(param.YaneTakasa, 159.25f);
}

TEST_F(YaneForm, RefusesSizesThatNoRoofHas) {
    const std::array<const char*, 3> sizes[] = {
        {"YaneHashiraEdit", "-1", "屋根柱高は 0 以上にしてください"},
        {"YaneTakasaEdit", "0", "屋根高さは 0 より大きくしてください"},
        {"SumiGashoAtumiEdit", "-18", "隅合掌の厚みは 0 より大きくしてください"},
        {"HiuchiHabaEdit", "x", "火打合掌の巾: 「x」は数値ではありません"},
    };
    for (const auto& [box, text, message] : sizes) {
        TYaneForm form(session);
        form.show();
        type(form, "YaneHashiraHabaEdit", "15");
        type(form, box, text);
        press(form, "OKButton");
        expect_message(message);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(control<QLineEdit>(form, box)->selectedText(), text);
        EXPECT_FLOAT_EQ(param.YaneHashiraHaba, 12.0f);
    }
}

} // namespace

} // namespace kigumi::test
