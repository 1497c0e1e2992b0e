// A driver module whose drivers stand in a text beside it, MODULE.VOR.txt, one per line:
// "name|vendor|family|id|type word". Other lines: "!null" gives no driver, "!fail" fails, "!throw"
// raises, "!nameless" is a driver that cannot tell its name.
#include "drivers/ModuleExport.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/DriverBase.h"

#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vorel {
namespace {

std::vector<std::string> ReadLines() {
    static const int anchor = 0;
    Dl_info info{};
    dladdr(&anchor, &info);
    std::ostringstream text;
    text << std::ifstream(std::string(info.dli_fname) + ".txt").rdbuf();
    return SplitLines(text.str());
}

const std::vector<std::string>& Lines() {
    static const std::vector<std::string> lines = ReadLines();
    return lines;
}

class TTestDriver final : public TDriverBase {
public:
    explicit TTestDriver(const std::string& line) {
        std::istringstream rest(line);
        for (std::string& field : Fields) {
            std::getline(rest, field, '|');
        }
    }

    Status GetDeviceName(WideText& text) noexcept override {
        return Fields[0] == "!nameless" ? StatusError : GiveField(0, text);
    }
    Status GetDisplayName(WideText& text) noexcept override {
        return Guard([&] { text = u"The " + ToWide(Fields[0]); });
    }
    Status GetVendor(WideText& text) noexcept override { return GiveField(1, text); }
    Status GetFamily(WideText& text) noexcept override { return GiveField(2, text); }
    Status GetIdCode(std::uint32_t& id) noexcept override {
        return Guard([&] { id = static_cast<std::uint32_t>(ParseHex(Fields[3]).value_or(0)); });
    }
    Status HasAttribute(const WideText& word, Bool32& value) noexcept override {
        return Guard([&] {
            const std::vector<std::string> words = SplitCommaText(Fields[4]);
            value = ToBool32(std::find(words.begin(), words.end(), ToUtf8(word)) != words.end());
        });
    }

private:
    Status GiveField(std::size_t number, WideText& text) const noexcept {
        return Guard([&] { text = ToWide(Fields.at(number)); });
    }

    std::array<std::string, 5> Fields;
};

} // namespace
} // namespace vorel

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    *count = static_cast<std::int32_t>(vorel::Lines().size());
    return vorel::StatusOk;
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    const std::string line = vorel::Lines().at(static_cast<std::size_t>(index));
    *driver = nullptr;
    if (line == "!throw") {
        throw std::runtime_error("a module that raises");
    }
    if (line == "!fail") {
        return vorel::StatusError;
    }
    if (line != "!null") {
        *driver = new vorel::TTestDriver(line);
    }
    return vorel::StatusOk;
}
