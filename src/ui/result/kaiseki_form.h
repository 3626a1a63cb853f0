// The small window while the solver runs.
#pragma once

#include <QDialog>
#include <QElapsedTimer>

class QLabel;

// Shows which solver runs and for how long; 中止, Esc and closing it ask for the end of the run.
class TKaisekiForm : public QDialog {
    Q_OBJECT

  public:
    explicit TKaisekiForm(const QString& solver);

    // Lets the windows live for a moment, and shows this one once the run is longer than a blink.
    // False when the user wants it stopped.
    bool keep_waiting();

    void reject() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void show_seconds();

    QElapsedTimer watch_;
    QLabel* seconds_;
    bool stop_ = false;
};
