#include "knowledge/Manage_DeviceFamilies.h"

#include "knowledge/TextFile.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <limits>

namespace vorel {

namespace {

constexpr std::string_view OpeningWord = "DEVICE_FAMILY";
constexpr std::string_view ClosingWord = "END_DEVICE_FAMILY";

std::optional<std::int32_t> IntegerIn(std::string_view text) {
    const std::optional<std::int64_t> value = ParseDecimal(text);
    using Limits = std::numeric_limits<std::int32_t>;
    if (!value || *value < Limits::min() || *value > Limits::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(*value);
}

std::optional<bool> BooleanIn(std::string_view text) {
    text = Trim(text);
    if (SameText(text, "True")) {
        return true;
    }
    if (SameText(text, "False")) {
        return false;
    }
    const std::optional<std::int64_t> number = ParseDecimal(text);
    return number ? std::optional<bool>(*number != 0) : std::nullopt;
}

class TFamilyReader {
public:
    std::vector<Ref<TDeviceFamilyInfo>> Read(std::string_view text) {
        std::string_view line;
        while (TakeLine(text, line)) {
            ReadLine(line);
        }
        Close();
        return std::move(Families);
    }

private:
    void ReadLine(std::string_view line) {
        if (Open && ContainsWord(line, ClosingWord)) {
            Close();
        } else if (ContainsWord(line, OpeningWord)) {
            if (std::optional<std::string> name = FindParameter(line, OpeningWord)) {
                Open = Ref<TDeviceFamilyInfo>(new TDeviceFamilyInfo(std::move(*name)));
            }
        } else if (Open) {
            ReadValue(line);
        }
    }

    void ReadValue(std::string_view line) {
        const std::optional<std::string> type = FindParameter(line, "ValueType");
        std::optional<std::string> key = FindParameter(line, "Key");
        const std::optional<std::string> value = FindParameter(line, "Value");
        if (!type || !key || !value) {
            return;
        }
        if (SameText(*type, "STR")) {
            Open->AddString(std::move(*key), *value);
        } else if (SameText(*type, "INT")) {
            LastInteger = IntegerIn(*value).value_or(LastInteger);
            Open->AddInteger(std::move(*key), LastInteger);
        } else if (SameText(*type, "BOOL")) {
            LastBoolean = BooleanIn(*value).value_or(LastBoolean);
            Open->AddBoolean(std::move(*key), LastBoolean);
        }
    }

    void Close() {
        if (Open) {
            Open->Sort();
            Families.push_back(std::move(Open));
            Open.Reset();
        }
    }

    std::vector<Ref<TDeviceFamilyInfo>> Families;
    Ref<TDeviceFamilyInfo> Open;
    std::int32_t LastInteger = 0;
    bool LastBoolean = false;
};

} // namespace

std::vector<Ref<TDeviceFamilyInfo>> ReadFamilies(std::string_view text) {
    return TFamilyReader().Read(text);
}

TDeviceFamilyManager::TDeviceFamilyManager(const std::string& path)
    : Families(ReadFamilies(ReadTextFile(path).value_or(""))) {
    for (std::size_t index = 0; index < Families.size(); ++index) {
        FamilyNames.Add(Families[index]->NameText(), index);
    }
    FamilyNames.Sort();
}

Status TDeviceFamilyManager::GetCount(std::int32_t& count) noexcept {
    count = static_cast<std::int32_t>(Families.size());
    return StatusOk;
}

Status TDeviceFamilyManager::GetFamilyByName(const WideText& name,
                                             IDeviceFamilyInfo*& family) noexcept {
    family = nullptr;
    return Guard([&] {
        if (const std::size_t* index = FamilyNames.Find(ToUtf8(name))) {
            family = Ref<TDeviceFamilyInfo>(Families[*index]).Detach();
        }
    });
}

Status TDeviceFamilyManager::GetFamilyByIndex(std::int32_t index,
                                              IDeviceFamilyInfo*& family) noexcept {
    family = nullptr;
    return Guard([&] {
        family = Ref<TDeviceFamilyInfo>(Families.at(static_cast<std::size_t>(index))).Detach();
    });
}

Status TDeviceFamilyManager::GetNames(WideText& names) noexcept {
    return Guard([&] {
        names.clear();
        std::vector<std::string> list;
        for (std::size_t index = 0; index < FamilyNames.Count(); ++index) {
            list.push_back(FamilyNames.KeyAt(index));
        }
        names = ToWide(JoinLines(list));
    });
}

} // namespace vorel
