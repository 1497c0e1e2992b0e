// The machine's parallel ports: the device files /dev/parport<N>, by number, except those for which
// the kernel knows no port.
#pragma once

#include "platform/ppdev/PpdevPort.h"
#include "support/Objects.h"

#include <map>
#include <memory>
#include <vector>

namespace vorel {

class TPpdevManager final : public TNonRefCountedInterfacedObject<IParallelPortManager> {
public:
    // Looks for the ports afresh.
    Status GetPortCount(std::int32_t& count) noexcept override;
    // Index into the ports that GetPortCount saw last. A port object once given stays good for as
    // long as the library is loaded, also when its device file goes away. Adds no reference.
    Status GetPort(std::int32_t index, IParallelPort*& port) noexcept override;

private:
    void ListPorts();

    std::vector<unsigned> Numbers;
    bool Listed = false;
    std::map<unsigned, std::unique_ptr<TPpdevPort>> Ports;
};

} // namespace vorel
