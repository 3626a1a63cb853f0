// The hand-drawn editor (手書入力編集).
#pragma once

#include "ui/frame/model_view.h"
#include "ui/kit/undo_menu.h"
#include "ui/sketch/sheet_widget.h"
#include "ui/sketch/tegaki_autosave.h"

#include <map>

class QLabel;

// Draws a frame on a flat sheet, gives its nodes their places and its members their sections, and
// keeps it in hand-drawn data files. Works on the nodes and members of the model; while the window
// is open their X, Y are sheet positions, or kept ones (save_old_node) while a view is shown. It
// leaves the drawing states in the node flags.
class TTegakiForm : public kigumi::ModelWindow {
    Q_OBJECT

  public:
    // Goes on with the sketch in the model, or starts with an empty sheet.
    TTegakiForm(kigumi::Session& session, QWidget* parent);

    kigumi::SheetWidget& sheet() { return *sheet_; }
    kigumi::TegakiAutosave& autosave() { return *autosave_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void add_file_menu();
    void add_edit_menu();
    void add_mode_menu();
    void add_shown_menu();
    void add_status();
    QAction* add_toggle(QMenu* menu, const char* name, const QString& caption, bool on,
                        void (kigumi::SheetWidget::*set)(bool));

    void new_sketch();
    void read_sketch();
    void load_sketch(const kigumi::fs::path& path);
    void restore_copy(const kigumi::fs::path& copy, kigumi::CopyLock lock);
    // Shows the sheet of the sketch in the model, which is another one than was shown.
    void show_read_sketch();
    bool save_sketch();
    int write_copy(const kigumi::fs::path& path);
    // Asks what becomes of a copy, unless a running program keeps it.
    void offer_restoring(const kigumi::fs::path& copy);
    // Asks about an unsaved sketch; false when the user wants to go on with it.
    bool may_lose(const QString& consequence);
    // The same on leaving, where it also tells what an unfinished sketch lacks.
    bool may_leave();
    void export_solids();

    void set_mode(kigumi::SheetMode mode);
    void take(kigumi::SheetOutcome outcome);
    void edit_node(int node);
    void edit_beam(int beam);
    void edit_all_nodes();
    // Before a step is taken back: shows the sheet; true when something half done was given up.
    bool give_up();
    // After it.
    void follow_step();

    void view_model(kigumi::ModelMode mode);
    void back_to_sheet();

    void show_state();
    void show_pointer();

    kigumi::SheetWidget* sheet_;
    kigumi::TegakiAutosave* autosave_;
    std::map<kigumi::SheetMode, QAction*> modes_;
    std::vector<QAction*> with_members_;  // open while there is a member
    QAction* wire_ = nullptr;             // open while every place is known
    std::vector<QAction*> when_complete_; // open while members are finished, too
    // Never behind the step with which the window was opened, which may be no sketch.
    kigumi::UndoActions* undo_;
    QLabel* mode_label_ = nullptr;
    QLabel* position_label_ = nullptr;
    QLabel* pointer_label_ = nullptr;
    QLabel* missing_label_ = nullptr;
    QLabel* file_label_ = nullptr;
};
