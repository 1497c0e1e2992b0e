// The boundary-scan descriptions of one chain device, one for each of its part names: read from
// file on first demand, with the driver's own data in place of a file that is missing or bad.
#pragma once

#include "core/CoreContext.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vorel {

// True for the driver that stands for whatever the user said about an id.
bool IsGenericDriver(IVorelDriver& driver);

// Entities live as long as this object, replaced ones too: somebody may still hold pointers to
// them. A driver's own entity stays the driver's.
class TJTagDeviceBsdl {
public:
    explicit TJTagDeviceBsdl(const TCoreContext& context) : Context(context) {}

    // The description of `part`, null when there is neither a file nor default data. The id and
    // index say which file a generic device has. A bad file is told to the user in a message box,
    // once; beside a file that gave an entity a ".Log" with its report is saved.
    IBSDLEntity* GetEntity(const std::string& part, IVorelDriver& driver, std::uint32_t idCode,
                           std::int32_t chainIndex);
    // The next GetEntity of this part reads its file again.
    void Forget(const std::string& part);

private:
    std::string FindFile(IVorelDriver& driver, std::uint32_t idCode, std::int32_t chainIndex) const;
    std::string LibraryPath(IVorelDriver& driver) const;
    std::shared_ptr<IBSDLEntity> Load(const std::string& path, bool& hadErrors) const;
    void TellOfErrors(const std::string& path) const;

    const TCoreContext& Context;
    std::map<std::string, std::shared_ptr<IBSDLEntity>, std::less<>> Entities;
    std::vector<std::shared_ptr<IBSDLEntity>> Replaced;
};

} // namespace vorel
