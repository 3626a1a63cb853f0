// What went wrong, for people.
#pragma once

#include <string>

namespace kigumi {

// A failure as it is told (UTF-8, Japanese, without a line end).
struct Fault {
    std::string sentence; // what could not be done
    std::string reason;   // why, as far as it is known; may be empty

    bool operator==(const Fault&) const = default;
    // Both in one line, "sentence（reason）"; the one that there is when the other is empty.
    std::string text() const {
        if (sentence.empty() || reason.empty()) {
            return sentence + reason;
        }
        return sentence + "（" + reason + "）";
    }
};

} // namespace kigumi
