#include "hosts/vorelctl/Debugger.h"

#include "hosts/vorelctl/ObjectImage.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel::host {

namespace {

constexpr std::size_t RowBytes = 16;
constexpr std::int64_t MaxShownBytes = 65536;
constexpr std::int64_t MaxPolls = 1'000'000;
constexpr std::int64_t DefaultPolls = 10'000;
constexpr std::int64_t MaxSteps = 100'000'000;

[[noreturn]] void Misuse(const std::string& text) {
    throw ECommandFailure(ExitStatus::WrongUsage, text);
}

std::int64_t ReadAddress(const std::string& text) {
    std::string_view digits = text;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
    }
    const auto value = ParseHex(digits);
    if (!value || *value > 0xFFFFFFFF) {
        Misuse("\"" + text + "\" is no hexadecimal number of up to eight digits.");
    }
    return static_cast<std::int64_t>(*value);
}

std::int64_t ReadCount(const std::string& text, std::int64_t most) {
    const auto value = ParseDecimal(text);
    if (!value || *value < 1 || *value > most) {
        Misuse("\"" + text + "\" is no number from 1 to " + std::to_string(most) + ".");
    }
    return *value;
}

void Expect(const TDebugger::TWords& words, std::size_t least, std::size_t most) {
    if (words.size() < least || words.size() > most) {
        Misuse(words.size() < least ? "Something is missing."
                                    : "\"" + words[most] + "\" is too much.");
    }
}

std::string Address(std::int64_t address) {
    return ToHex(static_cast<std::uint64_t>(address), 8);
}

} // namespace

const std::vector<TDebugger::TCommand>& TDebugger::Commands() {
    static const std::vector<TCommand> commands{
        {"load", "FILE [--address A] [--verify]", "write an object file into the memory",
         &TDebugger::Load, false},
        {"save", "ADDRESS COUNT FILE", "write COUNT bytes of memory to a file: .hex, or binary",
         &TDebugger::Save, false},
        {"reset", "", "hold the processor in reset", &TDebugger::Reset},
        {"run", "", "let the processor run", &TDebugger::Run},
        {"wait", "[POLLS]", "ask until the processor has stopped", &TDebugger::Wait},
        {"pause", "", "stop the processor", &TDebugger::Pause},
        {"step", "[N]", "execute N instructions, 1 without a number", &TDebugger::Step},
        {"status", "", "say whether the processor runs, and why not", &TDebugger::Status},
        {"regs", "[NAME[=VALUE]]", "show all registers or one, or write one", &TDebugger::Regs},
        {"mem", "ADDRESS [COUNT] [--width 8|16|32] [--write VALUE...]", "show or write memory",
         &TDebugger::Mem, false},
        {"break", "add ADDRESS | remove ADDRESS | list | clear", "handle breakpoints",
         &TDebugger::Break},
        {"console", "", "show what the program has written since the last time",
         &TDebugger::Console},
        {"reconnect", "", "find the pod again after it was unplugged", &TDebugger::Reconnect, false,
         true},
    };
    return commands;
}

namespace {

const TDebugger::TCommand* FindCommand(std::string_view name) {
    const auto& commands = TDebugger::Commands();
    const auto hit = std::find_if(commands.begin(), commands.end(),
                                  [&](const auto& c) { return SameText(c.Name, name); });
    return hit != commands.end() ? &*hit : nullptr;
}

} // namespace

std::string TDebugger::UsageOf(std::string_view command) {
    const TCommand* const hit = FindCommand(command);
    if (hit == nullptr) {
        return {};
    }
    return std::string(hit->Name) + (hit->Usage.empty() ? "" : " ") + std::string(hit->Usage);
}

std::vector<TOption> TDebugger::OptionsOf(std::string_view command) {
    if (command == "load") {
        return {{"--address", "A", "add this to all addresses of the file"},
                {"--verify", "", "read back and compare"}};
    }
    if (command == "mem") {
        return {{"--width", "BITS", "8, 16 or 32 bits to an item; 8 without it"},
                {"--write", "VALUE...", "write these in place of showing"}};
    }
    return {};
}

std::string TDebugger::Execute(const std::string& name, const TWords& words) {
    const TCommand* const hit = FindCommand(name);
    if (hit == nullptr) {
        Misuse("There is no command \"" + name + "\"; help lists them.");
    }
    if (hit->NeedsProcessor && !Target.IsProcessor()) {
        throw ECommandFailure(ExitStatus::NothingFound, Target.Name() + " is no processor.");
    }
    try {
        return (this->*hit->Run)(words);
    } catch (const EVorelError& error) {
        Progress("");
        throw ECommandFailure(ExitStatus::NothingFound, Target.Explain(error.what()));
    }
}

std::string TDebugger::FindFile(const std::string& name) const {
    std::error_code error;
    const std::filesystem::path beside = Folder / name;
    const bool isThere = std::filesystem::exists(name, error);
    return !isThere && std::filesystem::exists(beside, error) ? beside.string() : name;
}

