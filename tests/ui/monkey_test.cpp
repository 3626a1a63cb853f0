// Someone who presses anything: random menu items, buttons, texts, keys and mouse strokes on
// whatever window is on top, also on windows that this test knows nothing of. The program must stay
// alive, come to rest, keep its tables sound, and say so when a file cannot be read or written.
// KIGUMI_MONKEYS sets the number of runs and KIGUMI_SEED the seed of the first.
#include "dice.h"
#include "draw/projection.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "model/sections.h"
#include "project/project_fault.h"
#include "ui/kit/dialogs.h"
#include "ui/main/main_form.h"
#include "ui_support.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPointer>
#include <QTableView>

namespace kigumi::test {

namespace {

constexpr int presses = 200;       // a run
constexpr int deepest = 8;         // modal windows over each other
constexpr int longest_run = 60000; // milliseconds
constexpr int patience = 60;       // presses on one dialog before it is closed

class Monkey {
  public:
    Monkey(const fs::path& work_dir, unsigned seed) : work_dir_(work_dir), dice_(seed) {}

    // Presses until it has had enough, then closes everything.
    void play(QWidget& main);
    const std::string& log() const { return log_; }
    bool gave_up() const { return gave_up_; }
    // Files that cannot be read or written and of which no message told.
    const std::string& untold() const { return untold_; }

  private:
    QWidget* top_window();
    void press(QWidget& window);
    void answer_file_dialog(QFileDialog& dialog);
    void expect_message(QWidget* window);
    void trigger(QWidget& window);
    void click(QWidget& window);
    void type(QWidget& window);
    void stroke(QWidget& window);
    void hit_key(QWidget& window);
    void step_back(QWidget& window);
    void turn(QWidget& window);
    void note(const QString& what, const QObject& on) {
        log_ += QString("%1 %2; ").arg(what, on.objectName()).toStdString();
    }
    template <class Control> Control* any(QWidget& window) {
        QList<Control*> usable;
        for (Control* control : window.findChildren<Control*>()) {
            if (control->isVisible() && control->isEnabled() && control->window() == &window) {
                usable.push_back(control);
            }
        }
        return usable.isEmpty() ? nullptr : dice_.one_of(usable);
    }

    fs::path work_dir_;
    Dice dice_;
    std::string log_;
    bool gave_up_ = false;
    std::string bad_file_; // a message about it is still to come
    QPointer<QWidget> asked_by_;
    int quiet_ = 0; // moments since
    std::string untold_;
    QPointer<QWidget> last_;
    int on_last_ = 0;
};

int depth() {
    int count = 0;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        count += window->isVisible() && window->isModal() ? 1 : 0;
    }
    return count;
}

// Closes a dialog; a question about what is not saved is answered with: away with it.
void leave(QWidget& modal) {
    if (auto* box = qobject_cast<QMessageBox*>(&modal)) {
        for (QAbstractButton* button : box->buttons()) {
            if (box->buttonRole(button) == QMessageBox::DestructiveRole) {
                button->click();
                return;
            }
        }
    }
    if (auto* dialog = qobject_cast<QDialog*>(&modal)) {
        dialog->reject();
    } else {
        modal.close();
    }
}

QWidget* Monkey::top_window() {
    if (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    }
    if (QWidget* modal = QApplication::activeModalWidget()) {
        return modal;
    }
    QList<QWidget*> shown;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isEnabled()) {
            shown.push_back(window);
        }
    }
    return shown.isEmpty() ? nullptr : dice_.one_of(shown);
}

void Monkey::answer_file_dialog(QFileDialog& dialog) {
    if (dice_.roll(4) == 0) {
        dialog.reject();
        return;
    }
    const bool opens = dialog.acceptMode() == QFileDialog::AcceptOpen;
    const std::vector<const char*> names =
        opens ? std::vector{"good.jik", "good.jik", "broken.jik", "good.tgk", "none.jik"}
              : std::vector{"a.jik", "b.out", "missing/c.dxf", "d.tgk", "good.jik"};
    dialog.setOption(QFileDialog::DontConfirmOverwrite, dice_.roll(2) == 0);
    const std::string name = dice_.one_of(names);
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(qt_path(work_file(work_dir_, name)));
    const bool bad = name == "broken.jik" || name == "none.jik" || name == "missing/c.dxf";
    bad_file_ = bad ? name : "";
    log_ += name + "; ";
    quiet_ = 0;
    asked_by_ = dialog.parentWidget() == nullptr ? nullptr : dialog.parentWidget()->window();
    QMetaObject::invokeMethod(&dialog, "accept");
}

