// Loading object code: 8 MiB of data as Intel Hex (32-byte lines) and as ELF, and the TAP's paths.
// VOREL_BENCH_DIR, if set, keeps the files there for a comparison with other tools.
#include "objectcode/Rt_ObjectFileLoader.h"
#include "objectcode/Rt_TAP.h"
#include "support/NeutralHost.h"
#include "support/Text.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

namespace vorel {
namespace {

constexpr std::uint32_t DataSize = 8U << 20U;

// Large pieces of memory come fresh from the system each time, as in the first load of a program.
const int FreshMemory = mallopt(M_MMAP_THRESHOLD, 65536);

std::uint8_t DataAt(std::uint32_t index) {
    return static_cast<std::uint8_t>((index * 2654435761U) >> 24U);
}

std::string HexRecord(std::uint32_t typeAndAddress, const std::string& data) {
    std::string bytes{static_cast<char>(data.size()), static_cast<char>(typeAndAddress >> 8U),
                      static_cast<char>(typeAndAddress), static_cast<char>(typeAndAddress >> 16U)};
    bytes += data;
    std::string line = ":";
    unsigned sum = 0;
    for (const char c : bytes) {
        line += ToHex(static_cast<std::uint8_t>(c), 2);
        sum += static_cast<std::uint8_t>(c);
    }
    return line + ToHex((0U - sum) & 0xFFU, 2) + "\n";
}

std::string HexText() {
    std::string text;
    for (std::uint32_t address = 0; address < DataSize; address += 32) {
        if (address % 65536 == 0) {
            text += HexRecord(0x40000, {'\0', static_cast<char>(address >> 16U)});
        }
        std::string data;
        for (std::uint32_t i = 0; i < 32; ++i) {
            data.push_back(static_cast<char>(DataAt(address + i)));
        }
        text += HexRecord(address % 65536, data);
    }
    return text + ":00000001FF\n";
}

std::string BigEndian(std::initializer_list<std::uint32_t> words) {
    std::string text;
    for (const std::uint32_t word : words) {
        for (const unsigned shift : {24U, 16U, 8U, 0U}) {
            text.push_back(static_cast<char>(word >> shift));
        }
    }
    return text;
}

std::string ElfBytes() {
    const std::string names("\0.text\0", 7);
    std::string file = std::string("\177ELF\1\2\1\0", 8) + std::string(8, '\0') +
                       BigEndian({0x00020008, 1, 0, 0, 52, 0, 0x00340000, 0x00000028, 0x00020000});
    file += BigEndian({0, 3, 0, 0, 132, 7, 0, 0, 1, 0});
    file += BigEndian({1, 1, 6, 0, 139, DataSize, 0, 0, 4, 0}) + names;
    for (std::uint32_t i = 0; i < DataSize; ++i) {
        file.push_back(static_cast<char>(DataAt(i)));
    }
    return file;
}

std::string WriteOnce(const char* name, std::string (*make)()) {
    const char* kept = std::getenv("VOREL_BENCH_DIR");
    const std::filesystem::path folder =
        kept != nullptr ? kept : std::filesystem::temp_directory_path() / "vorel-bench";
    std::filesystem::create_directories(folder);
    const std::string text = make();
    std::ofstream(folder / name, std::ios::binary)
        .write(text.data(), static_cast<std::streamsize>(text.size()));
    return (folder / name).string();
}

std::string HexFile() {
    static const std::string file = WriteOnce("bench.hex", HexText);
    return file;
}

std::string ElfFile() {
    static const std::string file = WriteOnce("bench.elf", ElfBytes);
    return file;
}

long PageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

// Runs `work` as often as asked; counts the pages that it touches for the first time.
template<class Work>
void Measure(benchmark::State& state, Work work) {
    const long before = PageFaults();
    for (auto _ : state) {
        work();
    }
    state.counters["page_faults"] = benchmark::Counter(static_cast<double>(PageFaults() - before),
                                                       benchmark::Counter::kAvgIterations);
    state.SetBytesProcessed(state.iterations() * std::int64_t{DataSize});
}

void CheckReport(benchmark::State& state, const TObjectFileReport& report) {
    if (report.ByteCount != DataSize) {
        state.SkipWithError("the file was not delivered as a whole");
    }
    state.counters["blocks"] = static_cast<double>(report.BlockCount);
}

template<class Item>
void LookAt(const Item* items, std::int64_t count, std::int64_t /*address*/) {
    benchmark::DoNotOptimize(items[0] + items[count - 1]);
}

void LoadWords(benchmark::State& state, const std::string& file) {
    TNeutralHost host;
    TObjectFileReport report;
    Measure(state, [&] { LoadObjectFile(host, file, LookAt<TMemoryWord>, &report); });
    CheckReport(state, report);
}

void LoadBytes(benchmark::State& state, const std::string& file) {
    TNeutralHost host;
    TObjectFileReport report;
    Measure(state, [&] { LoadObjectFileAsBytes(host, file, LookAt<std::uint8_t>, &report); });
    CheckReport(state, report);
}

void LoadHex(benchmark::State& state) {
    LoadWords(state, HexFile());
}
BENCHMARK(LoadHex)->Unit(benchmark::kMillisecond);

void LoadHexAsBytes(benchmark::State& state) {
    LoadBytes(state, HexFile());
}
BENCHMARK(LoadHexAsBytes)->Unit(benchmark::kMillisecond);

void LoadElf(benchmark::State& state) {
    LoadWords(state, ElfFile());
}
BENCHMARK(LoadElf)->Unit(benchmark::kMillisecond);

void LoadElfAsBytes(benchmark::State& state) {
    LoadBytes(state, ElfFile());
}
BENCHMARK(LoadElfAsBytes)->Unit(benchmark::kMillisecond);

// What loading is measured against: the file into fresh memory, with nothing done to it.
void ReadByStream(benchmark::State& state) {
    const std::string file = ElfFile();
    Measure(state, [&] {
        std::vector<char> bytes(std::filesystem::file_size(file));
        std::ifstream(file, std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes.data());
    });
}
BENCHMARK(ReadByStream)->Unit(benchmark::kMillisecond);

void ReadByStdio(benchmark::State& state) {
    const std::string file = ElfFile();
    Measure(state, [&] {
        std::vector<char> bytes(std::filesystem::file_size(file));
        std::FILE* const stream = std::fopen(file.c_str(), "rb");
        benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), stream));
        std::fclose(stream);
    });
}
BENCHMARK(ReadByStdio)->Unit(benchmark::kMillisecond);

void AllTmsPaths(benchmark::State& state) {
    for (auto _ : state) {
        for (int from = 1; from < 17; ++from) {
            for (int to = 1; to < 17; ++to) {
                benchmark::DoNotOptimize(
                    FindTmsPath(static_cast<TTapState>(from), static_cast<TTapState>(to)));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * 256);
}
BENCHMARK(AllTmsPaths);

} // namespace
} // namespace vorel
