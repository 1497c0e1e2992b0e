#include "bsdl/ReaderBSDL.h"

#include "bsdl/FileText.h"

namespace vorel {

TReaderBSDL::TReaderBSDL(IHostClient& host, const TIdMap& idMap, std::string temporaryFolder,
                         std::string fileName, IBSDLLogger* logger)
    : Host(host),
      IdMap(idMap),
      TemporaryFolder(std::move(temporaryFolder)),
      FileName(std::move(fileName)),
      Logger(logger) {}

void TReaderBSDL::Read() {
    if (const std::optional<std::string> text = ReadWholeFile(FileName)) {
        ReadText(*text);
    }
}

void TReaderBSDL::ReadText(const std::string& text) {
    TBSDLParser parser(Host, TemporaryFolder, Entities, FileName, Logger);
    parser.Parse(text);
    ErrorLine = parser.ErrorLine;
    ErrorColumn = parser.ErrorColumn;
    for (const auto& [key, entity] : Entities) {
        static_cast<TBSDLEntity&>(*entity).ParseAttributes(IdMap, parser);
    }
}

std::unique_ptr<TBSDLEntity> TReaderBSDL::TakeEntity() {
    // All entities of this list are made by TBSDLParser.
    return std::unique_ptr<TBSDLEntity>(static_cast<TBSDLEntity*>(Entities.TakeFirst().release()));
}

} // namespace vorel
