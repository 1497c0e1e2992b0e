#include "transport/VcdWriter.h"

#include "transport/TrafficFile.h"

#include <algorithm>
#include <array>

namespace vorel {

namespace {

// The parts of an event's byte.
constexpr std::uint8_t TmsBit = 0x01;
constexpr std::uint8_t TdiBit = 0x02;
constexpr std::uint8_t TckBit = 0x04;
constexpr std::uint8_t ModeBit = 0x08;
constexpr std::uint8_t TickBit = 0x10;   // a whole clock; otherwise levels
constexpr std::uint8_t SampleBit = 0x20; // nothing but a read of TDO
constexpr std::uint8_t TdoKnownBit = 0x40;
constexpr std::uint8_t TdoBit = 0x80;

constexpr std::size_t SetCount = 2;

constexpr std::uint8_t Pack(std::int32_t mode, std::int32_t tms, std::int32_t tdi) noexcept {
    return static_cast<std::uint8_t>((mode % 2 != 0 ? ModeBit : 0) | (tms != 0 ? TmsBit : 0) |
                                     (tdi != 0 ? TdiBit : 0));
}

constexpr std::uint8_t PackTdo(bool level) noexcept {
    return static_cast<std::uint8_t>(TdoKnownBit | (level ? TdoBit : 0));
}

char TdoOf(std::uint8_t event) noexcept {
    if ((event & TdoKnownBit) == 0) {
        return 'x';
    }
    return (event & TdoBit) != 0 ? '1' : '0';
}

char Digit(bool level) noexcept {
    return level ? '1' : '0';
}

// Turns events into value changes; one letter is a variable's identifier in the file.
class TVcdText {
public:
    explicit TVcdText(const std::vector<std::uint8_t>& events) { FindUsedSets(events); }

    std::string Make(const std::vector<std::uint8_t>& events, bool truncated) {
        AddHeader(truncated);
        for (const std::uint8_t event : events) {
            if ((event & SampleBit) != 0) {
                Change(SetOf(event), 3, TdoOf(event));
            } else if ((event & TickBit) != 0) {
                AddTick(event);
            } else {
                AddLevels(event);
            }
        }
        Stamp();
        return std::move(Text);
    }

private:
    // TCK, TMS, TDI and TDO as written last.
    struct LineSet {
        bool Used = false;
        std::array<char, 4> Levels{'x', 'x', 'x', 'x'};
        TTapSimulator Tap;
    };

    static std::size_t SetOf(std::uint8_t event) noexcept { return (event & ModeBit) != 0 ? 1 : 0; }
    static char Letter(std::size_t set, std::size_t line) noexcept {
        return static_cast<char>('A' + set * 8 + line);
    }

    void FindUsedSets(const std::vector<std::uint8_t>& events) {
        for (const std::uint8_t event : events) {
            Sets.at(SetOf(event)).Used = true;
        }
    }

    void AddHeader(bool truncated) {
        Text = "$comment JTAG traffic; a half clock is one unit of time $end\n";
        if (truncated) {
            Text += "$comment the recording was full: later traffic is missing $end\n";
        }
        Text += "$timescale 1 us $end\n";
        for (std::size_t set = 0; set < SetCount; ++set) {
            if (Sets.at(set).Used) {
                AddScope(set);
            }
        }
        Text += "$enddefinitions $end\n#0\n";
        for (std::size_t set = 0; set < SetCount; ++set) {
            if (Sets.at(set).Used) {
                AddState(set);
            }
        }
    }

    void AddScope(std::size_t set) {
        static constexpr std::array<const char*, 4> names{"TCK", "TMS", "TDI", "TDO"};
        Text += "$scope module jtag" + std::to_string(set) + " $end\n";
        for (std::size_t line = 0; line < names.size(); ++line) {
            Text.append("$var wire 1 ").push_back(Letter(set, line));
            Text.append(" ").append(names.at(line)).append(" $end\n");
        }
        Text.append("$var string 1 ").push_back(Letter(set, names.size()));
        Text += " STATE $end\n$upscope $end\n";
    }

