#include "hosts/vorelctl/Knowledge.h"

#include "support/Errors.h"
#include "support/Text.h"

namespace vorel::host {

void FailNotFound(const std::string& text) {
    throw ECommandFailure(ExitStatus::NothingFound, text);
}

const std::vector<std::string>& NeedWords(const TArguments& arguments, std::size_t count,
                                          const std::string& usage) {
    if (arguments.Words().size() != count) {
        throw ECommandFailure(ExitStatus::WrongUsage, "usage: vorelctl " + usage);
    }
    return arguments.Words();
}

std::uint32_t ParseId(const std::string& text) {
    std::string_view digits = text;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
    } else if (digits.starts_with('$')) {
        digits.remove_prefix(1);
    }
    const std::optional<std::uint64_t> value =
        digits.size() <= 8 ? ParseHex(digits) : std::optional<std::uint64_t>();
    if (!value) {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "An id has 1 to 8 hexadecimal digits, not \"" + text + "\".");
    }
    return static_cast<std::uint32_t>(*value);
}

std::string IdText(std::uint32_t id) {
    return "0x" + ToHex(id, 8);
}

std::vector<std::string> NamesOf(const std::function<Status(WideText&)>& operation) {
    WideText names;
    Check(operation(names), "Asking the library for names");
    return SplitLines(ToUtf8(names));
}

std::optional<TDeviceEntry> FindDevice(IDeviceManager& manager, const std::string& name) {
    Bool32 found = False32;
    WideText path;
    WideText vendor;
    WideText family;
    WideText display;
    WideText type;
    TDeviceEntry entry;
    std::uint32_t masked = 0;
    Check(manager.GetDeviceInfo(ToWide(name), found, path, vendor, family, display, type,
                                entry.IdCode, masked),
          "Looking up a device");
    if (found == False32) {
        return std::nullopt;
    }
    entry.Module = FileNameOf(ToUtf8(path));
    entry.Vendor = ToUtf8(vendor);
    entry.Family = ToUtf8(family);
    entry.Type = ToUtf8(type);
    return entry;
}

} // namespace vorel::host
