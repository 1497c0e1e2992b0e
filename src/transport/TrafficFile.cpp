#include "transport/TrafficFile.h"

#include "support/Errors.h"

#include <fstream>

namespace vorel {

void WriteTrafficFile(const std::string& path, const std::string& contents) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    if (!file) {
        throw EVorelError(path + ": the recording could not be written; does the folder exist and "
                                 "is it writable?");
    }
}

} // namespace vorel
