// The whole BSDL reader on bytes in memory: parse, attributes, boundary register, texts, report.
#include "bsdl/BSDLReport.h"
#include "bsdl/ReaderBSDL.h"
#include "support/NeutralHost.h"

namespace {

void UseEntity(vorel::TBSDLEntity& entity) {
    using namespace vorel;
    std::vector<std::string> lines;
    DumpEntity(entity, lines);
    WideText text;
    for (const auto& pin : entity.Pins) {
        pin->GetText(text);
        pin->GetLongText(text);
    }
    std::int32_t count = 0;
    if (Succeeded(entity.GetBoundaryCellCount(count))) {
        for (TBoundaryCell* cell : entity.GetBoundaryCells()) {
            cell->GetText(text);
        }
    }
    IBSDLOpCode* opCode = nullptr;
    for (const auto& association : entity.RegisterAssociations) {
        association->GetOpCodeCount(count);
        association->GetOpCode(count, opCode);
    }
    for (const auto& [key, port] : entity.Ports) {
        port->GetText();
        port->GetFullName();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vorel::TNeutralHost host;
    static const vorel::TIdMap idMap;
    vorel::TReaderBSDL reader(host, idMap, "", "fuzz.bsd");
    reader.ReadText(std::string(reinterpret_cast<const char*>(data), size));
    while (const std::unique_ptr<vorel::TBSDLEntity> entity = reader.TakeEntity()) {
        UseEntity(*entity);
    }
    return 0;
}
