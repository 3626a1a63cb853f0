#include "ui/kit/dialogs.h"

#include "base/message.h"
#include "base/scan.h"
#include "ui/kit/settings.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace kigumi {

namespace {

// "軸データ(*.JIK)|*.jik" as the toolkit wants it: the text before the bar, with patterns for both
// cases of the ending.
QString toolkit_filter(const QString& filter) {
    const QString name = filter.section('|', 0, 0).section('(', 0, 0).trimmed();
    const QString pattern = filter.section('|', 1, 1).trimmed();
    const QString upper = pattern.toUpper();
    const QString patterns = pattern == upper ? pattern : pattern + ' ' + upper;
    return name + " (" + patterns + ")";
}

// True while a test answers the dialogs.
bool is_driven() {
    return qEnvironmentVariable("KIGUMI_TEST") == "1";
}

void prepare(const fs::path& work_dir, QFileDialog& dialog, const QString& caption,
             const QString& filter) {
    dialog.setWindowTitle(caption);
    dialog.setNameFilter(toolkit_filter(filter));
    const fs::path last = is_driven() ? fs::path() : last_folder();
    dialog.setDirectory(qt_path(last.empty() ? work_dir : last));
    dialog.setOption(QFileDialog::DontUseNativeDialog, is_driven());
}

fs::path run(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    const fs::path chosen = path_of_qt(dialog.selectedFiles().constFirst());
    note_folder(chosen.parent_path());
    return chosen;
}

template <class Number> bool number_in(const QString& typed, Number& value) {
    constexpr QChar minus_sign(0x2212);
    const QString text = typed.normalized(QString::NormalizationForm_KC).trimmed();
    return parse_number(QString(text).replace(minus_sign, '-').toStdString(), value);
}

template <class Number> bool read_any(QLineEdit* box, const QString& label, Number& value) {
    if (number_in(box->text(), value)) {
        return true;
    }
    show_message(QString("%1: 「%2」は数値ではありません").arg(label, box->text()).toStdString());
    box->setFocus();
    box->selectAll();
    return false;
}

} // namespace

ScopedMessageSink messages_in_boxes() {
    return ScopedMessageSink([](const Fault& fault) {
        QMessageBox box(QApplication::activeWindow());
        box.setWindowTitle("kigumi");
        box.setText(qt_text(fault.sentence));
        box.setTextFormat(Qt::PlainText);
        box.setInformativeText(qt_text(fault.reason));
        box.setStandardButtons(QMessageBox::Ok);
        const bool busy = QApplication::overrideCursor() != nullptr;
        if (busy) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        }
        box.exec();
        if (busy) {
            QApplication::restoreOverrideCursor();
        }
    });
}

fs::path ask_open_file(const fs::path& work_dir, QWidget* parent, const QString& caption,
                       const QString& filter) {
    QFileDialog dialog(parent);
    prepare(work_dir, dialog, caption, filter);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return run(dialog);
}

fs::path ask_save_file(const fs::path& work_dir, QWidget* parent, const QString& caption,
                       const QString& filter, const QString& extension, const fs::path& suggested) {
    QFileDialog dialog(parent);
    prepare(work_dir, dialog, caption, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(extension);
    if (!suggested.empty()) {
        dialog.setDirectory(qt_path(suggested.parent_path()));
        // A file chosen in the list would win over the name that a test puts into the box.
        if (!is_driven()) {
            dialog.selectFile(qt_path(suggested));
        }
    }
    return run(dialog);
}

UnsavedAnswer ask_unsaved(QWidget* parent, const QString& text, const QString& save,
                          const QString& discard, const QString& cancel) {
    QMessageBox box(parent);
    box.setWindowTitle("kigumi");
    box.setIcon(QMessageBox::Question);
    box.setText(text);
    QPushButton* save_button = nullptr;
    if (!save.isEmpty()) {
        save_button = box.addButton(save, QMessageBox::AcceptRole);
    }
    QPushButton* discard_button = box.addButton(discard, QMessageBox::DestructiveRole);
    if (!cancel.isEmpty()) {
        QPushButton* cancel_button = box.addButton(cancel, QMessageBox::RejectRole);
        box.setEscapeButton(cancel_button);
        box.setDefaultButton(save_button != nullptr ? save_button : cancel_button);
    }
    box.exec();
    if (box.clickedButton() == discard_button) {
        return UnsavedAnswer::discard;
    }
    return save_button != nullptr && box.clickedButton() == save_button ? UnsavedAnswer::save
                                                                        : UnsavedAnswer::cancel;
}

YesNo ask_yes_no(QWidget* parent, const QString& text, const QString& details) {
    QMessageBox box(parent);
    box.setWindowTitle("kigumi");
    box.setIcon(QMessageBox::Question);
    box.setText(text);
    box.setInformativeText(details);
    QPushButton* yes = box.addButton("はい(&Y)", QMessageBox::YesRole);
    QPushButton* no = box.addButton("いいえ(&N)", QMessageBox::NoRole);
    box.setDefaultButton(yes);
    box.setEscapeButton(no);
    if (!details.isEmpty()) {
        QPushButton* cancel = box.addButton("キャンセル(&C)", QMessageBox::RejectRole);
        box.setDefaultButton(cancel);
        box.setEscapeButton(cancel);
    }
    box.exec();
    return box.clickedButton() == yes  ? YesNo::yes
           : box.clickedButton() == no ? YesNo::no
                                       : YesNo::cancel;
}

bool read_box(QLineEdit* box, const QString& label, float& value) {
    return read_any(box, label, value);
}

bool read_box(QLineEdit* box, const QString& label, int& value) {
    return read_any(box, label, value);
}

bool peek_box(const QLineEdit* box, float& value) {
    return number_in(box->text(), value);
}

bool peek_box(const QLineEdit* box, int& value) {
    return number_in(box->text(), value);
}

bool parse_text(const QString& text, float& value) {
    return number_in(text, value);
}

BusyCursor::BusyCursor() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyCursor::~BusyCursor() {
    QApplication::restoreOverrideCursor();
}

QString qt_text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString qt_path(const fs::path& path) {
    return qt_text(utf8_of(path));
}

fs::path path_of_qt(const QString& path) {
    return path_of(path.toStdString());
}

} // namespace kigumi
