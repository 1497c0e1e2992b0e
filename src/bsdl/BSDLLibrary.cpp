#include "bsdl/BSDLLibrary.h"

#include "bsdl/FileText.h"

namespace vorel {

namespace {

bool IsRelative(std::string_view path) {
    return path.find(':') == std::string_view::npos && !path.starts_with("\\\\") &&
           !path.starts_with('/');
}

// The path with the suffix of its file name, if it has one, replaced.
std::string WithSuffix(const std::string& path, std::string_view suffix) {
    const std::string_view name = FileNameOf(path);
    const std::string_view stem = StemOf(path);
    return path.substr(0, path.size() - name.size()).append(stem).append(suffix);
}

} // namespace

TBSDLLibrary::TBSDLLibrary(IHostClient& host, IZipExtractor& zip, std::string libraryFolder,
                           std::string temporaryFolder)
    : Host(host),
      Zip(zip),
      LibraryFolder(WithSeparator(std::move(libraryFolder))),
      TemporaryFolder(WithSeparator(std::move(temporaryFolder))) {}

std::unique_ptr<TBSDLEntity> TBSDLLibrary::LoadBsdlFile(const std::string& fileName,
                                                        bool& hadError) {
    hadError = false;
    if (!FileExists(fileName)) {
        return nullptr;
    }
    TReaderBSDL reader(Host, GetIdMap(), TemporaryFolder, fileName);
    reader.Read();
    hadError = reader.GetHadErrors();
    return reader.TakeEntity();
}

std::string TBSDLLibrary::ResolveBsdlPath(const std::string& fileName, const std::string& vendor,
                                          const std::string& baseFolder,
                                          const std::string& family) const {
    if (!IsRelative(fileName)) {
        return fileName;
    }
    const std::string base = baseFolder.empty() ? LibraryFolder : WithSeparator(baseFolder);
    constexpr char separator = std::filesystem::path::preferred_separator;
    return base + "BSDL" + separator + vendor + separator + family + separator + fileName;
}

std::string TBSDLLibrary::FindBsdlFile(const std::string& path) {
    const std::string_view name = FileNameOf(path);
    if (name.empty()) {
        return {};
    }
    if (FileExists(path)) {
        return path;
    }
    std::string copy = TemporaryFolder + std::string(name);
    if (FileExists(copy)) {
        return copy;
    }
    // File systems with case know the archive under either name.
    for (const std::string_view suffix : {std::string_view(".Zip"), std::string_view(".zip")}) {
        const std::string archive = WithSuffix(path, suffix);
        if (FileExists(archive)) {
            UnzipAll(archive, TemporaryFolder);
            return FileExists(copy) ? copy : std::string();
        }
    }
    return {};
}

bool TBSDLLibrary::UnzipAll(const std::string& zipFile, const std::string& folder) {
    return FileExists(zipFile) && Zip.ExtractAll(zipFile, folder);
}

const TIdMap& TBSDLLibrary::GetIdMap() {
    if (!IdMap) {
        constexpr char separator = std::filesystem::path::preferred_separator;
        IdMap.emplace(LibraryFolder + "BSDL" + separator + "Generic" + separator +
                      "BSDL_IdMap.Txt");
    }
    return *IdMap;
}

std::uint32_t TBSDLLibrary::BsdlIdPatternToValue(std::string& pattern) {
    return GetIdMap().PatternToValue(pattern);
}

} // namespace vorel
