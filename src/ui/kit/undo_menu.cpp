#include "ui/kit/undo_menu.h"

#include "ui/kit/dialogs.h"

#include <iterator>

namespace kigumi {

namespace {

QString item_text(const char* caption, const char* key, const std::string& command) {
    const QString words = command.empty() ? QString() : ": " + qt_text(command).replace('&', "&&");
    return QString("%1%2(&%3)").arg(caption, words, key);
}

// Steps behind this one were given up, and their files with them.
void forget_files_after(Session& session, std::uint64_t step) {
    auto& files = session.document.file_of_step;
    files.erase(files.upper_bound(step), files.end());
}

// The file of the step to which the work was put.
void follow_file(Session& session) {
    const auto& files = session.document.file_of_step;
    const auto behind = files.upper_bound(session.work.history.undo_number());
    if (behind != files.begin()) {
        session.document.file = std::prev(behind)->second;
    }
}

} // namespace

int change(Session& session, std::string_view name, const std::function<int(Project&)>& edit,
           OnFailure on_failure) {
    const std::uint64_t newest = session.work.history.newest();
    const std::uint64_t before = session.work.history.undo_number();
    const int status = change(session.work, name, edit, on_failure);
    if (session.work.history.newest() != newest) {
        forget_files_after(session, before);
        emit session.news.changed();
    }
    return status;
}

int derive(Session& session, const std::function<int(Project&)>& edit) {
    const int status = derive(session.work, edit);
    emit session.news.changed();
    return status;
}

void name_file(Session& session, const fs::path& file) {
    session.document.file = file;
    session.document.file_of_step = {{0, file}};
}

void name_file_of_step(Session& session, const fs::path& file) {
    auto& files = session.document.file_of_step;
    const std::uint64_t step = session.work.history.undo_number();
    files.try_emplace(0, session.document.file);
    forget_files_after(session, step);
    files[step] = file;
    session.document.file = file;
}

std::uint64_t own_steps(const Session& session) {
    return session.work.history.newest();
}

bool undo(Session& session) {
    const bool done = undo(session.work);
    if (done) {
        follow_file(session);
        emit session.news.stepped();
        emit session.news.changed();
    }
    return done;
}

bool redo(Session& session) {
    const bool done = redo(session.work);
    if (done) {
        follow_file(session);
        emit session.news.stepped();
        emit session.news.changed();
    }
    return done;
}

UndoActions::UndoActions(Session& session, QWidget* window, std::uint64_t since)
    : QObject(window), Desk(session), undo_(new QAction(window)), redo_(new QAction(window)),
      since_(since) {
    undo_->setObjectName("UndoMenu");
    undo_->setShortcut(QKeySequence("Ctrl+Z"));
    redo_->setObjectName("RedoMenu");
    redo_->setShortcuts({QKeySequence("Ctrl+Y"), QKeySequence("Ctrl+Shift+Z")});
    window->addActions({undo_, redo_});
    connect(undo_, &QAction::triggered, this, &UndoActions::run_undo);
    connect(redo_, &QAction::triggered, this, &UndoActions::run_redo);
    connect(&session.news, &News::changed, this, &UndoActions::refresh);
    refresh();
}

bool UndoActions::can_undo() const {
    const History& history = session_.work.history;
    return history.can_undo() && history.undo_number() > since_;
}

bool UndoActions::can_redo() const {
    const History& history = session_.work.history;
    return history.can_redo() && history.redo_number() > since_;
}

void UndoActions::refresh() {
    const History& history = session_.work.history;
    const bool half = is_half_done && is_half_done();
    undo_->setText(
        item_text("元に戻す", "U", can_undo() && !half ? history.undo_name() : std::string()));
    redo_->setText(item_text("やり直し", "R", can_redo() ? history.redo_name() : std::string()));
    undo_->setEnabled(can_undo() || half);
    redo_->setEnabled(can_redo());
}

void UndoActions::run_undo() {
    const bool was_half_done = give_up && give_up();
    if (!was_half_done && can_undo()) {
        undo(session_);
    }
    refresh();
}

void UndoActions::run_redo() {
    if (give_up) {
        give_up();
    }
    if (can_redo()) {
        redo(session_);
    }
    refresh();
}

} // namespace kigumi
