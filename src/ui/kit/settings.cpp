#include "ui/kit/settings.h"

#include "ui/kit/dialogs.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

namespace kigumi {

namespace {

constexpr const char* folder_key = "folder";
constexpr const char* recent_key = "recent";

// The same kind of file on every system.
class Settings : public QSettings {
  public:
    Settings() : QSettings(QSettings::IniFormat, QSettings::UserScope, "kigumi", "kigumi") {}
};

void keep_recent(const std::vector<fs::path>& files) {
    QStringList names;
    for (const fs::path& file : files) {
        names << qt_path(file);
    }
    Settings().setValue(recent_key, names);
}

} // namespace

fs::path last_folder() {
    const QString folder = Settings().value(folder_key).toString();
    return !folder.isEmpty() && QDir(folder).exists() ? path_of_qt(folder) : fs::path();
}

void note_folder(const fs::path& folder) {
    Settings().setValue(folder_key, qt_path(folder));
}

std::vector<fs::path> recent_files() {
    std::vector<fs::path> files;
    for (const QString& name : Settings().value(recent_key).toStringList()) {
        if (!name.isEmpty() && files.size() < most_recent_files) {
            files.push_back(path_of_qt(name));
        }
    }
    return files;
}

void note_recent(const fs::path& file) {
    std::error_code failed;
    const fs::path whole = fs::absolute(file, failed);
    std::vector<fs::path> files = recent_files();
    files.erase(std::remove(files.begin(), files.end(), whole), files.end());
    files.insert(files.begin(), whole);
    files.resize(std::min<std::size_t>(files.size(), most_recent_files));
    keep_recent(files);
}

void forget_recent(const fs::path& file) {
    std::vector<fs::path> files = recent_files();
    files.erase(std::remove(files.begin(), files.end(), file), files.end());
    keep_recent(files);
}

fs::path own_folder(std::string_view name) {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    const QString folder = data + "/" + qt_text(name);
    return !data.isEmpty() && QDir().mkpath(folder) ? path_of_qt(folder) : fs::path();
}

} // namespace kigumi
