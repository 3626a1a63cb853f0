// What a run has to say about its results.
#pragma once

#include <string>
#include <vector>

namespace frameslv {

// A word of ASCII letters and '-' that stays the same in all versions, and a Japanese sentence,
// UTF-8, without line ends. docs/formats/solver-notes.md lists the keys.
struct Note {
    enum class Weight { fact, notice, warning };

    Weight weight = Weight::fact;
    std::string key;
    std::string text;
};

using Notes = std::vector<Note>;


} // namespace frameslv
