// The supports and loads of the model (節点選択).
#pragma once

#include <QDialog>

class QBoxLayout;
class QLabel;
class QLineEdit;

namespace kigumi {
class StringGrid;
}

// Lists all nodes, the restrained and the loaded ones, and adds, changes and removes supports and
// loads. Every change is in force at once: tables, node flags and, by changed(), the drawing.
class TSelNodeForm : public QDialog {
    Q_OBJECT

  public:
    explicit TSelNodeForm(QWidget* parent);

  signals:
    void changed();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QBoxLayout* node_column();
    QBoxLayout* record_column();
    QBoxLayout* record_head(const QString& caption, QLineEdit* count, const QString& kind,
                            kigumi::StringGrid* grid);
    QBoxLayout* add_column();
    void fill_nodes();
    // Shows the two tables as they are now.
    void fill_records();
    void note_change();

    void add_fix();
    void add_load();
    // `remove` asks for the removal of the record, else it is edited.
    void open_fix(int row, bool remove);
    void open_load(int row, bool remove);
    void search_id();

    kigumi::StringGrid* nodes_;
    kigumi::StringGrid* fixes_;
    kigumi::StringGrid* loads_;
    QLineEdit* node_count_;
    QLineEdit* fix_count_;
    QLineEdit* load_count_;
    QLineEdit* id_;
    QLabel* note_;
};
