// What the window tests share: a session, controls by name, and answers to modal dialogs.
#pragma once

#include "support.h"
#include "ui/kit/session.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRadioButton>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>

#include <functional>

namespace kigumi::test {

// The control of this name; the test program ends when there is none.
template <class Control> Control* control(const QWidget& window, const char* name) {
    auto* found = window.findChild<Control*>(name);
    if (found == nullptr) {
        qFatal("no control %s", name);
    }
    return found;
}

inline void press(const QWidget& window, const char* button) {
    control<QAbstractButton>(window, button)->click();
}

// Presses the button whose text contains this.
inline void press_word(const QWidget& window, const char* word) {
    for (auto* button : window.findChildren<QAbstractButton*>()) {
        if (button->text().contains(word)) {
            button->click();
            return;
        }
    }
    qFatal("no button %s", word);
}

inline void type(const QWidget& window, const char* box, const char* text) {
    control<QLineEdit>(window, box)->setText(text);
}

inline std::string text_in(const QWidget& window, const char* box) {
    return control<QLineEdit>(window, box)->text().toStdString();
}

inline std::string label_text(const QWidget& window, const char* label) {
    return control<QLabel>(window, label)->text().toStdString();
}

inline bool is_enabled(const QWidget& window, const char* name) {
    return control<QWidget>(window, name)->isEnabled();
}

// Clicks an item of a radio group, counted from 0.
inline void click_item(const QWidget& window, const char* group, int item) {
    control<QGroupBox>(window, group)->findChildren<QRadioButton*>().at(item)->click();
}

// Position of the selected item, or -1.
inline int item_of(const QWidget& window, const char* group) {
    const auto items = control<QGroupBox>(window, group)->findChildren<QRadioButton*>();
    for (int i = 0; i < items.size(); ++i) {
        if (items[i]->isChecked()) {
            return i;
        }
    }
    return -1;
}

inline void send_mouse(QWidget& to, QEvent::Type type, QPoint at,
                       Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) {
    QMouseEvent event(type, at, to.mapToGlobal(at), button, button, keys);
    QApplication::sendEvent(&to, &event);
}

inline void turn_wheel(QWidget& over, QPoint at, int eighths) {
    QWheelEvent event(at, at, {}, {0, eighths}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&over, &event);
}

// Chooses this file, over an old one too.
inline void choose_file(QFileDialog& dialog, const fs::path& path) {
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    control<QLineEdit>(dialog, "fileNameEdit")->setText(QString::fromStdString(path.string()));
    QMetaObject::invokeMethod(&dialog, "accept");
}

// Answers the modal dialog that opens next. Called before what opens it.
inline void answer_next(std::function<void(QDialog&)> answer) {
    QTimer::singleShot(0, qApp, [answer = std::move(answer)] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) {
            ADD_FAILURE() << "no dialog opened";
            return;
        }
        answer(*dialog);
    });
}

// Gives every test a new session.
class UiTest : public CoreTest {
  protected:
    UiTest() : UiTest(std::make_shared<Session>()) {}

  private:
    explicit UiTest(const std::shared_ptr<Session>& of)
        : CoreTest(std::shared_ptr<Project>(of, &of->project)), session(*of),
          document(session.document) {}

  protected:
    Session& session;
    Document& document;
};

} // namespace kigumi::test
