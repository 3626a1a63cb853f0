#include "app/window.h"

#include "ui/dialogs.h"
#include "ui/main_form.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <clocale>

namespace kigumi {

int run_window(int argc, char** argv) {
    QApplication application(argc, argv);
    // Files have their decimal point whatever the user's language.
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    QTranslator toolkit_words;
    if (toolkit_words.load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&toolkit_words);
    }
    QApplication::setApplicationName("kigumi");
    QApplication::setApplicationDisplayName("kigumi");
    show_messages_in_boxes();
    TMainForm window;
    window.show();
    return QApplication::exec();
}

} // namespace kigumi
