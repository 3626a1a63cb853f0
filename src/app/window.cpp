#include "app/window.h"

#include "base/message.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/session.h"
#include "ui/kit/settings.h"
#include "ui/main/main_form.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

#include <clocale>
#include <memory>

namespace kigumi {

namespace {

// False where the toolkit would find no display to open a window on, and end the program.
bool has_display() {
#if defined(__unix__) && !defined(__APPLE__)
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) {
        if (!qEnvironmentVariableIsEmpty(name)) {
            return true;
        }
    }
    return false;
#else
    return true;
#endif
}

// Where to work on a file that was opened by a double click.
fs::path folder_for(const fs::path& file) {
    const fs::path folder = file.parent_path();
    std::error_code failed;
    const bool home = fs::equivalent(folder, path_of_qt(QDir::homePath()), failed);
    if (!home && can_save(work_file(folder, "SPY.TXT")) &&
        can_save(work_file(folder, "TRIO.DAT"))) {
        return folder;
    }
    const fs::path own = own_folder("work");
    return own.empty() ? folder : own;
}

} // namespace

int run_window(int argc, char** argv, const fs::path& file, bool typed) {
    if (!has_display()) {
        write_console("画面がないのでウィンドウを開けません（コマンドは kigumi --help）");
        return 1;
    }
    QApplication application(argc, argv);
    // Files have their decimal point whatever the user's language.
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    QTranslator toolkit_words;
    if (toolkit_words.load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&toolkit_words);
    }
    QApplication::setApplicationName("kigumi");
    const ScopedMessageSink boxes = messages_in_boxes();
    const auto session = std::make_unique<Session>();
    std::error_code failed;
    const fs::path whole = file.empty() ? fs::path() : fs::absolute(file, failed);
    if (!whole.empty() && !typed) {
        session->project.work_dir = folder_for(whole);
    }
    TMainForm window(*session);
    window.show();
    QTimer::singleShot(0, &window, [&window, whole] { window.start(whole); });
    return QApplication::exec();
}

} // namespace kigumi
