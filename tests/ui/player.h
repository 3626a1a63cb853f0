// Plays steps against the windows while their event loops run.
#pragma once

#include "ui_support.h"

#include <QAction>
#include <QEventLoop>
#include <QFileDialog>
#include <QTimer>

#include <vector>

namespace kigumi::test {

// Each step is tried until it says it is done; a step that never is fails the test by its name.
class Player {
  public:
    using Step = std::function<bool()>;

    Player& step(const char* name, Step run) {
        steps_.push_back({name, std::move(run)});
        return *this;
    }
    // Triggers an open menu item of the window of this class.
    Player& menu(const char* window, const char* item) {
        return step(item, [window, item] {
            QWidget* top = shown(window);
            auto* action = top == nullptr ? nullptr : top->findChild<QAction*>(item);
            if (action == nullptr || !action->isEnabled()) {
                return false;
            }
            QTimer::singleShot(0, action, &QAction::trigger);
            return true;
        });
    }
    // Does something with the window of this class once it is shown.
    Player& with(const char* window, std::function<void(QWidget&)> act) {
        return step(window, [window, act = std::move(act)] {
            QWidget* top = shown(window);
            if (top != nullptr) {
                act(*top);
            }
            return top != nullptr;
        });
    }
    Player& click(const char* window, const char* button) {
        return with(window, [button](QWidget& top) {
            QTimer::singleShot(0, &top, [&top, button] { press(top, button); });
        });
    }
    Player& choose(const char* window, const char* group, int item) {
        return with(window, [group, item](QWidget& top) { click_item(top, group, item); });
    }
    Player& file(const fs::path& path) {
        return step("file dialog", [path] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog != nullptr) {
                QTimer::singleShot(0, dialog, [dialog, path] { choose_file(*dialog, path); });
            }
            return dialog != nullptr;
        });
    }
    // Rejects the modal dialog or closes the window of this class.
    Player& close(const char* window) {
        return with(window, [](QWidget& top) { QTimer::singleShot(0, &top, &QWidget::close); });
    }
    // Presses the button of the question whose text contains this.
    Player& answer(const char* text) {
        return step(text, [text] {
            QWidget* box = QApplication::activeModalWidget();
            if (box == nullptr) {
                return false;
            }
            for (auto* button : box->findChildren<QAbstractButton*>()) {
                if (button->text().contains(text)) {
                    QTimer::singleShot(0, button, &QAbstractButton::click);
                    return true;
                }
            }
            return false;
        });
    }
    // Waits until no window of this class is shown.
    Player& gone(const char* window) {
        return step("window gone", [window] { return shown(window) == nullptr; });
    }

    void play() {
        QEventLoop loop;
        QTimer tick;
        size_t at = 0;
        int tries = 0;
        QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
            if (at < steps_.size() && steps_[at].run()) {
                ++at;
                tries = 0;
            } else if (++tries > tries_a_step) {
                ADD_FAILURE() << "stuck at step " << at << ": " << steps_[at].name;
                at = steps_.size();
            }
            if (at >= steps_.size()) {
                loop.quit();
            }
        });
        tick.start(5);
        loop.exec();
    }

    static QWidget* shown(const char* window) {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && std::string(top->metaObject()->className()) == window) {
                return top;
            }
        }
        return nullptr;
    }

  private:
    struct Named {
        const char* name;
        Step run;
    };
    static constexpr int tries_a_step = 4000;
    std::vector<Named> steps_;
};

} // namespace kigumi::test
