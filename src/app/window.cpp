#include "app/window.h"

#include "base/message.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/session.h"
#include "ui/main/main_form.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
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

} // namespace

int run_window(int argc, char** argv) {
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
    TMainForm window(*session);
    window.show();
    return QApplication::exec();
}

} // namespace kigumi
