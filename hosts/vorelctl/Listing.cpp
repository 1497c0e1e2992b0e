#include "hosts/vorelctl/Listing.h"

#include "support/Text.h"

#include <algorithm>
#include <cstdio>

namespace vorel::host {

namespace {

struct TTextOfValue {
    std::string operator()(std::monostate) const { return "-"; }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(bool flag) const { return flag ? "Yes" : "No"; }
    std::string operator()(const std::vector<std::string>& items) const {
        std::string text;
        for (const std::string& item : items) {
            text += (text.empty() ? "" : ", ") + item;
        }
        return text;
    }
};

std::string TextOf(const TValue& value) {
    return std::visit(TTextOfValue(), value);
}

std::string FactsAsText(const std::vector<TFact>& facts) {
    std::vector<TRow> rows;
    rows.reserve(facts.size());
    for (const TFact& fact : facts) {
        rows.push_back({fact.Label + ":", TextOf(fact.Value)});
    }
    return AlignColumns(rows, "");
}

std::string TableAsText(const TListing& listing) {
    std::vector<TRow> rows;
    if (listing.Columns.size() > 1) {
        for (const TColumn& column : listing.Columns) {
            rows.resize(1);
            rows.front().push_back(column.Label);
        }
    }
    for (const std::vector<TValue>& values : listing.Rows) {
        TRow& row = rows.emplace_back();
        std::transform(values.begin(), values.end(), std::back_inserter(row), TextOf);
    }
    return AlignColumns(rows, "");
}

} // namespace

std::string AlignColumns(const std::vector<TRow>& rows, const std::string& indent) {
    if (rows.empty()) {
        return {};
    }
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const TRow& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string text;
    for (const TRow& row : rows) {
        std::string line = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += PadRight(row[i], widths[i] + 2);
        }
        text.append(line, 0, line.find_last_not_of(' ') + 1).push_back('\n');
    }
    return text;
}

std::string ListingAsText(const TListing& listing) {
    const std::string facts = FactsAsText(listing.Facts);
    const std::string table = listing.Rows.empty() ? "" : TableAsText(listing);
    return facts + (facts.empty() || table.empty() ? "" : "\n") + table;
}

void PrintListing(const TListing& listing, bool asJson) {
    const std::string text = asJson ? ListingAsJson(listing) : ListingAsText(listing);
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string KeyOfLabel(std::string_view label) {
    std::string key;
    bool gap = false;
    for (const char c : LowerCase(label)) {
        if ((c < 'a' || c > 'z') && (c < '0' || c > '9')) {
            gap = !key.empty();
            continue;
        }
        if (gap) {
            key.push_back('_');
        }
        key.push_back(c);
        gap = false;
    }
    return key;
}

} // namespace vorel::host
