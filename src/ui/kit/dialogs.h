// The seams between the windows and the person: messages, questions and file names.
#pragma once

#include "base/files.h"
#include "base/message.h"

#include <QString>

class QLineEdit;
class QWidget;

namespace kigumi {

// Makes show_message open a message box over the active window, the reason as its informative
// text, as long as the sink lives.
[[nodiscard]] ScopedMessageSink messages_in_boxes();

// A file dialog for opening or saving: caption, filter ("軸データ(*.JIK)|*.jik") and, for saving,
// the default extension without its dot. Overwriting is asked about by the dialog. Starts in the
// folder of the file chosen last, at first in the working directory, or, for saving, with the file
// `suggested`. Empty when it was cancelled.
fs::path ask_open_file(const fs::path& work_dir, QWidget* parent, const QString& caption,
                       const QString& filter);
fs::path ask_save_file(const fs::path& work_dir, QWidget* parent, const QString& caption,
                       const QString& filter, const QString& extension,
                       const fs::path& suggested = {});

// What becomes of a change that is not saved.
enum class UnsavedAnswer { save, discard, cancel };

// Asks with a box of the given text and button texts; the last button is Cancel where `cancel` is
// empty of text there is none.
UnsavedAnswer ask_unsaved(QWidget* parent, const QString& text, const QString& save,
                          const QString& discard, const QString& cancel);

// The answer to a question with はい and いいえ.
enum class YesNo { yes, no, cancel };

// Asks with a box of the given text. Where `details`, small print below it, says what would be
// lost, there is a third button キャンセル; else Esc is いいえ.
YesNo ask_yes_no(QWidget* parent, const QString& text, const QString& details = {});

// Reads the number in a box (full-width digits are taken too). When there is none: one message
// naming the box's label and what was typed, the text is selected, and false.
bool read_box(QLineEdit* box, const QString& label, float& value);
bool read_box(QLineEdit* box, const QString& label, int& value);

// The same without a word: false, and the value as it was, when there is no number.
bool peek_box(const QLineEdit* box, float& value);
bool peek_box(const QLineEdit* box, int& value);

// The same for a text that stands in no box.
bool parse_text(const QString& text, float& value);

// Shows the busy cursor as long as it lives.
class BusyCursor {
  public:
    BusyCursor();
    ~BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

// UTF-8 and file names to and from Qt.
QString qt_text(std::string_view utf8);
QString qt_path(const fs::path& path);
fs::path path_of_qt(const QString& path);

} // namespace kigumi
