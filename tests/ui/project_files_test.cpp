// The files of the work: opened, saved, asked about, and brought back after a crash.
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/sketch.h"
#include "player.h"
#include "project/project_file.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/settings.h"
#include "ui/kit/undo_menu.h"
#include "ui/main/main_form.h"

#include <QDropEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QUrl>

namespace kigumi::test {

namespace {

class ProjectFiles : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        while (std::optional<LeftCopy> left = find_left_copy(recovery_folder())) {
            remove_copy(left->copy);
        }
        for (const fs::path& file : recent_files()) {
            forget_recent(file);
        }
        window_ = std::make_unique<TMainForm>(session);
        window_->show();
    }
    void TearDown() override {
        window_->autosave().remove();
        window_.reset();
        UiTest::TearDown();
    }
    fs::path file(const char* name) { return work_file(work_dir, name); }
    QAction* action(const char* name) { return window_->findChild<QAction*>(name); }
    std::string title() { return window_->windowTitle().toStdString(); }
    // A one-storey frame as basic data makes it, as one step.
    void generate() {
        const auto make = [](Project& p) {
            set_default_param(p.param);
            apply_yane_choice(p.param, 2);
            p.generated = check_param(p.param, {1, 0, 2}) == 0;
            const bool made = p.generated && make_unit(p.model, p.param, p.solids) == 0 &&
                              rebuild_tables(p.model) == 0;
            p.stage = Stage::made;
            return made ? 0 : -1;
        };
        ASSERT_EQ(change(session, "骨組の生成", make), 0);
        clear_points(project.solids);
    }
    // One drawn member without its data.
    void sketch() {
        const auto draw = [](Project& p) {
            p.model.N_Node = 2;
            p.model.N_Beam = 1;
            p.model.node[0] = p.model.node[1] = {};
            p.model.beam[0] = {};
            p.model.node[0].no = p.model.beam[0].noi = 1;
            p.model.node[1].no = p.model.beam[0].noj = 2;
            p.model.node[0].flag = p.model.node[1].flag = p.model.beam[0].flag = 1;
            p.model.beam[0].no = 1;
            save_old_node(p.model, p.sketch_places);
            return 0;
        };
        ASSERT_EQ(change(session, "部材の作図", draw), 0);
    }
    int restrain(int node) {
        return change(session, "固定節点の指定", [node](Project& p) {
            pick_role(p.model, node, role_fixed);
            return 0;
        });
    }
    // Chooses the first of the recent files.
    void recent() {
        auto* menu = window_->findChild<QMenu*>("RecentMenu");
        emit menu->aboutToShow();
        menu->actions()[0]->trigger();
    }
    static void drop(QWidget& on, const fs::path& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.string()))});
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&on, &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&on, &drop);
    }

    std::unique_ptr<TMainForm> window_;
    Player player_;
};

TEST_F(ProjectFiles, SavedOpenedAndSavedAgainIsTheSame) {
    generate();
    EXPECT_EQ(title(), "名称未設定* - kigumi");
    restrain(0);
    player_.menu("TMainForm", "SaveProjectMenu").file(file("a.kigumi"));
    player_.step("saved", [this] { return title() == "a.kigumi - kigumi"; });
    player_.play();
    const std::string bytes = read_file(file("a.kigumi")).value_or("");
    restrain(1);
    EXPECT_EQ(title(), "a.kigumi* - kigumi");
    action("UndoMenu")->trigger();
    EXPECT_EQ(title(), "a.kigumi - kigumi") << "the saved state is known again";
    action("RedoMenu")->trigger();
    action("SaveProjectMenu")->trigger(); // where it was, without a dialog
    EXPECT_EQ(title(), "a.kigumi - kigumi");
    EXPECT_NE(read_file(file("a.kigumi")), bytes);
    const std::string second = project_text(project);

    action("SinkiMenu")->trigger();
    EXPECT_EQ(title(), "kigumi");
    EXPECT_FALSE(action("SaveProjectMenu")->isEnabled());
    Player again;
    again.menu("TMainForm", "OpenMenu").file(file("a.kigumi"));
    again.step("open", [this] { return title() == "a.kigumi - kigumi"; });
    again.menu("TMainForm", "SaveAsMenu").file(file("b.kigumi"));
    again.step("saved", [this] { return title() == "b.kigumi - kigumi"; });
    again.play();
    EXPECT_EQ(project_text(project), second);
    EXPECT_EQ(read_file(file("a.kigumi")), read_file(file("b.kigumi")));
    EXPECT_EQ(project.stage, Stage::made);
    EXPECT_TRUE(action("KousokuSetutenMenu")->isEnabled()) << "open as when it was saved";
    EXPECT_TRUE(action("KihonHenkouMenu")->isEnabled());
    EXPECT_FALSE(action("UndoMenu")->isEnabled());
    EXPECT_EQ(recent_files(), (std::vector{file("b.kigumi"), file("a.kigumi")}));
}