std::string TDebugger::Load(const TWords& words) {
    const TArguments arguments(words, OptionsOf("load"));
    Expect(arguments.Words(), 1, 1);
    const std::int64_t offset = ReadAddress(arguments.Find("--address").value_or("0"));
    const TObjectImage image = ReadObjectImage(Host, FindFile(arguments.Words()[0]));
    WriteObjectImage(Target, image, offset, Progress);
    std::string text = "Loaded " + std::to_string(image.ByteCount()) + " bytes in " +
                       std::to_string(image.Blocks.size()) +
                       (image.Blocks.size() == 1 ? " block.\n" : " blocks.\n");
    if (arguments.Has("--verify")) {
        VerifyObjectImage(Target, image, offset, Progress);
        text += "Verified.\n";
    }
    return text;
}

std::string TDebugger::Save(const TWords& words) {
    Expect(words, 3, 3);
    const std::int64_t address = ReadAddress(words[0]);
    const auto count = static_cast<std::size_t>(ReadCount(words[1], Target.MemoryBytes()));
    SaveMemory(Target, address, count, words[2]);
    return "Saved " + words[1] + " bytes.\n";
}

std::string TDebugger::Reset(const TWords& words) {
    Expect(words, 0, 0);
    Check(Target.Device().ResetProcessor(), "Resetting");
    return Status(words);
}

std::string TDebugger::Run(const TWords& words) {
    Expect(words, 0, 0);
    Check(Target.Device().ContinueProcessor(), "Continuing");
    return Status(words);
}

std::string TDebugger::Wait(const TWords& words) {
    Expect(words, 0, 1);
    const std::int64_t polls = words.empty() ? DefaultPolls : ReadCount(words[0], MaxPolls);
    for (std::int64_t i = 0; i < polls; ++i) {
        if (!Target.IsRunning()) {
            return Status({});
        }
    }
    throw ECommandFailure(ExitStatus::NothingFound, "The processor still runs after " +
                                                        std::to_string(polls) + " questions.");
}

std::string TDebugger::Pause(const TWords& words) {
    Expect(words, 0, 0);
    Check(Target.Device().PauseProcessor(), "Pausing");
    return Status(words);
}

std::string TDebugger::Step(const TWords& words) {
    Expect(words, 0, 1);
    const std::int64_t count = words.empty() ? 1 : ReadCount(words[0], MaxSteps);
    Check(count == 1 ? Target.Device().SingleStep()
                     : Target.Device().RunSteps(static_cast<std::int32_t>(count)),
          "Stepping");
    return Status({});
}

std::string TDebugger::Status(const TWords& words) {
    Expect(words, 0, 0);
    return Target.StatusText() + "\n";
}

std::string TDebugger::Regs(const TWords& words) {
    Expect(words, 0, 1);
    const std::vector<TDebugTarget::TRegister> registers = Target.Registers();
    const auto textOf = [](const TDebugTarget::TRegister& r) {
        WideText text;
        Check(r.Handle->ReadText(text), "Reading a register");
        return PadRight(r.Name, 5) + ToUtf8(text);
    };
    if (words.empty()) {
        std::string text;
        for (std::size_t i = 0; i < registers.size(); ++i) {
            const bool ends = i % 4 == 3 || i + 1 == registers.size();
            text += textOf(registers[i]) + (ends ? "\n" : "  ");
        }
        return text;
    }
    const std::size_t equals = words[0].find('=');
    const std::string name = words[0].substr(0, equals);
    const auto hit = std::find_if(registers.begin(), registers.end(), [&](const auto& r) {
        return SameText(r.Name, name) || SameText(r.Alias, name);
    });
    if (hit == registers.end()) {
        Misuse("There is no register \"" + name + "\"; regs shows them all.");
    }
    if (equals != std::string::npos) {
        WriteRegister(*hit, words[0].substr(equals + 1));
    }
    return textOf(*hit) + "\n";
}

void TDebugger::WriteRegister(const TDebugTarget::TRegister& place, const std::string& value) {
    if (Target.IsRunning()) {
        throw ECommandFailure(ExitStatus::NothingFound,
                              "The processor runs; registers can be written when it is paused.");
    }
    const vorel::Status status = place.Handle->WriteText(ToWide(value));
    if (status == StatusBadArgument) {
        Misuse("\"" + value + "\" is no value for " + place.Name + ".");
    }
    Check(status, "Writing the register");
}

std::string TDebugger::Mem(const TWords& words) {
    // Everything behind --write is a value.
    const auto write = std::find(words.begin(), words.end(), "--write");
    const TArguments arguments({words.begin(), write}, {{"--width", "BITS", ""}});
    const TWords values(write == words.end() ? write : write + 1, words.end());
    Expect(arguments.Words(), 1, write == words.end() ? 2 : 1);
    const std::int64_t address = ReadAddress(arguments.Words()[0]);
    const long width = arguments.FindNumber("--width", 8, 32).value_or(8);
    if (width != 8 && width != 16 && width != 32) {
        Misuse("--width is 8, 16 or 32.");
    }
    const auto size = static_cast<std::size_t>(width / 8);
    if (write != words.end()) {
        return WriteMemory(address, size, values);
    }
    const std::int64_t count = arguments.Words().size() < 2
                                   ? static_cast<std::int64_t>(RowBytes / size)
                                   : ReadCount(arguments.Words()[1], MaxShownBytes / (width / 8));
    return DumpMemory(Target, address, static_cast<std::size_t>(count), size);
}

