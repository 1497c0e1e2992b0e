// Speed of the BSDL reader over a folder of files, per stage, and on a made-up device of any size.
//
// The folder is named by VOREL_TEST_DATA (which holds a folder "bsdl"), else it is looked for
// beside the source tree. BytesPerSecond counts the bytes of the files. "wc" stands beside it for
// scale: a plain walk over the same bytes in memory.
#include "bsdl/FileText.h"
#include "bsdl/RT_ParseVHDL.h"
#include "bsdl/ReaderBSDL.h"
#include "support/NeutralHost.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>

namespace vorel {
namespace {

struct TSample {
    std::string Path;
    std::string Text;
};

const std::vector<TSample>& Samples() {
    static const std::vector<TSample> samples = [] {
        const char* given = std::getenv("VOREL_TEST_DATA");
        const std::filesystem::path folder =
            std::filesystem::path(given != nullptr ? given : VOREL_SOURCE_DIR "/../shared/data") /
            "bsdl";
        std::vector<TSample> found;
        std::error_code none;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, none)) {
            const std::string suffix = LowerCase(entry.path().extension().string());
            if (suffix == ".bsd" || suffix == ".bsdl" || suffix == ".bsm") {
                const std::string path = entry.path().string();
                found.push_back({path, ReadWholeFile(path).value_or("")});
            }
        }
        return found;
    }();
    return samples;
}

void CountBytes(benchmark::State& state) {
    std::size_t bytes = 0;
    for (const TSample& sample : Samples()) {
        bytes += sample.Text.size();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
    state.counters["files"] = static_cast<double>(Samples().size());
}

std::string TemporaryFolder() {
    return std::filesystem::temp_directory_path().string();
}

void WordCount(benchmark::State& state) {
    while (state.KeepRunning()) {
        std::int64_t lines = 0;
        for (const TSample& sample : Samples()) {
            lines += std::count(sample.Text.begin(), sample.Text.end(), '\n');
        }
        benchmark::DoNotOptimize(lines);
    }
    CountBytes(state);
}
BENCHMARK(WordCount)->Unit(benchmark::kMillisecond);

class TTokenCounter : public TStringsParser {
public:
    std::int64_t Count(const std::string& text) {
        std::int64_t tokens = 0;
        SetText(text);
        for (NextRaw(); State.Kind != TTokenKind::Eof; NextRaw()) {
            ++tokens;
        }
        return tokens;
    }
};

void Tokenise(benchmark::State& state) {
    while (state.KeepRunning()) {
        for (const TSample& sample : Samples()) {
            benchmark::DoNotOptimize(TTokenCounter().Count(sample.Text));
        }
    }
    CountBytes(state);
}
BENCHMARK(Tokenise)->Unit(benchmark::kMillisecond);

void Parse(benchmark::State& state) {
    TNeutralHost host;
    while (state.KeepRunning()) {
        for (const TSample& sample : Samples()) {
            TEntityList entities;
            TBSDLParser(host, "", entities, sample.Path, nullptr).Parse(sample.Text);
            benchmark::DoNotOptimize(entities.Count());
        }
    }
    CountBytes(state);
}
BENCHMARK(Parse)->Unit(benchmark::kMillisecond);

void ParseAndAttributes(benchmark::State& state) {
    TNeutralHost host;
    const TIdMap idMap;
    while (state.KeepRunning()) {
        for (const TSample& sample : Samples()) {
            TReaderBSDL reader(host, idMap, "", sample.Path);
            reader.ReadText(sample.Text);
            benchmark::DoNotOptimize(reader.GetHadErrors());
        }
    }
    CountBytes(state);
}
BENCHMARK(ParseAndAttributes)->Unit(benchmark::kMillisecond);

void ParseAttributesAndBoundary(benchmark::State& state) {
    TNeutralHost host;
    const TIdMap idMap;
    while (state.KeepRunning()) {
        for (const TSample& sample : Samples()) {
            TReaderBSDL reader(host, idMap, "", sample.Path);
            reader.ReadText(sample.Text);
            const std::unique_ptr<TBSDLEntity> entity = reader.TakeEntity();
            std::int32_t cells = 0;
            benchmark::DoNotOptimize(entity ? entity->GetBoundaryCellCount(cells) : StatusOk);
        }
    }
    CountBytes(state);
}
BENCHMARK(ParseAttributesAndBoundary)->Unit(benchmark::kMillisecond);

// All of it, from the disk, with the log file of each parse.
void ReadFiles(benchmark::State& state) {
    TNeutralHost host;
    const TIdMap idMap;
    while (state.KeepRunning()) {
        for (const TSample& sample : Samples()) {
            TReaderBSDL reader(host, idMap, TemporaryFolder(), sample.Path);
            reader.Read();
            benchmark::DoNotOptimize(reader.TakeEntity());
        }
    }
    CountBytes(state);
}
BENCHMARK(ReadFiles)->Unit(benchmark::kMillisecond);

// A device of n cells, each on a pin of its own, with a pin map and a boundary register.
std::string MadeUpDevice(std::int64_t cells) {
    std::string ports;
    std::string map;
    std::string boundary;
    for (std::int64_t i = 0; i < cells; ++i) {
        const std::string number = std::to_string(i);
        const std::string control = std::to_string(i / 2 * 2);
        ports.append("    IO_").append(number).append(" : inout bit;\n");
        map.append("    \"IO_").append(number).append(" : A").append(number).append(", \" &\n");
        boundary.append("    \"").append(number).append(" (BC_1, IO_").append(number);
        boundary.append(", output3, X, ").append(control).append(", 1, Z), \" &\n");
    }
    return "entity MADE_UP is\n  generic (PHYSICAL_PIN_MAP : string := \"P\");\n  port (\n" +
           ports +
           "    TDI : in bit);\n  attribute PIN_MAP of MADE_UP : entity is PHYSICAL_PIN_MAP;\n"
           "  constant P : PIN_MAP_STRING :=\n" +
           map + "    \"TDI : T1\";\n  attribute BOUNDARY_LENGTH of MADE_UP : entity is " +
           std::to_string(cells) + ";\n  attribute BOUNDARY_REGISTER of MADE_UP : entity is\n" +
           boundary + "    \"\";\nend MADE_UP;\n";
}

void MadeUp(benchmark::State& state) {
    const std::string text = MadeUpDevice(state.range(0));
    TNeutralHost host;
    const TIdMap idMap;
    std::int32_t cells = 0;
    while (state.KeepRunning()) {
        TReaderBSDL reader(host, idMap, "", "made-up.bsd");
        reader.ReadText(text);
        const std::unique_ptr<TBSDLEntity> entity = reader.TakeEntity();
        if (!entity || Failed(entity->GetBoundaryCellCount(cells))) {
            state.SkipWithError("the device was not read");
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
    state.counters["cells"] = cells;
}
// The largest one makes a text of 60 MB.
BENCHMARK(MadeUp)->Arg(100'000)->Arg(200'000)->Arg(400'000)->Arg(640'000)->Unit(
    benchmark::kMillisecond);

} // namespace
} // namespace vorel