TEST_F(ProjectFiles, EveryWayOutAsksOnceAndCancellingKeepsTheWork) {
    generate();
    ASSERT_EQ(save_project(project, file("other.kigumi")), 0);
    note_recent(file("other.kigumi"));
    action("UndoMenu")->trigger();
    for (const bool finished : {false, true}) {
        finished ? generate() : sketch();
        const std::string before = project_text(project);
        const std::pair<const char*, std::function<void()>> ways[] = {
            {"new", [this] { action("SinkiMenu")->trigger(); }},
            {"basic data", [this] { action("KihonMenu")->trigger(); }},
            {"axis data", [this] { action("JikuDataReadMenu")->trigger(); }},
            {"recent", [this] { recent(); }},
            {"drop", [this] { drop(window_->picture(), file("other.kigumi")); }},
            {"exit", [this] { action("ExitMenu")->trigger(); }},
            {"close", [this] { window_->close(); }},
        };
        for (const auto& [name, leave] : ways) {
            SCOPED_TRACE(name);
            if (finished && (name == ways[1].first || name == ways[2].first)) {
                continue; // closed while there is a frame
            }
            int questions = 0;
            Player player;
            player.step("leave", [leave = leave] {
                QTimer::singleShot(0, qApp, leave);
                return true;
            });
            player.step("question", [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                questions += box != nullptr ? 1 : 0;
                return box != nullptr;
            });
            player.answer("キャンセル").gone("QMessageBox").play();
            EXPECT_EQ(questions, 1);
            EXPECT_TRUE(window_->isVisible());
            EXPECT_EQ(project_text(project), before);
        }
    }
    player_.step("open", [this] {
        QTimer::singleShot(0, qApp, [this] { drop(*window_, file("other.kigumi")); });
        return true;
    });
    player_.answer("保存する").file(file("kept.kigumi"));
    player_.step("opened", [this] { return title() == "other.kigumi - kigumi"; }).play();
    EXPECT_TRUE(fs::exists(file("kept.kigumi")));
    EXPECT_TRUE(window_->close()) << "opened and unchanged: no question";
}

TEST_F(ProjectFiles, AFileDroppedOnAWindowInFrontTakesItsPlace) {
    generate();
    ASSERT_EQ(save_jiku_data(model, file("a.jik"), {}), 0);
    restrain(0);
    ASSERT_EQ(save_project(project, file("b.kigumi")), 0);
    session.work.history.mark_saved();
    action("SinkiMenu")->trigger();
    player_.menu("TMainForm", "JikuDataReadMenu").file(file("a.jik"));
    player_.step("shown", [] {
        const QWidget* front = Player::shown("TJikuForm");
        return front != nullptr && label_text(*front, "FileLabel") == "a.jik";
    });
    player_.step("drop", [this] {
        drop(*Player::shown("TJikuForm"), file("b.kigumi"));
        return true;
    });
    player_.gone("TJikuForm");
    player_.step("opened", [this] { return title() == "b.kigumi - kigumi"; }).play();
    EXPECT_EQ(role_of(model, 0), role_fixed);
}

TEST_F(ProjectFiles, BrokenAndMissingFilesChangeNothing) {
    generate();
    session.work.history.mark_saved();
    const std::string before = project_text(project);
    for (const char* name : {"no.kigumi", "cut.kigumi", "bad.jik", "bad.tgk"}) {
        ASSERT_EQ(save_file(file(name), std::string_view(before).substr(0, before.size() / 2)), 0);
    }
    fs::remove(file("no.kigumi"));
    for (const char* name : {"no.kigumi", "cut.kigumi", "bad.jik", "bad.tgk"}) {
        window_->start(file(name));
        EXPECT_GE(take_messages().size(), 1u) << name;
        EXPECT_EQ(project_text(project), before) << name;
        EXPECT_EQ(title(), "名称未設定 - kigumi");
    }
    note_recent(file("no.kigumi"));
    recent();
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(std::ranges::count(recent_files(), file("no.kigumi")), 0);
}

