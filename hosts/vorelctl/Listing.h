// What the commands about device knowledge print: facts with a name, and one table. The same data
// goes out as text for people or as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vorel::host {

// A value that is not known prints as "-" and null; a list as its items with ", " between, and as
// an array.
using TValue =
    std::variant<std::monostate, std::string, std::int64_t, bool, std::vector<std::string>>;

struct TFact {
    std::string Label; // for people: "Speed Grade"
    std::string Key;   // in JSON: "speed_grade"
    TValue Value;
};

struct TColumn {
    std::string Label;
    std::string Key;
};

struct TListing {
    std::vector<TFact> Facts;
    std::string TableKey; // the table's name in JSON; empty for a listing without table
    std::vector<TColumn> Columns;
    std::vector<std::vector<TValue>> Rows; // as many values each as there are columns
};

using TRow = std::vector<std::string>;

// Rows in columns of equal width, each line with `indent` in front and LF at its end; nothing
// behind the last column. All rows have as many texts as the first; no rows give nothing.
std::string AlignColumns(const std::vector<TRow>& rows, const std::string& indent);

// Each line ends with LF. A table with one column has no head, so that other programs can read it.
std::string ListingAsText(const TListing& listing);

// One JSON object: the facts by key, then the table as an array of objects by column key.
std::string ListingAsJson(const TListing& listing);

// To stdout, in the form that the command line asks for.
void PrintListing(const TListing& listing, bool asJson);

// "Speed Grade" as "speed_grade": letters and digits in lower case, one "_" for all else between
// them.
std::string KeyOfLabel(std::string_view label);

} // namespace vorel::host
