#include "ui/result/kaiseki_form.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>

namespace {

constexpr int blink = 200; // milliseconds of a run that shows no window
constexpr int step = 10;   // milliseconds between two looks at the solver

} // namespace

TKaisekiForm::TKaisekiForm(const QString& solver) {
    setObjectName("KaisekiForm");
    setWindowTitle("構造解析");
    // A window of its own: with the main window minimised its children would go with it.
    setWindowModality(Qt::ApplicationModal);
    auto* all = new QVBoxLayout(this);
    all->addWidget(new QLabel("構造解析を実行しています"));
    auto* program = new QLabel("計算プログラム: " + solver);
    program->setObjectName("ProgramLabel");
    all->addWidget(program);
    seconds_ = new QLabel;
    seconds_->setObjectName("JikanLabel");
    all->addWidget(seconds_);
    auto* stop = new QPushButton("中止(&C)");
    stop->setObjectName("CyuusiButton");
    stop->setAutoDefault(false);
    all->addWidget(stop, 0, Qt::AlignHCenter);
    connect(stop, &QPushButton::clicked, this, &TKaisekiForm::reject);
    show_seconds();
    watch_.start();
}

void TKaisekiForm::show_seconds() {
    const double seconds = watch_.isValid() ? static_cast<double>(watch_.elapsed()) / 1000.0 : 0.0;
    seconds_->setText(QString("経過時間 %1 秒").arg(seconds, 0, 'f', 1));
}

bool TKaisekiForm::keep_waiting() {
    if (!isVisible() && !stop_ && watch_.hasExpired(blink)) {
        show();
        raise();
        activateWindow();
    }
    show_seconds();
    QCoreApplication::processEvents(isVisible() ? QEventLoop::AllEvents
                                                : QEventLoop::ExcludeUserInputEvents);
    QThread::msleep(step);
    return !stop_;
}

void TKaisekiForm::closeEvent(QCloseEvent* event) {
    event->ignore(); // it goes with the run, also while it is not shown yet
    reject();
}

void TKaisekiForm::reject() {
    stop_ = true;
}
