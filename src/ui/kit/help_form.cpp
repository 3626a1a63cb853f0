#include "ui/kit/help_form.h"

#include "base/files_platform.h"
#include "ui/kit/dialogs.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>

using namespace kigumi;

namespace {

// Folder of the help pages: installed beside the program, or in the source tree's build.
QString help_folder() {
    const QString program = qt_path(program_dir());
    for (const char* place : {"/help", "/../share/kigumi/help"}) {
        if (QFile::exists(program + place + "/index.html")) {
            return program + place;
        }
    }
    return {};
}

QString page_title(const QString& file) {
    QFile page(file);
    if (!page.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(page.readAll())
        .section("<title>", 1, 1)
        .section("</title>", 0, 0)
        .trimmed();
}

} // namespace

THelpForm::THelpForm(QWidget* parent) : QDialog(parent) {
    setObjectName("HelpForm");
    setWindowTitle("ヘルプ");
    resize(960, 680);
    auto* contents = new QListWidget;
    contents->setObjectName("MokujiListBox");
    contents->setMaximumWidth(220);
    pages_ = new QTextBrowser;
    pages_->setObjectName("HelpBrowser");
    pages_->setOpenExternalLinks(false);
    words_ = new QLineEdit;
    words_->setObjectName("KensakuEdit");
    words_->setPlaceholderText("検索する言葉");
    auto* find = new QPushButton("検索(&S)");
    find->setObjectName("KensakuButton");
    auto* close_button = new QPushButton("閉じる(&C)");
    close_button->setObjectName("CloseButton");
    close_button->setAutoDefault(false);

    auto* top = new QHBoxLayout;
    top->addWidget(words_, 1);
    top->addWidget(find);
    top->addWidget(close_button);
    auto* middle = new QHBoxLayout;
    middle->addWidget(contents);
    middle->addWidget(pages_, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(middle, 1);

    const QDir folder(help_folder());
    QStringList files = folder.entryList({"*.html"}, QDir::Files, QDir::Name);
    QCollator by_number; // "10-" comes after "9-"
    by_number.setNumericMode(true);
    std::sort(files.begin(), files.end(), by_number);
    for (const QString& file : files) {
        auto* item = new QListWidgetItem(page_title(folder.filePath(file)));
        item->setData(Qt::UserRole, file);
        if (file == "index.html") {
            contents->insertItem(0, item);
        } else {
            contents->addItem(item);
        }
    }
    pages_->setSearchPaths({folder.path()});
    connect(contents, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item != nullptr) {
            pages_->setSource(QUrl(item->data(Qt::UserRole).toString()));
        }
    });
    connect(find, &QPushButton::clicked, this, [this] { search(); });
    connect(close_button, &QPushButton::clicked, this, &QDialog::close);
    find->setDefault(true);
    if (contents->count() == 0) {
        pages_->setPlainText("ヘルプのファイルが見つかりません");
        return;
    }
    contents->setCurrentRow(0);
}

// Goes to the next place of the words; from the last place to the following pages, then around.
void THelpForm::search() {
    if (words_->text().isEmpty() || pages_->find(words_->text())) {
        return;
    }
    auto* contents = findChild<QListWidget*>("MokujiListBox");
    const int start = contents->currentRow();
    for (int step = 1; step <= contents->count(); ++step) {
        contents->setCurrentRow((start + step) % contents->count());
        pages_->moveCursor(QTextCursor::Start);
        if (pages_->find(words_->text())) {
            return;
        }
    }
    QMessageBox::information(this, "ヘルプ", QString("「%1」は見つかりません").arg(words_->text()));
}

namespace kigumi {

void show_help(QWidget* parent) {
    THelpForm(parent).exec();
}

void show_about(QWidget* parent) {
    QMessageBox box(parent);
    box.setWindowTitle("バージョン情報");
    box.setText(QString("kigumi %1").arg(KIGUMI_VERSION));
    box.setInformativeText(QString("木造スペース床の設計\nMIT ライセンス\nQt %1").arg(qVersion()));
    box.exec();
}

} // namespace kigumi
