// 部材データ: the lists, and the dialogs that change a section or a material.
#include "analysis/solver_input.h"
#include "model/members.h"
#include "model/sections.h"
#include "player.h"
#include "ui/data/record_grid.h"
#include "ui/data/section_forms.h"
#include "ui/data/sel_beam_form.h"

namespace kigumi::test {

namespace {

class MemberData : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        append_beam(model, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 300.0f}, 10.0f, 20.0f, kind_post, 2);
        append_beam(model, {0.0f, 0.0f, 300.0f}, {0.0f, 100.0f, 300.0f}, 12.0f, 12.0f, kind_frame,
                    2);
        append_beam(model, {0.0f, 100.0f, 0.0f}, {0.0f, 100.0f, 300.0f}, 10.0f, 20.0f, kind_post,
                    2);
        ASSERT_EQ(rebuild_tables(model), 0);
        project.stage = Stage::made;
        session.work.history.start(project);
    }
    static std::string cell(const QWidget& window, const char* grid, int row, int column) {
        return control<RecordGrid>(window, grid)->item(row, column)->text().toStdString();
    }
    std::string solver_input() {
        EXPECT_EQ(save_honegumi(model, work_file(work_dir, "member.bon")), 0);
        return *read_file(work_file(work_dir, "member.bon"));
    }
};

TEST_F(MemberData, ListsAndChangesWhatTheSolverGets) {
    TSelBeamForm window(session, nullptr);
    EXPECT_EQ(text_in(window, "ZenBeamEdit"), "3");
    EXPECT_EQ(text_in(window, "SizeEdit"), "2");
    EXPECT_EQ(cell(window, "ZenStringGrid", 2, 0), "     3");
    EXPECT_EQ(cell(window, "ZenStringGrid", 2, 3), "     1");
    EXPECT_EQ(cell(window, "SizeStringGrid", 0, 4), " 6.667e+03"); // 10·20³/12
    EXPECT_EQ(cell(window, "SizeStringGrid", 0, 6), " 4.580e+03"); // 0.229·20·10³
    const std::string before = solver_input();

    control<RecordGrid>(window, "SizeStringGrid")->choose(1);
    answer_next([](QDialog& form) {
        EXPECT_EQ(text_in(form, "SizeBangouEdit"), "2");
        type(form, "AtumiEdit", "24");
        type(form, "ColdEdit", "15");
        press(form, "OKButton");
    });
    press(window, "HabahenSpeedButton");
    EXPECT_EQ(cell(window, "SizeStringGrid", 1, 2), "    24.0");
    EXPECT_EQ(cell(window, "SizeStringGrid", 1, 6), " 9.497e+03"); // 0.229·24·12³
    EXPECT_EQ(cell(window, "SizeStringGrid", 1, 7), "    15.0");
    EXPECT_FLOAT_EQ(model.beam[1].atumi, 12.0f) << "the member keeps its own";
    EXPECT_EQ(session.work.history.undo_name(), "断面の変更");

    answer_next([](QDialog& form) {
        type(form, "YoungEdit", "70000");
        press(form, "OKButton");
    });
    press(window, "MathenSpeedButton");
    EXPECT_EQ(cell(window, "MatStringGrid", 0, 1), " 7.000e+04");
    EXPECT_NE(solver_input(), before);
    EXPECT_NE(solver_input().find("    1 7.000e+04"), std::string::npos);
}

TEST_F(MemberData, SectionDialogRefusesAndKnowsWhenNothingChanged) {
    THenSizeForm form(session, 0, nullptr);
    const float area = model.size.A[0];
    const std::pair<const char*, const char*> refused[] = {
        {"HabaEdit", "巾の値に誤りがあります"}, {"AtumiEdit", "厚みの値に誤りがあります"}};
    for (const auto& [box, message] : refused) {
        for (const char* typed : {"0", "-1", "1e20"}) {
            const std::string kept = text_in(form, box);
            type(form, box, typed);
            press(form, "OKButton");
            expect_message(message);
            type(form, box, kept.c_str());
        }
    }
    type(form, "ColdEdit", "あ");
    press(form, "OKButton");
    expect_message("Cold Angle: 「あ」は数値ではありません");
    type(form, "ColdEdit", "0.0");
    press(form, "OKButton");
    EXPECT_EQ(form.QDialog::result(), QDialog::Accepted);
    EXPECT_EQ(form.change(), Change::none);
    EXPECT_FLOAT_EQ(model.size.A[0], area);
}

TEST_F(MemberData, MaterialDialogNamesTheFirstWrongValue) {
    THenMatForm form(session, 1, nullptr);
    type(form, "YoungEdit", "0");
    type(form, "PoisonEdit", "-0.1");
    type(form, "MitudoEdit", "0");
    press(form, "OKButton");
    expect_message("ヤング率の値に誤りがあります");
    type(form, "YoungEdit", "1");
    press(form, "OKButton");
    expect_message("ポワソン比の値に誤りがあります");
    type(form, "PoisonEdit", "0.4");
    press(form, "OKButton");
    expect_message("質量密度の値に誤りがあります");
    EXPECT_FLOAT_EQ(model.mat.E[1], model.default_E) << "nothing was stored";
    form.reject();
    EXPECT_EQ(form.change(), Change::refused);
}

} // namespace

} // namespace kigumi::test