TEST_F(ProjectFiles, BasicDataOfTheFrameAreChangedAndTakenBack) {
    generate();
    restrain(0);
    const std::string before = project_text(project);
    const int beams = model.N_Beam;
    player_.menu("TMainForm", "KihonHenkouMenu").with("TKihonForm", [this](QWidget& dialog) {
        EXPECT_EQ(text_in(dialog, "XtukaEdit"), text_format("%5d", param.NX));
        EXPECT_EQ(item_of(dialog, "YaneGroup"), 2);
        type(dialog, "XtukaEdit", "4");
    });
    player_.click("TKihonForm", "OKButton").gone("TKihonForm").play();
    take_messages(); // perhaps what could not be kept
    EXPECT_EQ(param.NX, 4);
    EXPECT_LT(model.N_Beam, beams);
    EXPECT_EQ(role_of(model, 0), role_fixed);
    action("UndoMenu")->trigger();
    EXPECT_EQ(project_text(project), before);
    Player again;
    again.menu("TMainForm", "KihonHenkouMenu").with("TKihonForm", [](QWidget& dialog) {
        click_item(dialog, "KaisouGroup", 2);
    });
    again.click("TKihonForm", "CancelButton").gone("TKihonForm").play();
    EXPECT_EQ(project_text(project), before) << "cancelling gives all back";
}

// Run as a program of its own by the test below, and killed.
TEST_F(ProjectFiles, DISABLED_Victim) {
    generate();
    restrain(3);
    window_->autosave().tick();
    std::printf("ready\n%s\n", project_text(project).c_str());
    std::fflush(stdout);
    QEventLoop().exec();
}

TEST_F(ProjectFiles, WorkOfAKilledProgramIsOffered) {
    static_assert(autosave_interval <= std::chrono::seconds(30));
    QProcess victim;
    victim.start(QApplication::applicationFilePath(),
                 {"--gtest_filter=*.DISABLED_Victim", "--gtest_also_run_disabled_tests"});
    QByteArray said;
    while (!said.contains("}\n") && victim.waitForReadyRead(60000)) {
        said += victim.readAllStandardOutput();
    }
    EXPECT_FALSE(find_left_copy(recovery_folder())) << "a running program keeps its copy";
    victim.kill();
    victim.waitForFinished();
    ASSERT_TRUE(find_left_copy(recovery_folder()))
        << said.toStdString() << victim.readAllStandardError().toStdString();
    for (const char* answer : {"あとで", "復元"}) {
        Player player;
        player.step("start", [this] {
            QTimer::singleShot(0, qApp, [this] { window_->start({}); });
            return true;
        });
        player.answer(answer).gone("QMessageBox").play();
    }
    EXPECT_EQ(title(), "名称未設定* - kigumi");
    EXPECT_TRUE(said.contains(QByteArray::fromStdString(project_text(project))));
    EXPECT_FALSE(find_left_copy(recovery_folder())) << "it is this program's";
    window_->autosave().remove();
    EXPECT_TRUE(fs::is_empty(recovery_folder()));
}

TEST_F(ProjectFiles, TheCopyFollowsTheWorkAndGoesWithTheQuestion) {
    const auto copies = [] {
        int count = 0;
        for (const auto& entry : fs::directory_iterator(recovery_folder())) {
            count += entry.path().extension() == ".kigumi" ? 1 : 0;
        }
        return count;
    };
    window_->autosave().tick();
    EXPECT_EQ(copies(), 0);
    sketch();
    window_->autosave().tick();
    EXPECT_EQ(copies(), 1);
    ASSERT_EQ(save_project(project, file("a.kigumi")), 0);
    session.work.history.mark_saved();
    window_->autosave().tick();
    EXPECT_EQ(copies(), 0) << "saved";
    action("UndoMenu")->trigger();
    sketch();
    window_->autosave().tick();
    EXPECT_EQ(copies(), 1);
    player_.close("TMainForm").answer("保存しない").gone("TMainForm").play();
    EXPECT_EQ(copies(), 0) << "given up";
}

#ifndef _WIN32
TEST_F(ProjectFiles, TheProgramWorksBesideItsFileButNotInTheHomeFolder) {
    generate();
    const fs::path folder = file("beside");
    fs::create_directory(folder);
    ASSERT_EQ(save_project(project, folder / "a.kigumi"), 0);
    struct Case {
        fs::path home, work;
    };
    const fs::path data = file("data");
    for (const Case& c : {Case{work_dir, folder}, Case{folder, data / "kigumi" / "work"}}) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", qt_path(c.home));
        environment.insert("XDG_DATA_HOME", qt_path(data));
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(qt_path(work_dir));
        fs::remove(work_file(work_dir, "SPY.TXT"));
        program.start(KIGUMI_PROGRAM, {qt_path(folder / "a.kigumi")});
        for (int i = 0; i < 300 && !fs::exists(c.work / "SPY.TXT"); ++i) {
            program.waitForFinished(100);
        }
        EXPECT_TRUE(fs::exists(c.work / "SPY.TXT"));
        EXPECT_FALSE(fs::exists(work_file(work_dir, "SPY.TXT")));
        program.kill();
        program.waitForFinished();
        fs::remove(folder / "SPY.TXT");
    }
}
#endif

} // namespace

} // namespace kigumi::test
