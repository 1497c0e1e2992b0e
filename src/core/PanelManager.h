// What the device manager tells the debugger's panels: which soft devices came into use and which
// left. The device manager owns the object; calls come on the host's main thread.
#pragma once

namespace vorel {

class IVorelDevice;

class IPanelManager {
public:
    virtual ~IPanelManager() = default;

    // `device` may be null, which does nothing. It stays valid until its RemoveDevice, or until all
    // devices are freed at the end, which is not announced. Failures raise EVorelError.
    virtual void AddDevice(IVorelDevice* device) = 0;
    virtual void RemoveDevice(IVorelDevice* device) = 0;
};

} // namespace vorel
