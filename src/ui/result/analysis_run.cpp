#include "ui/result/analysis_run.h"

#include "analysis/solver_run.h"
#include "base/message.h"
#include "ui/kit/dialogs.h"
#include "ui/result/kaiseki_form.h"

#include <QEvent>
#include <QWidget>

namespace kigumi {

namespace {

// Minimises a window as long as it lives.
class Minimised {
  public:
    explicit Minimised(QWidget& window) : window_(window), before_(window.windowState()) {
        window_.showMinimized();
    }
    ~Minimised() {
        window_.setWindowState(before_ & ~Qt::WindowMinimized);
        window_.show();
        window_.raise();
        window_.activateWindow();
    }
    Minimised(const Minimised&) = delete;
    Minimised& operator=(const Minimised&) = delete;

  private:
    QWidget& window_;
    Qt::WindowStates before_;
};

// Turns the closing of the main window during the run into 中止: the window is still needed.
class CloseStops : public QObject {
  public:
    CloseStops(QWidget& main_window, TKaisekiForm& run) : run_(run) {
        main_window.installEventFilter(this);
    }
    bool eventFilter(QObject* window, QEvent* event) override {
        if (event->type() != QEvent::Close) {
            return QObject::eventFilter(window, event);
        }
        event->ignore();
        run_.reject();
        return true;
    }

  private:
    TKaisekiForm& run_;
};

QString solver_words(const fs::path& work_dir, const fs::path& solver) {
    const QString name = qt_path(solver.filename());
    return is_own_solver(work_dir, solver) ? "作業フォルダの " + name : "同梱の " + name;
}

int run_behind_window(const Model& model, const SolverSeams& solver_seams, const fs::path& work_dir,
                      QWidget& main_window, SolverOutcome& outcome) {
    const Minimised minimised(main_window);
    TKaisekiForm window(solver_words(work_dir, find_solver(work_dir)));
    const CloseStops closing(main_window, window);
    return run_solver(model, solver_seams, work_dir, outcome,
                      [&window] { return window.keep_waiting(); });
}

} // namespace

bool run_analysis(const Model& model, const SolverSeams& solver_seams, const fs::path& work_dir,
                  QWidget& main_window) {
    SolverOutcome outcome;
    if (!can_analyse(model) ||
        run_behind_window(model, solver_seams, work_dir, main_window, outcome) < 0) {
        return false;
    }
    if (outcome.stopped) {
        show_message("解析を中止しました");
        return false;
    }
    show_solver_time(outcome);
    return true;
}

} // namespace kigumi
