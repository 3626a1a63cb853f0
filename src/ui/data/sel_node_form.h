// The supports and loads of the model (節点選択).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <functional>

class QBoxLayout;
class QLabel;
class QLineEdit;

namespace kigumi {
class RecordGrid;
}

// Lists all nodes, the restrained and the loaded ones, and adds, changes and removes supports and
// loads. Every change is in force at once: tables, node flags and, by changed(), the drawing.
class TSelNodeForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    TSelNodeForm(kigumi::Session& session, QWidget* parent);

  signals:
    void changed();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QBoxLayout* node_column();
    QBoxLayout* record_column();
    // Caption, count and buttons above a grid of "Fix" or "Load" records.
    QBoxLayout* record_head(const QString& caption, const QString& kind, kigumi::RecordGrid* grid);
    QBoxLayout* add_column();
    void fill_nodes();
    // Shows the two tables as they are now.
    void fill_records();
    // After a change, undo or redo.
    void note_change();
    // Edits supports or loads as a step of this name; false after a message.
    bool change_roles(const char* name, const std::function<int(kigumi::Model&)>& edit);

    void add_fix();
    void add_load();
    // `remove` asks for the removal of the record, else it is edited.
    void open_fix(int row, bool remove);
    void open_load(int row, bool remove);
    void search_id();

    kigumi::RecordGrid* nodes_;
    kigumi::RecordGrid* fixes_;
    kigumi::RecordGrid* loads_;
    QLineEdit* node_count_ = nullptr;
    QLineEdit* id_;
    QLabel* note_;
    std::int32_t edited_at_opening_;
    kigumi::Stage stage_at_opening_;
};
