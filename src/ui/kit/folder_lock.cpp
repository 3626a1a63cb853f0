#include "ui/kit/folder_lock.h"

#include "ui/kit/dialogs.h"

#include <QLabel>
#include <QLockFile>
#include <QStatusBar>

namespace kigumi {

FolderLock::FolderLock(const fs::path& work_dir, QStatusBar& bar)
    : lock_(std::make_unique<QLockFile>(qt_path(work_file(work_dir, ".kigumi.lock")))) {
    lock_->setStaleLockTime(0); // as long as its program runs, however long that is
    if (!lock_->tryLock(0) && lock_->error() == QLockFile::LockFailedError) {
        label_ = new QLabel("別の kigumi がこの作業フォルダを使っています");
        label_->setObjectName("FolderLabel");
        bar.addPermanentWidget(label_);
    }
}

FolderLock::~FolderLock() = default;

} // namespace kigumi
