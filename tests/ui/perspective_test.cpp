#include "sight/perspective.h"

#include "generate/generate.h"
#include "model/members.h"
#include "model/sections.h"
#include "player.h"
#include "ui/frame/jiku_form.h"
#include "ui/picture/perspective_progress.h"

#include <QKeyEvent>
#include <QProgressDialog>
#include <QPushButton>
#include <QStatusBar>

namespace kigumi::test {

namespace {

using PerspectiveWindow = UiTest;

TEST_F(PerspectiveWindow, ShowsWhatTheEyeSeesAndFollowsTheDialog) {
    ASSERT_EQ(make_unit(model, param, solids), 0);
    rebuild_tables(model);
    TJikuForm window(session, nullptr);
    window.show();
    size_t lines[2] = {};
    const auto look = [&](size_t& count) {
        return [&] {
            count = window.picture().segments()->segments().size();
            return true;
        };
    };
    Player player;
    player.menu("TJikuForm", "JikuModelMenu")
        .close("TIsomeForm")
        .gone("TIsomeForm")
        .menu("TJikuForm", "SitenModelMenu")
        .with("TViewForm",
              [](QWidget& form) { control<QScrollBar>(form, "PhiScrollBar")->setValue(0); })
        .step("look", look(lines[0]))
        .click("TViewForm", "OKButton")
        .step("look", look(lines[1]))
        .click("TViewForm", "PersButton")
        .gone("TViewForm");
    player.play();
    // All but crumbs, from the default viewpoint and then from straight above.
    for (const int i : {0, 1}) {
        const ViewCoefficients v = view_coefficients(4000, 20, i == 0 ? 70 : 0);
        const size_t all = visible_segments(*saved_records(solids), v).size();
        EXPECT_LE(lines[i], all);
        EXPECT_GT(lines[i], all * 85 / 100);
    }
}

TEST_F(PerspectiveWindow, AFrameBehindTheEyeIsToldOnce) {
    append_beam(model, {5000.0f, 0.0f, 0.0f}, {5100.0f, 0.0f, 0.0f}, 10.0f, 10.0f, kind_none, 2);
    rebuild_tables(model);
    TJikuForm window(session, nullptr);
    window.show();
    const std::string summary = window.statusBar()->currentMessage().toStdString();
    view.Rho = 100.0;
    view.Theta = 0.0;
    view.Phi = 90.0;
    Player player;
    std::vector<std::string> said;
    for (const char* item :
         {"JikuModelMenu", "SitenModelMenu", "JikuModelMenu", "SitenModelMenu"}) {
        const bool axis = std::string(item) == "JikuModelMenu";
        const char* dialog = axis ? "TIsomeForm" : "TViewForm";
        player.menu("TJikuForm", item).close(dialog).gone(dialog).step("look", [&] {
            window.picture().grab();
            QApplication::processEvents();
            said.push_back(window.statusBar()->currentMessage().toStdString());
            return true;
        });
    }
    player.play();
    EXPECT_EQ(said,
              (std::vector<std::string>{summary, nothing_in_sight, summary, nothing_in_sight}));
    expect_message(nothing_in_sight);
    EXPECT_FALSE(window.picture().segments().has_value()) << "no drawing of nothing";
    expect_message(nothing_in_sight);
}

TEST_F(PerspectiveWindow, WorkIsStoppedFromItsBox) {
    param.NX = param.NY = 20; // enough work for the box to be drawn in the midst of it
    ASSERT_EQ(make_unit(model, param, solids), 0);
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    QString text;
    for (const bool by_key : {false, true}) {
        QTimer::singleShot(0, qApp, [&text, by_key] {
            auto* box = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            text = box->labelText();
            if (by_key) {
                QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                QApplication::sendEvent(box, &escape);
            } else {
                box->findChild<QPushButton*>()->click();
            }
        });
        EXPECT_EQ(prepare_perspective_shown(view, solids, perspective, work_dir, nullptr, 0),
                  perspective_stopped)
            << by_key;
        EXPECT_EQ(text, "隠れ線を処理しています");
    }
    EXPECT_EQ(prepare_perspective_shown(view, solids, perspective, work_dir, nullptr),
              perspective_ready);
}

} // namespace

} // namespace kigumi::test
