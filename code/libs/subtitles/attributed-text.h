// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "foundation/string.h"

#include "subtitles/export.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// A text in runs of equal looks, in reading order. It grows at its back and owns its runs.
///
/// References to runs, and iterators, are valid until the next run is appended.
class AttributedText {
public:
    struct Run {
        TextAttributes attributes;
        fn::String text;  ///< UTF-8. In what the readers make, the last run's text ends with a NUL.
    };

    using value_type = Run;  // NOLINT(readability-identifier-naming): containers call it so
    using iterator = std::vector<Run>::iterator;  // NOLINT(readability-identifier-naming)
    using const_iterator =                        // NOLINT(readability-identifier-naming)
        std::vector<Run>::const_iterator;

    bool empty() const { return _runs.empty(); }
    std::size_t size() const { return _runs.size(); }

    iterator begin() { return _runs.begin(); }
    iterator end() { return _runs.end(); }
    const_iterator begin() const { return _runs.begin(); }
    const_iterator end() const { return _runs.end(); }

    Run& operator[](std::size_t index) { return _runs[index]; }
    const Run& operator[](std::size_t index) const { return _runs[index]; }
    Run& front() { return _runs.front(); }
    const Run& front() const { return _runs.front(); }
    Run& back() { return _runs.back(); }
    const Run& back() const { return _runs.back(); }

    void push_back(const Run& run) {  // NOLINT(readability-identifier-naming)
        makeRoom();
        _runs.push_back(run);
    }
    void push_back(Run&& run) {  // NOLINT(readability-identifier-naming)
        makeRoom();
        _runs.push_back(std::move(run));
    }

    /// Makes room for this many runs in all.
    void reserve(std::size_t count) { _runs.reserve(count); }
    void clear() { _runs.clear(); }

private:
    // Most cues have one to three runs: one allocation for them, and none of their runs is moved.
    void makeRoom() {
        if (_runs.capacity() == 0) {
            _runs.reserve(4);
        }
    }

    std::vector<Run> _runs;
};

/// One run with the whole text and no attributes. The text is taken as it stands, also where it is
/// empty or has several lines.
SUBTITLES_EXPORT AttributedText plainToAttributedText(const fn::String& text);

}  // namespace subtitles
