// Pieces that the dialogs share: boxes for numbers, radio groups by item.
#pragma once

#include <QLineEdit>
#include <QScrollBar>

#include <functional>

class QDialog;
class QFormLayout;
class QGroupBox;

namespace kigumi {

// A box for a number: right-aligned; its text is selected when it takes the focus.
class NumberEdit : public QLineEdit {
    Q_OBJECT

  public:
    explicit NumberEdit(QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void focusInEvent(QFocusEvent* event) override;
};

// A scroll bar for the keyboard too: it shows that it has the focus.
class KeyScrollBar : public QScrollBar {
    Q_OBJECT

  public:
    explicit KeyScrollBar(QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

// The words a box is known by: its accessible name, or else the text of the label that belongs to
// it.
QString label_of(const QWidget* box);

// A length as a box starts with: one decimal, or as many as read back as the same value.
QString number_text(float value);

// read_box with the box's own label.
bool read_box(QLineEdit* box, float& value);
bool read_box(QLineEdit* box, int& value);

// A row of a form: its caption and a number box of this object name that starts with `value`.
NumberEdit* add_number_box(QFormLayout* rows, const char* name, const QString& caption,
                           float value);
// The same for a number or text that is only shown; it is never in the way of the keyboard.
QLineEdit* add_shown_box(QFormLayout* rows, const char* name, const QString& caption);
// The last row of a form: OK, which is the default button and accepts `form`, and Cancel. Their
// object names are OKButton and CancelButton.
void add_buttons(QFormLayout* rows, QDialog& form, const QString& ok_caption);

// Moves a dialog that is shown into the lower right corner of its parent's window, so that the
// picture there stays in sight.
void place_in_corner(QDialog& dialog);

// Selected item of a radio group, counted from 0; -1 when none is.
int chosen_item(const QGroupBox* group);

// Selects an item without its click; none for -1.
void choose_item(QGroupBox* group, int item);

// Calls `clicked` with the item whenever the user clicks one, the selected one too.
void on_item_clicked(QGroupBox* group, const std::function<void(int item)>& clicked);

} // namespace kigumi