std::string TDebugger::WriteMemory(std::int64_t address, std::size_t size, const TWords& values) {
    std::vector<std::uint8_t> bytes;
    for (const std::string& text : values) {
        const auto value = static_cast<std::uint64_t>(ReadAddress(text));
        if (value >> (8 * size) != 0) {
            Misuse("\"" + text + "\" does not fit in " + std::to_string(8 * size) + " bits.");
        }
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t place = Target.IsBigEndian() ? size - 1 - i : i;
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
        }
    }
    if (bytes.empty()) {
        Misuse("--write needs a value.");
    }
    Target.WriteBytes(address, bytes);
    return {};
}

std::string TDebugger::Break(const TWords& words) {
    Expect(words, 1, 2);
    if (words.size() == 2 && words[0] == "add") {
        return AddBreakpoint(ReadAddress(words[1]));
    }
    if (words.size() == 2 && words[0] == "remove") {
        return RemoveBreakpoint(ReadAddress(words[1]));
    }
    if (words.size() == 1 && words[0] == "list") {
        return ListBreakpoints();
    }
    if (words.size() == 1 && words[0] == "clear") {
        Check(Target.Device().RemoveAllBreakpoints(), "Removing the breakpoints");
        Breakpoints.clear();
        return {};
    }
    Misuse("\"" + words[0] + "\" is none of these, or its address is missing or too much.");
}

std::int64_t TDebugger::BreakpointLocation(std::int64_t address) const {
    return address / static_cast<std::int64_t>(Target.LocationBytes());
}

std::string TDebugger::AddBreakpoint(std::int64_t address) {
    std::int32_t space = 0;
    Check(Target.Memory().GetIndex(space), "Asking for the memory's number");
    IVorelBreakpoint* breakpoint = nullptr;
    Check(Target.Device().AddBreakpoint(space, BreakpointLocation(address), breakpoint),
          "Adding a breakpoint");
    if (breakpoint == nullptr) {
        throw ECommandFailure(ExitStatus::NothingFound, Target.Name() +
                                                            " can have no breakpoint at " +
                                                            Address(address) + ".");
    }
    const auto place = std::lower_bound(Breakpoints.begin(), Breakpoints.end(), address);
    if (place == Breakpoints.end() || *place != address) {
        Breakpoints.insert(place, address);
    }
    return "Breakpoint at " + Address(address) + ".\n";
}

std::string TDebugger::RemoveBreakpoint(std::int64_t address) {
    std::int32_t space = 0;
    Check(Target.Memory().GetIndex(space), "Asking for the memory's number");
    Bool32 removed = False32;
    Check(Target.Device().RemoveBreakpoint(space, BreakpointLocation(address), removed),
          "Removing a breakpoint");
    if (removed == False32) {
        throw ECommandFailure(ExitStatus::NothingFound,
                              "There is no breakpoint at " + Address(address) + ".");
    }
    std::erase(Breakpoints, address);
    return {};
}

// Addresses are not told of breakpoints that were there before.
std::string TDebugger::ListBreakpoints() const {
    std::string text;
    for (const std::int64_t address : Breakpoints) {
        text += Address(address) + "\n";
    }
    std::int32_t count = 0;
    Check(Target.Device().GetBreakpointCount(count), "Counting the breakpoints");
    const std::int64_t others = count - static_cast<std::int64_t>(Breakpoints.size());
    if (others > 0) {
        text += std::to_string(others) + " of an earlier session; clear removes them, too.\n";
    }
    return text.empty() ? "No breakpoints.\n" : text;
}

std::string TDebugger::Console(const TWords& words) {
    Expect(words, 0, 0);
    std::string text = Target.DriverText(0);
    if (!text.empty() && text.back() != '\n') {
        text += '\n';
    }
    return text;
}

std::string TDebugger::Reconnect(const TWords& words) {
    Expect(words, 0, 0);
    Target.Reconnect();
    return Status(words);
}

std::vector<std::string> SplitCommandLine(std::string_view line) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false;
    bool inWord = false;
    for (const char c : Trim(line)) {
        if (c == '#' && words.empty() && !inWord) {
            break;
        }
        if (c == '"') {
            quoted = !quoted;
            inWord = true;
        } else if ((c == ' ' || c == '\t') && !quoted) {
            if (inWord) {
                words.push_back(std::move(word));
            }
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord) {
        words.push_back(std::move(word));
    }
    return words;
}

} // namespace vorel::host
