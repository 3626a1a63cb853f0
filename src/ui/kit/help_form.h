// The help pages and the version box.
#pragma once

#include <QDialog>

class QTextBrowser;
class QLineEdit;

// Shows the pages of data/help with a list of contents and a search.
class THelpForm : public QDialog {
    Q_OBJECT

  public:
    explicit THelpForm(QWidget* parent);

  private:
    void search();

    QTextBrowser* pages_;
    QLineEdit* words_;
};

namespace kigumi {

void show_help(QWidget* parent);
void show_about(QWidget* parent);

} // namespace kigumi
