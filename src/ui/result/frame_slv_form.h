// The results window (計算結果表示).
#pragma once

#include "analysis/result_input.h"
#include "analysis/solver_run.h"
#include "results/force_picture.h"
#include "ui/picture/picture_window.h"
#include "ui/picture/table_printer.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

class QLabel;
class TMarukakuForm;

// Shows the result files of the working directory: forces by colour, width or band, the wire, the
// displaced shape, square and round bars; with labels and a legend. A click chooses members, which
// the lists beside the window (一覧) share. Made by reading the files: when that fails, its message
// stands in the status bar too, and nothing is shown or open but the way back. Results that are not
// of the model as it is are marked in the line of facts, the legend and the title of pictures.
class TFrameSlvForm : public kigumi::PictureWindow {
    Q_OBJECT

  public:
    // Without `whose` the results in memory are shown, and no file is read.
    explicit TFrameSlvForm(kigumi::Session& session, QWidget* parent = nullptr,
                           std::optional<kigumi::ResultsOf> whose = kigumi::ResultsOf::any_frame);
    ~TFrameSlvForm() override;

    // Results were read.
    bool valid() const { return valid_; }
    const kigumi::ResultView& shown() const { return shown_; }

  public slots:
    // Shows the selection of results as it now is.
    void show_selection();

  signals:
    // This window, or a list beside it, has changed the selection of results.
    void selection_changed();

  private:
    // An open list window and how it is told that the selection has changed.
    struct List {
        QWidget* window;
        std::function<void()> follow;
    };

    void take_results(std::optional<kigumi::ResultsOf> whose);
    // Reads the files; what was said of it.
    QStringList read_files(kigumi::ResultsOf whose);
    void add_file_menu();
    void add_view_menu();
    void add_mode_items(QMenu* menu);
    void add_heni_menu();
    void add_list_menu();
    // An item with a check mark while `checked` says so.
    QAction* add_checked_item(QMenu* menu, const char* name, const QString& caption,
                              Handler handler, std::function<bool()> checked);
    QAction* add_mode_item(QMenu* menu, const char* name, const QString& caption, Handler handler,
                           int mode);
    // Shows the list window of this class; it lives until it is closed.
    template <class Form> void open_list();
    // Shows a selection that `from` has changed, in all other windows.
    void spread_selection(const QWidget* from);

    // One drawing of the picture as shown. 0, or -1 after a message.
    int draw(kigumi::Canvas& canvas, kigumi::DrawArea& area);
    // The same with its legend, for this many pixels.
    kigumi::PictureFunction drawing(QSize size);
    kigumi::TablePrinter page();

    void set_mode(int mode);
    void show_displaced(float scale);
    // Tells the nodes whose displacements bear another name: in one box, the first time.
    void tell_other_names(const std::vector<kigumi::Fault>& messages);
    void ask_band();
    void turn();
    void ask_marukaku();
    // Turns to the bars built last. 0, or -1 after a message: the picture is then as before.
    int show_solids();
    // Finds what the eye sees of the bars, with its progress shown over `parent`. 0 or -1.
    int prepare_solids(QWidget* parent);
    void show_viewpoint();
    // Builds the bars of the selection or of all members. 0, or -1 after a message: bars that were
    // shown give way to 軸力表示 then.
    int build_solids(bool all_members);

    void save_list();
    void save_image();
    void pick(QPoint at, Qt::KeyboardModifiers keys);
    void tell_member(int row);
    // Check marks, open commands and the line of facts as the state is.
    void show_state();
    QString facts() const;
    // What the status bar says of a mode that has nothing to tell.
    QString folder_text() const;

    kigumi::ResultView shown_;
    bool valid_ = false;
    kigumi::ResultAge age_ = kigumi::ResultAge::current;
    bool legend_ = true;
    float scale_ = 1.0f;      // of the displaced shape
    bool bars_built_ = false; // the solids are bars of this window
    bool told_other_names_ = false;
    std::vector<QAction*> needs_results_;
    std::vector<std::pair<QAction*, std::function<bool()>>> checked_;
    QAction* turn_item_ = nullptr;
    QAction* clear_item_ = nullptr;
    std::vector<List> lists_;
    TMarukakuForm* marukaku_ = nullptr;
    QLabel* status_ = nullptr;
    QLabel* facts_ = nullptr;
};
