// What the user said about one JTAG id that no driver knows: the BSDL files to choose from, with
// the library parts that go with them, or just the length of the instruction register. Each chain
// position keeps its own choice of file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vorel {

// One file on offer.
struct TBSDLAndLibraryLink {
    std::string LibraryReference; // component name in the library
    std::string BSDLFileName;     // with or without folder
    std::string Library;          // library file
};

// The choice of one chain position.
struct TJTAGIndexAndBSDLLink {
    std::int32_t JTAGIndex = 0;
    std::string BSDLFileName;
};

// Plain data of one owner (TGenericDeviceManager). File names compare without case. References to
// links are void once a link is added or the links are cleared.
class TJTAGIdMapping {
public:
    explicit TJTAGIdMapping(std::uint32_t idCode) : IdCode(idCode) {}

    std::uint32_t GetIdCode() const noexcept { return IdCode; }
    int LinkCount() const noexcept { return static_cast<int>(Links.size()); }
    int IndexLinkCount() const noexcept { return static_cast<int>(IndexLinks.size()); }
    // Null for an index out of range.
    const TBSDLAndLibraryLink* LinkAt(int index) const noexcept;
    const TJTAGIndexAndBSDLLink* IndexLinkAt(int index) const noexcept;
    TBSDLAndLibraryLink& AddLink(std::string_view bsdlFileName);
    void ClearLinks() noexcept { Links.clear(); }

    // The entry of this chain position. A missing one is made, with the file chosen last: from then
    // on the position keeps that file.
    TJTAGIndexAndBSDLLink& GetIndexLink(std::int32_t jtagIndex);
    // Stores the name as it is.
    void SetIndexLinkFile(std::int32_t jtagIndex, std::string_view fileName);

    // The position's file; empty while only the instruction length is used. Makes a missing entry.
    std::string GetBSDLFile(std::int32_t jtagIndex);
    // A name with neither drive nor network start stands for the first link with this bare file
    // name, and for itself when there is none.
    void SetBSDLFile(std::int32_t jtagIndex, std::string_view fileName);
    // Like SetBSDLFile, but a bare name without link leaves the old value.
    void SetLastAssociatedBSDL(std::string_view fileName);
    const std::string& GetLastAssociatedBSDL() const noexcept { return LastAssociatedBSDL; }

    // Fields of the link with the position's file; empty without one.
    std::string GetLibraryReference(std::int32_t jtagIndex);
    std::string GetLibrary(std::int32_t jtagIndex);
    // The files on offer except the position's own, each as bare file name in double quotes, joined
    // by commas. Empty while only the instruction length is used.
    std::string GetOtherBSDLFiles(std::int32_t jtagIndex);
    // What a list of devices shows: the instruction length (nothing for 0) or the bare file name.
    std::string GetDisplayText(std::int32_t jtagIndex);

    std::int32_t InstructionLength = 0; // bits; 0: not set
    bool UseInstructionLength = false;

private:
    const TBSDLAndLibraryLink* FindLinkByBareName(std::string_view fileName) const;
    const TBSDLAndLibraryLink* FindLinkOf(std::int32_t jtagIndex);

    std::uint32_t IdCode;
    std::vector<TBSDLAndLibraryLink> Links;
    std::vector<TJTAGIndexAndBSDLLink> IndexLinks;
    std::unordered_map<std::int32_t, std::size_t> IndexLinkPositions;
    std::string LastAssociatedBSDL; // the default of positions with no choice yet
};

} // namespace vorel