    void Stamp() { Text.append("#").append(std::to_string(Time)).append("\n"); }

    void AddState(std::size_t set) {
        const auto state = static_cast<std::size_t>(Sets.at(set).Tap.GetState());
        Text.append("s").append(TapStateNames.at(state)).push_back(' ');
        Text.push_back(Letter(set, 4));
        Text.push_back('\n');
    }

    void Change(std::size_t set, std::size_t line, char level) {
        char& last = Sets.at(set).Levels.at(line);
        if (last != level) {
            last = level;
            Text.push_back(level);
            Text.push_back(Letter(set, line));
            Text.push_back('\n');
        }
    }

    void Advance() {
        ++Time;
        Stamp();
    }

    void Rise(std::size_t set, std::uint8_t event) {
        LineSet& lines = Sets.at(set);
        const TTapState before = lines.Tap.GetState();
        Change(set, 0, '1');
        if (lines.Tap.Step((event & TmsBit) != 0 ? 1 : 0) != before) {
            AddState(set);
        }
    }

    void AddTick(std::uint8_t event) {
        const std::size_t set = SetOf(event);
        Change(set, 0, '0');
        Change(set, 1, Digit((event & TmsBit) != 0));
        Change(set, 2, Digit((event & TdiBit) != 0));
        Change(set, 3, TdoOf(event));
        Advance();
        Rise(set, event);
        Advance();
        Change(set, 0, '0');
    }

    void AddLevels(std::uint8_t event) {
        const std::size_t set = SetOf(event);
        const bool tck = (event & TckBit) != 0;
        const bool wasHigh = Sets.at(set).Levels[0] == '1';
        Advance();
        Change(set, 1, Digit((event & TmsBit) != 0));
        Change(set, 2, Digit((event & TdiBit) != 0));
        if (tck && !wasHigh) {
            Rise(set, event);
        } else if (!tck) {
            Change(set, 0, '0');
        }
        if ((event & TdoKnownBit) != 0 || (wasHigh && !tck)) {
            Change(set, 3, TdoOf(event));
        }
    }

    std::string Text;
    std::array<LineSet, SetCount> Sets;
    std::uint64_t Time = 0;
};

} // namespace

void TVcdWriter::Add(std::uint8_t event) {
    if (Events.size() < MaxEvents) {
        Events.push_back(event);
    } else {
        Truncated = true;
    }
}

void TVcdWriter::RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                               std::int32_t tck) {
    Add(static_cast<std::uint8_t>(Pack(mode, tms, tdi) | (tck != 0 ? TckBit : 0)));
}

void TVcdWriter::RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) {
    Add(static_cast<std::uint8_t>(Pack(mode, tms, tdi) | TickBit));
}

void TVcdWriter::RecordTdo(std::int32_t bit) {
    const std::uint8_t mode = Events.empty() ? std::uint8_t{0} : Events.back() & ModeBit;
    Add(static_cast<std::uint8_t>(mode | SampleBit | PackTdo(bit != 0)));
}

void TVcdWriter::RecordTdoString(const BitText& bits) {
    // The newest bit stands at the left and belongs to the last clock.
    auto event = Events.rbegin();
    for (const char bit : bits) {
        event = std::find_if(event, Events.rend(),
                             [](std::uint8_t candidate) { return (candidate & TickBit) != 0; });
        if (event == Events.rend()) {
            return;
        }
        *event = static_cast<std::uint8_t>((*event & ~TdoBit) | PackTdo(bit == '1'));
        ++event;
    }
}

void TVcdWriter::Save() {
    WriteTrafficFile(Path, ToText());
    Events.clear();
    Truncated = false;
}

std::string TVcdWriter::ToText() const {
    return TVcdText(Events).Make(Events, Truncated);
}

} // namespace vorel
