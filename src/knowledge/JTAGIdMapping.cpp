#include "knowledge/JTAGIdMapping.h"

#include "support/Text.h"

#include <algorithm>

namespace vorel {

namespace {

// A name with a drive, a network start, or (on systems without drives) a path from the root.
bool IsFullName(std::string_view fileName) noexcept {
    return fileName.find(':') != std::string_view::npos || fileName.starts_with("\\\\") ||
           fileName.starts_with('/');
}

template<class T>
const T* ItemAt(const std::vector<T>& list, int index) noexcept {
    const auto position = static_cast<std::size_t>(index);
    return index < 0 || position >= list.size() ? nullptr : &list[position];
}

} // namespace

const TBSDLAndLibraryLink* TJTAGIdMapping::LinkAt(int index) const noexcept {
    return ItemAt(Links, index);
}

const TJTAGIndexAndBSDLLink* TJTAGIdMapping::IndexLinkAt(int index) const noexcept {
    return ItemAt(IndexLinks, index);
}

TBSDLAndLibraryLink& TJTAGIdMapping::AddLink(std::string_view bsdlFileName) {
    return Links.emplace_back(TBSDLAndLibraryLink{{}, std::string(bsdlFileName), {}});
}

TJTAGIndexAndBSDLLink& TJTAGIdMapping::GetIndexLink(std::int32_t jtagIndex) {
    const auto [entry, isNew] = IndexLinkPositions.try_emplace(jtagIndex, IndexLinks.size());
    if (isNew) {
        IndexLinks.push_back({jtagIndex, LastAssociatedBSDL});
    }
    return IndexLinks[entry->second];
}

void TJTAGIdMapping::SetIndexLinkFile(std::int32_t jtagIndex, std::string_view fileName) {
    GetIndexLink(jtagIndex).BSDLFileName = fileName;
}

const TBSDLAndLibraryLink* TJTAGIdMapping::FindLinkByBareName(std::string_view fileName) const {
    const auto link = std::find_if(Links.begin(), Links.end(), [&](const auto& candidate) {
        return SameText(FileNameOf(candidate.BSDLFileName), fileName);
    });
    return link == Links.end() ? nullptr : &*link;
}

const TBSDLAndLibraryLink* TJTAGIdMapping::FindLinkOf(std::int32_t jtagIndex) {
    const std::string file = GetBSDLFile(jtagIndex);
    const auto link = std::find_if(Links.begin(), Links.end(), [&](const auto& candidate) {
        return SameText(candidate.BSDLFileName, file);
    });
    return link == Links.end() ? nullptr : &*link;
}

std::string TJTAGIdMapping::GetBSDLFile(std::int32_t jtagIndex) {
    return UseInstructionLength ? std::string() : GetIndexLink(jtagIndex).BSDLFileName;
}

void TJTAGIdMapping::SetBSDLFile(std::int32_t jtagIndex, std::string_view fileName) {
    const TBSDLAndLibraryLink* link = IsFullName(fileName) ? nullptr : FindLinkByBareName(fileName);
    const std::string resolved = link != nullptr ? link->BSDLFileName : std::string(fileName);
    SetIndexLinkFile(jtagIndex, resolved);
    LastAssociatedBSDL = resolved;
}

void TJTAGIdMapping::SetLastAssociatedBSDL(std::string_view fileName) {
    if (IsFullName(fileName)) {
        LastAssociatedBSDL = fileName;
    } else if (const TBSDLAndLibraryLink* link = FindLinkByBareName(fileName)) {
        LastAssociatedBSDL = link->BSDLFileName;
    }
}

std::string TJTAGIdMapping::GetLibraryReference(std::int32_t jtagIndex) {
    const TBSDLAndLibraryLink* link = FindLinkOf(jtagIndex);
    return link == nullptr ? std::string() : link->LibraryReference;
}

std::string TJTAGIdMapping::GetLibrary(std::int32_t jtagIndex) {
    const TBSDLAndLibraryLink* link = FindLinkOf(jtagIndex);
    return link == nullptr ? std::string() : link->Library;
}

std::string TJTAGIdMapping::GetOtherBSDLFiles(std::int32_t jtagIndex) {
    std::string text;
    if (UseInstructionLength) {
        return text;
    }
    const std::string own = GetBSDLFile(jtagIndex);
    for (const TBSDLAndLibraryLink& link : Links) {
        if (!SameText(link.BSDLFileName, own)) {
            text.append(text.empty() ? "\"" : ",\"").append(FileNameOf(link.BSDLFileName));
            text.push_back('"');
        }
    }
    return text;
}

std::string TJTAGIdMapping::GetDisplayText(std::int32_t jtagIndex) {
    if (!UseInstructionLength) {
        return std::string(FileNameOf(GetBSDLFile(jtagIndex)));
    }
    return InstructionLength == 0 ? std::string()
                                  : "Instruction Length = " + std::to_string(InstructionLength);
}

} // namespace vorel
