// The main window: the menu, the model's picture, and the order of the work.
#pragma once

#include "analysis/solver_run.h"
#include "draw/model_picture.h"
#include "trace/spy.h"
#include "ui/data/node_picking.h"
#include "ui/kit/autosave.h"
#include "ui/kit/command_flags.h"
#include "ui/kit/folder_lock.h"
#include "ui/picture/picture_window.h"

#include <memory>
#include <optional>
#include <vector>

class QSessionManager;

class TMainForm : public kigumi::PictureWindow {
    Q_OBJECT

  public:
    // Starts the session: the trace log in its working directory, an empty model.
    explicit TMainForm(kigumi::Session& session);

    // The first command of a program with windows: offers what a killed one left, then opens the
    // file, where there is one.
    void start(const kigumi::fs::path& file);
    kigumi::Autosave& autosave() { return *autosave_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void add_file_menu();
    void add_edit_menu();
    void add_data_menu();
    void add_view_menu();
    void add_help();

    void new_model();
    void basic_data();
    void change_basic_data();
    void draw_by_hand();
    void read_axis_data();
    void member_data();
    // The saving of solver input; false when it was cancelled or failed.
    bool save_solver_input();
    bool save_textbook_input();
    // 節点データ入力: ends picking and opens the supports and loads.
    void support_and_load_data();
    void save_result_files();
    void analyse();
    // Without `whose` the results in memory.
    void show_results(std::optional<kigumi::ResultsOf> whose);

    // What follows every command that makes a model.
    void check_model();
    // Opens the commands of the stage that the work has come to, and shows the model.
    void follow();
    void show_state();

    // 開く, 最近使ったファイル, 保存, 名前を付けて保存.
    void add_project_items(QMenu* file);
    void list_recent(QMenu* menu);
    void remember(const kigumi::fs::path& file);
    void open_recent(const kigumi::fs::path& file);
    void ask_open();
    // Opens a file in place of the work, after the question; of a sketch the editor, too.
    void open_file(const kigumi::fs::path& path);
    // The same without the question. False after a message: the work is as it was.
    bool load_file(const kigumi::fs::path& path);
    bool replace_work(const kigumi::fs::path& path,
                      const std::function<int(kigumi::Project&)>& load);
    // The project as it stands is the beginning of work of this file, and nothing to save.
    void start_work(const kigumi::fs::path& file);
    // Save the project; false when that was cancelled or failed.
    bool save_work();
    bool save_work_as();
    bool save_to(const kigumi::fs::path& path);
    // Asks about unsaved work, over this window; false when the user wants to stay.
    bool may_leave(QWidget* over);
    void open_dropped(const kigumi::fs::path& path);
    // Shows a window of the work until it is closed, be it for a file that was dropped there.
    void run(kigumi::PictureWindow& window);
    // Asks about work that a program left which was killed; true when it was restored.
    bool offer_left_copy();
    void end_session(QSessionManager& manager);

    // `letters`: it switches letters in the picture, and without a font stays off after a message.
    QAction* add_toggle(QMenu* menu, const char* name, const QString& caption, bool& flag,
                        bool letters = false);

    std::optional<kigumi::SpyLog> log_;
    std::unique_ptr<kigumi::FolderLock> lock_;
    bool results_ = false; // results of an analysis are there to be saved
    kigumi::ModelLabels labels_;
    kigumi::NodePicking* picking_;
    kigumi::Autosave* autosave_;
    QMenu* recent_ = nullptr;
    kigumi::fs::path dropped_; // to be opened once the window in front has gone
    // Menu items and submenus with the flag that opens them.
    std::vector<std::pair<QAction*, bool kigumi::CommandFlags::*>> opened_by_;
};
