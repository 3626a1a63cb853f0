// One program a working folder: a second one is told so.
#pragma once

#include "base/files.h"

#include <memory>

class QLabel;
class QLockFile;
class QStatusBar;

namespace kigumi {

// Holds the lock file .kigumi.lock of a working folder as long as it lives. Where another running
// program holds it, a label (`FolderLabel`) in the status bar says so: both write the same
// FRAMESLV.IN, TRIO.DAT and the like, though neither shows what the other wrote. A folder that
// cannot be written has no lock, and nothing is said.
class FolderLock {
  public:
    FolderLock(const fs::path& work_dir, QStatusBar& bar);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    // Another program works in the folder.
    bool shared() const { return label_ != nullptr; }

  private:
    std::unique_ptr<QLockFile> lock_;
    QLabel* label_ = nullptr;
};

} // namespace kigumi
