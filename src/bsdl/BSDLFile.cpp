#include "bsdl/BSDLFile.h"

#include "bsdl/FileText.h"
#include "bsdl/IdMap.h"
#include "bsdl/ReaderBSDL.h"
#include "support/NeutralHost.h"
#include "support/Text.h"

namespace vorel {

namespace {

// Keeps the parser's first message.
class TMessageHost final : public TNeutralHost {
public:
    Status AddMessage(const WideText&, const WideText& text, const WideText&,
                      const WideText&) noexcept override {
        return Guard([&] {
            if (First.empty()) {
                First = ToUtf8(text);
            }
        });
    }

    std::string First;
};

} // namespace

std::string TBSDLFile::DescribeError() const {
    return "line " + std::to_string(ErrorLine) + ", column " + std::to_string(ErrorColumn) + ": " +
           (ErrorText.empty() ? "the text cannot be understood" : ErrorText);
}

TBSDLFile ReadBsdlFile(const std::string& path) {
    TBSDLFile file;
    const std::optional<std::string> text = ReadWholeFile(path);
    if (!text) {
        return file;
    }
    file.Readable = true;
    TMessageHost host;
    const TIdMap noMap;
    TReaderBSDL reader(host, noMap, std::string(), path);
    reader.ReadText(*text);
    file.ErrorLine = reader.GetErrorLine();
    file.ErrorColumn = reader.GetErrorColumn();
    file.ErrorText = host.First.substr(0, host.First.rfind(" at Line:"));
    file.Entity = reader.TakeEntity();
    return file;
}

} // namespace vorel
