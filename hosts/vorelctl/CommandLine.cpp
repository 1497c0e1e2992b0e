#include "hosts/vorelctl/CommandLine.h"

#include "support/Text.h"

#include <algorithm>

namespace vorel::host {

namespace {

[[noreturn]] void FailUsage(const std::string& text) {
    throw ECommandFailure(ExitStatus::WrongUsage, text);
}

const TOption& FindOption(const std::vector<TOption>& options, std::string_view name) {
    const auto hit = std::find_if(options.begin(), options.end(),
                                  [&](const TOption& o) { return o.Name == name; });
    if (hit == options.end()) {
        FailUsage("There is no option " + std::string(name) + " here.");
    }
    return *hit;
}

} // namespace

TArguments::TArguments(const std::vector<std::string>& words, const std::vector<TOption>& options) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--") {
            Positional.insert(Positional.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                              words.end());
            return;
        }
        if (word.rfind("--", 0) != 0) {
            Positional.push_back(word);
            continue;
        }
        const std::size_t equals = word.find('=');
        const TOption& option = FindOption(options, std::string_view(word).substr(0, equals));
        const std::string name(option.Name);
        if (option.Value.empty()) {
            if (equals != std::string::npos) {
                FailUsage(name + " takes no value.");
            }
            Given.emplace_back(name, "");
        } else if (equals != std::string::npos) {
            Given.emplace_back(name, word.substr(equals + 1));
        } else if (i + 1 < words.size()) {
            Given.emplace_back(name, words[++i]);
        } else {
            FailUsage(name + " needs a value: " + std::string(option.Value) + ".");
        }
    }
}

bool TArguments::Has(std::string_view option) const {
    return Find(option).has_value();
}

std::optional<std::string> TArguments::Find(std::string_view option) const {
    const auto hit = std::find_if(Given.rbegin(), Given.rend(),
                                  [&](const auto& o) { return o.first == option; });
    return hit != Given.rend() ? std::optional(hit->second) : std::nullopt;
}

std::optional<long> TArguments::FindNumber(std::string_view option, long least, long most) const {
    const std::optional<std::string> text = Find(option);
    if (!text) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> value = ParseDecimal(*text);
    if (!value || *value < least || *value > most) {
        FailUsage(std::string(option) + " needs a whole number from " + std::to_string(least) +
                  " to " + std::to_string(most) + ", not \"" + *text + "\".");
    }
    return static_cast<long>(*value);
}

std::string DescribeOptions(const std::vector<TOption>& options) {
    std::size_t width = 0;
    const auto head = [](const TOption& option) {
        return std::string(option.Name) +
               (option.Value.empty() ? "" : " " + std::string(option.Value));
    };
    for (const TOption& option : options) {
        width = std::max(width, head(option).size());
    }
    std::string text;
    for (const TOption& option : options) {
        text += "  " + PadRight(head(option), width + 2) + std::string(option.Help) + "\n";
    }
    return text;
}

} // namespace vorel::host
