// What the user said about JTAG ids that no driver knows, kept across sessions in the ini file
// BSDL_FileMap.txt: one section JTAGMapping<n>, n from 1 without a gap, for each id.
//
//   IdCode=0ABC1234           hexadecimal; "0x" and "$" in front are accepted
//   InstructionLength=10      bits, decimal; 0 not set
//   LastAssociatedBSDL=...    a full file name; a bare one is not kept
//   UseInstructionLength=0    0 or 1
//   BSDLFileName<k>, LibraryReference<k>, Library<k>   file on offer k, from 1
//   JTAGIndex<k>, JTAGIndexBSDLLink<k>                 choice of a chain position, k from 1
//
// Reading stops at the first gap in a numbering, and after 1,000 files or positions of one id. Keys
// that are no longer needed and lines of other programs stay in the file.
#pragma once

#include "knowledge/JTAGIdMapping.h"
#include "support/Objects.h"
#include "vorel/DeviceManager.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vorel {

// The window in which a user edits a mapping, and what follows.
class IMappingEditor {
public:
    virtual ~IMappingEditor() = default;
    // True when the user confirmed; the mapping is changed then.
    virtual bool Edit(TJTAGIdMapping& mapping) = 0;
    // Tells the host that a mapping has changed (notification 12), so that views are drawn anew.
    virtual void NotifyChanged() = 0;
};

// The list of mappings and its file form.
class TMappingList {
public:
    // An id that is not in the list gets an empty mapping at its end.
    TJTAGIdMapping& FindOrMake(std::uint32_t idCode);
    const std::vector<std::unique_ptr<TJTAGIdMapping>>& Items() const noexcept { return Mappings; }

    // Adds what the ini text says. Any text will do.
    void ReadIni(std::string_view text);
    // The old ini text with all mappings written over it.
    std::string WriteIni(std::string_view oldText) const;

private:
    std::vector<std::unique_ptr<TJTAGIdMapping>> Mappings;
    std::unordered_map<std::uint32_t, TJTAGIdMapping*> ById;
};

// Loads the file in the constructor and writes it in the destructor; in between everything is kept
// in memory. Asking about an id or a chain position makes an entry for it.
class TGenericDeviceManager final : public TInterfacedObject<IGenericDeviceManager> {
public:
    // A missing file is an empty one. `editor` may be null and belongs to the caller.
    TGenericDeviceManager(std::string path, IMappingEditor* editor);
    // Writes nothing when the file's folder is missing, or for a file too large to have been read
    // whole; a failure to write is no error.
    ~TGenericDeviceManager() override;

    Status SetBSDLFile(std::uint32_t idCode, std::int32_t jtagIndex,
                       const WideText& path) noexcept override;
    Status SetInstructionLength(std::uint32_t idCode, std::int32_t bits) noexcept override;
    Status GetBSDLFile(std::uint32_t idCode, std::int32_t jtagIndex,
                       WideText& path) noexcept override;
    Status GetLibraryReference(std::uint32_t idCode, std::int32_t jtagIndex,
                               WideText& text) noexcept override;
    Status GetLibrary(std::uint32_t idCode, std::int32_t jtagIndex,
                      WideText& text) noexcept override;
    Status GetInstructionLength(std::uint32_t idCode, std::int32_t& bits) noexcept override;
    Status GetOtherBSDLFiles(std::uint32_t idCode, std::int32_t jtagIndex,
                             WideText& files) noexcept override;
    Status GetDisplayText(std::uint32_t idCode, std::int32_t jtagIndex,
                          WideText& text) noexcept override;
    Status EditMapping(std::uint32_t idCode) noexcept override;

    const std::vector<std::unique_ptr<TJTAGIdMapping>>& GetMappings() const noexcept {
        return Mappings.Items();
    }

private:
    using TextGetter = std::string (TJTAGIdMapping::*)(std::int32_t);
    Status GiveText(std::uint32_t idCode, std::int32_t jtagIndex, TextGetter getter,
                    WideText& text) noexcept;
    void Save() const;

    std::string Path;
    IMappingEditor* Editor;
    TMappingList Mappings;
};

} // namespace vorel
