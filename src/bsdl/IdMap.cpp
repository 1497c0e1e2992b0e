#include "bsdl/IdMap.h"

#include "bsdl/BSDLText.h"
#include "bsdl/FileText.h"

#include <algorithm>

namespace vorel {

TIdMap::TIdMap(const std::string& path) {
    for (const std::string& line : SplitLines(ReadWholeFile(path).value_or(""))) {
        const std::size_t equals = line.find('=');
        if (line.starts_with(';') || equals == std::string::npos) {
            continue;
        }
        auto item = std::make_unique<TConvertItem>();
        item->SourcePattern = Trim(std::string_view(line).substr(0, equals));
        item->TargetPattern = Trim(std::string_view(line).substr(equals + 1));
        std::string key = item->SourcePattern;
        Items.Add(std::move(key), std::move(item));
    }
}

std::uint32_t TIdMap::PatternToValue(std::string& pattern) const {
    pattern.resize(std::min(pattern.find(','), pattern.size()));
    std::string bits = WithoutBlanks(pattern);
    if (const TConvertItem* item = Items.Find(bits)) {
        bits = item->TargetPattern;
    } else {
        std::replace(bits.begin(), bits.end(), 'X', '0');
    }
    DropLeadingX(bits);
    return BinaryToNumber(bits);
}

} // namespace vorel
