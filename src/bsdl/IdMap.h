// What the patterns of id codes stand for: a text file that gives other patterns for some of them,
// so that ids with don't-care bits can be compared.
//
// Lines are "source pattern = target pattern"; a line with ";" in front is a comment, one without
// "=" is nothing. Of two lines with one source the later one counts.
#pragma once

#include "bsdl/SortedList.h"

namespace vorel {

struct TConvertItem {
    std::string SourcePattern;
    std::string TargetPattern;
};

class TIdMap {
public:
    TIdMap() = default; // an empty map
    // `path` (UTF-8): the file; a missing one gives an empty map.
    explicit TIdMap(const std::string& path);

    // Works out the id of an IDCODE_REGISTER value: binary digits and X, perhaps several codes
    // separated by commas, of which the first one counts; `pattern` is cut to it. X gives 0.
    std::uint32_t PatternToValue(std::string& pattern) const;

private:
    TSortedStringList<std::unique_ptr<TConvertItem>> Items; // key the source pattern
};

} // namespace vorel