// Called at every moment after a bad file, with the window then on top. Nothing need be said while
// the file dialog keeps the name, or when one more question comes before the file.
void Monkey::expect_message(QWidget* window) {
    if (bad_file_.empty()) {
        return;
    }
    if (qobject_cast<QDialog*>(window) != nullptr && window != asked_by_) {
        bad_file_.clear();
    } else if (++quiet_ > patience) {
        untold_ += bad_file_ + " ";
        log_ += "NOTHING SAID; ";
        bad_file_.clear();
    }
}

void Monkey::trigger(QWidget& window) {
    QList<QAction*> open;
    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->isEnabled() && action->isVisible() && !action->isSeparator() &&
            action->menu() == nullptr) {
            open.push_back(action);
        }
    }
    if (!open.isEmpty()) {
        QAction* action = dice_.one_of(open);
        note("menu", *action);
        action->trigger();
    }
}

void Monkey::click(QWidget& window) {
    if (auto* button = any<QAbstractButton>(window)) {
        note("click", *button);
        button->click();
    }
}

void Monkey::type(QWidget& window) {
    const std::vector<const char*> texts = {
        "1",    "2", "3",  "4",    "10", "45", "90",   "2",           "3",   "12.5",
        "90.9", "0", "-1", "1e30", "x",  "",   "１２", "99999999999", "nan", "\"柱 A\""};
    if (auto* box = any<QLineEdit>(window)) {
        note("type", *box);
        box->setText(dice_.one_of(texts));
    }
}

void Monkey::turn(QWidget& window) {
    if (auto* slider = any<QAbstractSlider>(window)) {
        slider->setValue(slider->minimum() + dice_.roll(slider->maximum() - slider->minimum() + 1));
    }
    if (auto* box = any<QComboBox>(window); box != nullptr && box->count() > 0) {
        box->setCurrentIndex(dice_.roll(box->count()));
    }
    if (auto* spin = any<QAbstractSpinBox>(window)) {
        spin->stepBy(dice_.roll(7) - 3);
    }
    if (auto* table = any<QTableView>(window);
        table != nullptr && table->model() != nullptr && table->model()->rowCount() > 0) {
        table->setCurrentIndex(table->model()->index(dice_.roll(table->model()->rowCount()), 0));
    }
}

// A click or a drag with one of the buttons.
void Monkey::stroke(QWidget& window) {
    auto* area = any<QWidget>(window);
    if (area == nullptr) {
        return;
    }
    const QPointer<QWidget> alive(area);
    const auto button = dice_.roll(4) == 0 ? Qt::RightButton : Qt::LeftButton;
    const auto point = [&] {
        return QPointF(dice_.roll(std::max(1, area->width())),
                       dice_.roll(std::max(1, area->height())));
    };
    const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButtons held) {
        if (alive) {
            QMouseEvent event(type, at, alive->mapToGlobal(at), button, held, Qt::NoModifier);
            QApplication::sendEvent(alive, &event);
        }
    };
    const QPointF from = point();
    const QPointF to = dice_.roll(2) == 0 ? from : point();
    note("stroke", *area);
    send(QEvent::MouseButtonPress, from, button);
    send(QEvent::MouseMove, to, button);
    send(QEvent::MouseButtonRelease, to, Qt::NoButton);
    if (dice_.roll(6) == 0) {
        send(QEvent::MouseButtonDblClick, to, button);
    }
}

void Monkey::hit_key(QWidget& window) {
    const std::vector<int> keys = {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab,     Qt::Key_Delete,
                                   Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Plus,    Qt::Key_Home,
                                   Qt::Key_Space,  Qt::Key_Z,      Qt::Key_PageDown};
    QWidget* focus = window.focusWidget() != nullptr ? window.focusWidget() : &window;
    const QPointer<QWidget> alive(focus);
    const int key = dice_.one_of(keys);
    const auto modifier = dice_.roll(5) == 0 ? Qt::ControlModifier : Qt::NoModifier;
    note(QString("key %1").arg(key, 0, 16), *focus);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (alive) {
            QKeyEvent event(type, key, modifier);
            QApplication::sendEvent(alive, &event);
        }
    }
}

// Ctrl+Z, or Ctrl+Y, a few times, where the window has them.
void Monkey::step_back(QWidget& window) {
    const QKeySequence key(dice_.roll(3) == 0 ? "Ctrl+Y" : "Ctrl+Z");
    for (QAction* action : window.actions()) {
        for (int k = dice_.roll(4); k >= 0 && action->shortcuts().contains(key); --k) {
            note("step", *action);
            action->trigger();
        }
    }
}

