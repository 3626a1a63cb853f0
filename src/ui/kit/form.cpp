#include "ui/kit/form.h"

#include "ui/kit/dialogs.h"

#include <QDialog>
#include <QFocusEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <charconv>

namespace kigumi {

NumberEdit::NumberEdit(QWidget* parent) : QLineEdit(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

QSize NumberEdit::sizeHint() const {
    constexpr int digits = 11;
    return {fontMetrics().horizontalAdvance('0') * digits, QLineEdit::sizeHint().height()};
}

void NumberEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason) {
        // The press that brought the focus places the cursor after this event.
        QTimer::singleShot(0, this, &QLineEdit::selectAll);
    } else {
        selectAll();
    }
}

KeyScrollBar::KeyScrollBar(QWidget* parent) : QScrollBar(parent) {
    setFocusPolicy(Qt::StrongFocus);
}

void KeyScrollBar::paintEvent(QPaintEvent* event) {
    QScrollBar::paintEvent(event);
    if (hasFocus()) {
        QPainter painter(this);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

QString label_of(const QWidget* box) {
    if (!box->accessibleName().isEmpty()) {
        return box->accessibleName();
    }
    for (const QLabel* label : box->window()->findChildren<QLabel*>()) {
        if (label->buddy() == box) {
            return label->text();
        }
    }
    return {};
}

QString number_text(float value) {
    char digits[64];
    const auto written =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed);
    const QString text = QString::fromLatin1(digits, written.ptr - digits);
    return text.contains('.') ? text : text + ".0";
}

bool read_box(QLineEdit* box, float& value) {
    return read_box(box, label_of(box), value);
}

bool read_box(QLineEdit* box, int& value) {
    return read_box(box, label_of(box), value);
}

NumberEdit* add_number_box(QFormLayout* rows, const char* name, const QString& caption,
                           float value) {
    auto* box = new NumberEdit;
    box->setObjectName(name);
    box->setText(number_text(value));
    rows->addRow(caption, box);
    return box;
}

QLineEdit* add_shown_box(QFormLayout* rows, const char* name, const QString& caption) {
    auto* box = new NumberEdit;
    box->setObjectName(name);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::ClickFocus);
    rows->addRow(caption, box);
    return box;
}

void add_buttons(QFormLayout* rows, QDialog& form, const QString& ok_caption) {
    auto* ok = new QPushButton(ok_caption);
    ok->setObjectName("OKButton");
    ok->setDefault(true);
    auto* cancel = new QPushButton("Cancel");
    cancel->setObjectName("CancelButton");
    cancel->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    rows->addRow(row);
    QObject::connect(ok, &QPushButton::clicked, &form, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &form, &QDialog::reject);
}

void place_in_corner(QDialog& dialog) {
    if (dialog.parentWidget() == nullptr) {
        return;
    }
    constexpr int margin = 16;
    const QWidget* behind = dialog.parentWidget()->window();
    const QRect shown = behind->frameGeometry().intersected(behind->screen()->availableGeometry());
    const QRect room = shown.isEmpty() ? behind->frameGeometry() : shown;
    const QSize frame = dialog.frameGeometry().size();
    dialog.move(std::max(room.left(), room.right() - frame.width() - margin),
                std::max(room.top(), room.bottom() - frame.height() - margin));
}

int chosen_item(const QGroupBox* group) {
    const auto items = group->findChildren<QRadioButton*>();
    for (int i = 0; i < items.size(); ++i) {
        if (items[i]->isChecked()) {
            return i;
        }
    }
    return -1;
}

void choose_item(QGroupBox* group, int item) {
    const auto items = group->findChildren<QRadioButton*>();
    for (int i = 0; i < items.size(); ++i) {
        // Only a button outside the exclusion can be released.
        items[i]->setAutoExclusive(false);
        items[i]->setChecked(i == item);
    }
    for (QRadioButton* button : items) {
        button->setAutoExclusive(true);
    }
}

void on_item_clicked(QGroupBox* group, const std::function<void(int item)>& clicked) {
    const auto items = group->findChildren<QRadioButton*>();
    for (int i = 0; i < items.size(); ++i) {
        QObject::connect(items[i], &QRadioButton::clicked, group, [clicked, i] { clicked(i); });
    }
}

} // namespace kigumi
