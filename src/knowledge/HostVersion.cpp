#include "knowledge/HostVersion.h"

#include "knowledge/TextFile.h"
#include "support/Text.h"
#include "vorel/Host.h"

#include <regex>

namespace vorel {

namespace {

std::string VersionTextOf(IHostClient& host) {
    WideText wide;
    if (Failed(host.GetVersionText(wide))) {
        return {};
    }
    constexpr std::string_view word = "Version ";
    std::string text = ToUtf8(wide);
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
        text.erase(at, word.size());
    }
    return text;
}

} // namespace

std::string VersionInText(const std::string& text) {
    static const std::regex announced(R"((Version).(\b\d{1,3}\.\d{1,3}\.\d{1,3}\.\d{1,9}\b))",
                                      std::regex::ECMAScript);
    static const std::regex number(R"((\b\d{1,3}\.\d{1,3}\.\d{1,3}\.\d{1,9}\b))",
                                   std::regex::ECMAScript);
    std::smatch word;
    std::smatch version;
    if (!std::regex_search(text, word, announced) || !std::regex_search(text, version, number) ||
        version.position() <= word.position()) {
        return {};
    }
    return version.str();
}

std::string VersionOfHost(IHostClient* host, const std::string& systemDirectory) {
    std::string version = host == nullptr ? std::string() : VersionTextOf(*host);
    if (version.empty()) {
        version = VersionInText(ReadTextFile(systemDirectory + "/qmx.ins").value_or(""));
    }
    return version;
}

} // namespace vorel