void Monkey::press(QWidget& window) {
    on_last_ = last_ == &window ? on_last_ + 1 : 0;
    last_ = &window;
    // Presses there could lead out of the working directory.
    if (auto* files = qobject_cast<QFileDialog*>(&window)) {
        note("file", window);
        answer_file_dialog(*files);
        return;
    }
    if (window.isModal() && on_last_ > patience) {
        note("close", window);
        window.close();
        return;
    }
    // Texts and strokes alone would seldom get a dialog through.
    if (auto* good = window.findChild<QAbstractButton*>("OKButton");
        good != nullptr && good->isEnabled() && dice_.roll(10) == 0) {
        note("click", *good);
        good->click();
        return;
    }
    using Action = void (Monkey::*)(QWidget&);
    const std::vector<Action> actions = {&Monkey::trigger, &Monkey::trigger, &Monkey::click,
                                         &Monkey::click,   &Monkey::type,    &Monkey::stroke,
                                         &Monkey::hit_key, &Monkey::turn,    &Monkey::step_back};
    (this->*dice_.one_of(actions))(window);
}

void Monkey::play(QWidget& main) {
    QEventLoop loop;
    QTimer tick;
    QElapsedTimer watch;
    watch.start();
    int pressed = 0;
    int leaving = 0;
    QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
        QWidget* window = top_window();
        expect_message(window);
        gave_up_ = gave_up_ || depth() > deepest || watch.elapsed() > longest_run;
        if (!bad_file_.empty()) {
            return;
        }
        if (!gave_up_ && pressed < presses && !main.isVisible() && window == nullptr) {
            main.show(); // was closed: the next day
        } else if (!gave_up_ && pressed < presses && window != nullptr) {
            ++pressed;
            leaving = 0;
            QTimer::singleShot(0, window, [this, window] { press(*window); });
        } else if (QWidget* modal = QApplication::activeModalWidget();
                   modal != nullptr && ++leaving < patience) {
            QTimer::singleShot(0, modal, [modal] { leave(*modal); });
        } else {
            gave_up_ = gave_up_ || leaving >= patience; // a window that cannot be left
            loop.quit();
        }
    });
    tick.start(1);
    loop.exec();
}

class MonkeyTest : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        QApplication::setQuitOnLastWindowClosed(false);
        param.NX = 2;
        param.NY = 1;
        ASSERT_EQ(check_param(param, {0, 0, 0}), 0);
        ASSERT_EQ(make_unit(model, param, solids), 0);
        ASSERT_EQ(rebuild_tables(model), 0);
        place_on_sheet(model, project_model(model, view));
        ASSERT_EQ(save_jiku_data(model, work_file(work_dir, "good.jik"), {}), 0);
        ASSERT_EQ(save_tegaki_data(model, sketch_places, work_file(work_dir, "good.tgk")), 0);
        ASSERT_EQ(save_file(work_file(work_dir, "broken.jik"), "1 0 0 0\n"), 0);
        reset_model(model);
        reset_solids(solids);
        clear_points(solids);
    }
    void run(unsigned seed) {
        SCOPED_TRACE(text_format("seed %u", seed));
        std::printf("seed %u\n", seed);
        std::fflush(stdout);
        Monkey monkey(work_dir, seed);
        const ScopedMessageSink boxes = messages_in_boxes();
        {
            TMainForm window(session);
            window.show();
            if (seed % 2 == 0) { // the commands of a finished frame
                QTimer::singleShot(0, window.findChild<QAction*>("JikuDataReadMenu"),
                                   &QAction::trigger);
            }
            monkey.play(window);
        }
        if (std::getenv("KIGUMI_MONKEYS") != nullptr) {
            std::printf("%s\n", monkey.log().c_str());
        }
        ASSERT_FALSE(monkey.gave_up()) << monkey.log();
        ASSERT_EQ(monkey.untold(), "") << monkey.log();
        const char* fault = find_project_fault(project);
        ASSERT_EQ(fault, nullptr) << (fault != nullptr ? fault : "") << "\n" << monkey.log();
    }
};

TEST_F(MonkeyTest, PressesAnything) {
    const int runs = number_from_environment("KIGUMI_MONKEYS", 4);
    for (int i = 0; i < runs && !HasFatalFailure(); ++i) {
        run(seed_of_run() + static_cast<unsigned>(i));
    }
}

} // namespace

} // namespace kigumi::test
