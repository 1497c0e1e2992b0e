#include "knowledge/DeviceFamilyInfo.h"

#include "support/Errors.h"
#include "support/Text.h"

namespace vorel {

namespace {

constexpr std::size_t LongestText = 255;

template<class T>
Status GiveCount(const TValueList<T>& list, std::int32_t& count) noexcept {
    count = static_cast<std::int32_t>(list.Count());
    return StatusOk;
}

template<class T>
Status GiveKey(const TValueList<T>& list, std::int32_t index, WideText& key) noexcept {
    return Guard([&] {
        key.clear();
        key = ToWide(list.KeyAt(static_cast<std::size_t>(index)));
    });
}

template<class T>
Status GiveWhetherKnown(const TValueList<T>& list, const WideText& key, Bool32& present) noexcept {
    present = False32;
    return Guard([&] { present = ToBool32(list.Find(ToUtf8(key)) != nullptr); });
}

} // namespace

void TDeviceFamilyInfo::AddString(std::string key, std::string_view value) {
    StringValues.Add(std::move(key), std::string(value.substr(0, LongestText)));
}

void TDeviceFamilyInfo::AddBoolean(std::string key, bool value) {
    BooleanValues.Add(std::move(key), value);
}

void TDeviceFamilyInfo::AddInteger(std::string key, std::int32_t value) {
    IntegerValues.Add(std::move(key), value);
}

void TDeviceFamilyInfo::Sort() {
    StringValues.Sort();
    BooleanValues.Sort();
    IntegerValues.Sort();
}

Status TDeviceFamilyInfo::GetName(WideText& name) noexcept {
    return Guard([&] {
        name.clear();
        name = ToWide(Name);
    });
}

Status TDeviceFamilyInfo::GetString(const WideText& key, WideText& value) noexcept {
    return Guard([&] {
        const std::string* found = StringValues.Find(ToUtf8(key));
        value.clear();
        value = found == nullptr ? WideText() : ToWide(*found);
    });
}

Status TDeviceFamilyInfo::GetBoolean(const WideText& key, Bool32& value) noexcept {
    value = False32;
    return Guard([&] {
        const bool* found = BooleanValues.Find(ToUtf8(key));
        value = ToBool32(found != nullptr && *found);
    });
}

Status TDeviceFamilyInfo::GetInteger(const WideText& key, std::int32_t& value) noexcept {
    value = -1;
    return Guard([&] {
        const std::int32_t* found = IntegerValues.Find(ToUtf8(key));
        value = found == nullptr ? -1 : *found;
    });
}

Status TDeviceFamilyInfo::GetIntegerCount(std::int32_t& count) noexcept {
    return GiveCount(IntegerValues, count);
}

Status TDeviceFamilyInfo::GetBooleanCount(std::int32_t& count) noexcept {
    return GiveCount(BooleanValues, count);
}

Status TDeviceFamilyInfo::GetStringCount(std::int32_t& count) noexcept {
    return GiveCount(StringValues, count);
}

Status TDeviceFamilyInfo::GetIntegerKey(std::int32_t index, WideText& key) noexcept {
    return GiveKey(IntegerValues, index, key);
}

Status TDeviceFamilyInfo::GetBooleanKey(std::int32_t index, WideText& key) noexcept {
    return GiveKey(BooleanValues, index, key);
}

Status TDeviceFamilyInfo::GetStringKey(std::int32_t index, WideText& key) noexcept {
    return GiveKey(StringValues, index, key);
}

Status TDeviceFamilyInfo::HasString(const WideText& key, Bool32& present) noexcept {
    return GiveWhetherKnown(StringValues, key, present);
}

Status TDeviceFamilyInfo::HasBoolean(const WideText& key, Bool32& present) noexcept {
    return GiveWhetherKnown(BooleanValues, key, present);
}

Status TDeviceFamilyInfo::HasInteger(const WideText& key, Bool32& present) noexcept {
    return GiveWhetherKnown(IntegerValues, key, present);
}

Status TDeviceFamilyInfo::SetString(const WideText& key, const WideText& value) noexcept {
    return Guard([&] { AddString(ToUtf8(key), ToUtf8(value.substr(0, LongestText))); });
}

Status TDeviceFamilyInfo::SetBoolean(const WideText& key, Bool32 value) noexcept {
    return Guard([&] { AddBoolean(ToUtf8(key), value != False32); });
}

Status TDeviceFamilyInfo::SetInteger(const WideText& key, std::int32_t value) noexcept {
    return Guard([&] { AddInteger(ToUtf8(key), value); });
}

Status TDeviceFamilyInfo::SortValues() noexcept {
    return Guard([&] { Sort(); });
}

} // namespace vorel
