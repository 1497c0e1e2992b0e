// One device family: a named bag of texts, booleans and integers under keys.
#pragma once

#include "knowledge/ValueList.h"
#include "support/Objects.h"
#include "vorel/DeviceManager.h"

namespace vorel {

// Keys compare without case. Texts are cut to 255 characters. An index outside a list gives
// StatusIndexOutOfRange.
class TDeviceFamilyInfo final : public TInterfacedObject<IDeviceFamilyInfo> {
public:
    explicit TDeviceFamilyInfo(std::string name) : Name(std::move(name)) {}

    void AddString(std::string key, std::string_view value);
    void AddBoolean(std::string key, bool value);
    void AddInteger(std::string key, std::int32_t value);
    void Sort();
    const std::string& NameText() const noexcept { return Name; }

    Status GetName(WideText& name) noexcept override;
    Status GetString(const WideText& key, WideText& value) noexcept override;
    Status GetBoolean(const WideText& key, Bool32& value) noexcept override;
    Status GetInteger(const WideText& key, std::int32_t& value) noexcept override;
    Status GetIntegerCount(std::int32_t& count) noexcept override;
    Status GetBooleanCount(std::int32_t& count) noexcept override;
    Status GetStringCount(std::int32_t& count) noexcept override;
    Status GetIntegerKey(std::int32_t index, WideText& key) noexcept override;
    Status GetBooleanKey(std::int32_t index, WideText& key) noexcept override;
    Status GetStringKey(std::int32_t index, WideText& key) noexcept override;
    Status HasString(const WideText& key, Bool32& present) noexcept override;
    Status HasBoolean(const WideText& key, Bool32& present) noexcept override;
    Status HasInteger(const WideText& key, Bool32& present) noexcept override;
    Status SetString(const WideText& key, const WideText& value) noexcept override;
    Status SetBoolean(const WideText& key, Bool32 value) noexcept override;
    Status SetInteger(const WideText& key, std::int32_t value) noexcept override;
    Status SortValues() noexcept override;

private:
    std::string Name;
    TValueList<std::string> StringValues;
    TValueList<bool> BooleanValues;
    TValueList<std::int32_t> IntegerValues;
};

} // namespace vorel
