// The way from a device's name to its BSDL entity: files in a library tree, loose or packed in a
// zip archive of the same name.
//
// The tree: <library folder>/BSDL/<vendor>/<family>/<file>, and the id map in
// <library folder>/BSDL/Generic/BSDL_IdMap.Txt, which is read once, on first use.
#pragma once

#include "bsdl/IdMap.h"
#include "bsdl/ReaderBSDL.h"
#include "platform/ZipExtractor.h"

namespace vorel {

class TBSDLLibrary {
public:
    // `host` and `zip` must stay as long as the library. Folders are UTF-8, with or without a
    // separator at the end; `temporaryFolder` takes log files and unpacked copies.
    TBSDLLibrary(IHostClient& host, IZipExtractor& zip, std::string libraryFolder,
                 std::string temporaryFolder);

    // The first entity of the file, also when the parse met an error; null when there is no such
    // file or no entity in it.
    std::unique_ptr<TBSDLEntity> LoadBsdlFile(const std::string& fileName, bool& hadError);

    // An absolute path, or one with a ":" or two backslashes in front, stays as it is. A relative
    // one is below `baseFolder`, or below the library's folder when that is empty.
    std::string ResolveBsdlPath(const std::string& fileName, const std::string& vendor,
                                const std::string& baseFolder, const std::string& family) const;

    // The file itself, else a copy unpacked earlier, else one unpacked now from the archive of the
    // same name; empty when there is none. Unpacked copies stay.
    std::string FindBsdlFile(const std::string& path);

    // Unpacks all files of an archive into one folder; false when that did not go well for all.
    bool UnzipAll(const std::string& zipFile, const std::string& folder);

    const TIdMap& GetIdMap();
    // See TIdMap::PatternToValue.
    std::uint32_t BsdlIdPatternToValue(std::string& pattern);

private:
    IHostClient& Host;
    IZipExtractor& Zip;
    const std::string LibraryFolder; // both with a separator at the end
    const std::string TemporaryFolder;
    std::optional<TIdMap> IdMap;
};

} // namespace vorel
