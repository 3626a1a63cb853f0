// The results listing (計算結果の保存).
#pragma once

#include "analysis/result.h"
#include "base/files.h"

namespace kigumi {

// Writes the member results in table order as a text for people (docs/formats/results-listing.md).
// The first line names the file as `path` gives it. 0, or -1 after a message:
// "保存するデータが存在しない" without result members, "書きこみに失敗しました" when the file
// cannot be written (an old one is then whole).
int save_listing(const Result& result, const fs::path& path);

} // namespace kigumi
