// The main window: the menu, the model's picture, and the order of the work.
#pragma once

#include "analysis/solver_run.h"
#include "draw/model_picture.h"
#include "ui/data/node_picking.h"
#include "ui/kit/command_flags.h"
#include "ui/picture/picture_window.h"

#include <vector>

class TMainForm : public kigumi::PictureWindow {
    Q_OBJECT

  public:
    // Starts the session: the trace log in its working directory, an empty model.
    explicit TMainForm(kigumi::Session& session);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void add_file_menu();
    void add_data_menu();
    void add_view_menu();
    void add_help();

    void new_model();
    void basic_data();
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
    void show_results(kigumi::ResultsOf whose);

    // What follows every command that makes a model.
    void check_model();
    void accept_model();
    void commit(const char* name);
    void set_stage(kigumi::Stage stage);
    void show_state();
    // Asks about unsaved work; false when the user wants to stay.
    bool may_leave();
    bool save_axis_data();
    // `letters`: it switches letters in the picture, and without a font stays off after a message.
    QAction* add_toggle(QMenu* menu, const char* name, const QString& caption, bool& flag,
                        bool letters = false);

    bool results_ = false; // results of an analysis are there to be saved
    kigumi::ModelLabels labels_;
    kigumi::NodePicking* picking_;
    // Menu items and submenus with the flag that opens them.
    std::vector<std::pair<QAction*, bool kigumi::CommandFlags::*>> opened_by_;
};
