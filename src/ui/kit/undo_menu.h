// The commands of the windows as steps: one way in, and undo and redo by name in every window.
#pragma once

#include "ui/kit/session.h"

#include <QAction>
#include <QWidget>

#include <functional>

namespace kigumi {

// kigumi::change, undo and redo on the session's work, which the other windows are told of.
int change(Session& session, std::string_view name, const std::function<int(Project&)>& edit,
           OnFailure on_failure = OnFailure::keep);
// Completes the last step (kigumi::derive).
int derive(Session& session, const std::function<int(Project&)>& edit);

// The work stands in this file, whatever step it is put back to: it was saved or opened.
void name_file(Session& session, const fs::path& file);
// The step just made brought this file with it, or none (an empty path): undoing it gives the
// former file back.
void name_file_of_step(Session& session, const fs::path& file);
bool undo(Session& session);
bool redo(Session& session);
// What an UndoActions of a window that opens is given.
constexpr std::uint64_t all_steps = 0;
std::uint64_t own_steps(const Session& session);

// 元に戻す (`UndoMenu`, Ctrl+Z) and やり直し (`RedoMenu`, Ctrl+Y, Ctrl+Shift+Z) of one window. They
// tell the command that they take back or repeat, and are open while there is one.
class UndoActions : public QObject, protected Desk {
    Q_OBJECT

  public:
    // A child of `window`, whose keys the two actions are from now on. Only steps of a number above
    // `since` are taken back and repeated: a window that stands over another one can show no others
    // but its own, and is given the number of the newest step when it opens (own_steps).
    UndoActions(Session& session, QWidget* window, std::uint64_t since);

    std::uint64_t since() const { return since_; }
    QAction* undo_action() const { return undo_; }
    QAction* redo_action() const { return redo_; }
    // Called before a step is taken back; true when it had something half done, which it gave up:
    // that was all then.
    std::function<bool()> give_up;
    // What of `give_up` is there opens 元に戻す, too.
    std::function<bool()> is_half_done;

    // Follows the history; called by itself after every step.
    void refresh();

  private:
    bool can_undo() const;
    bool can_redo() const;
    void run_undo();
    void run_redo();

    QAction* undo_;
    QAction* redo_;
    std::uint64_t since_;
};

} // namespace kigumi
