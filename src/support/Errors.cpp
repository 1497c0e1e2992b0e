#include "support/Errors.h"

#include <array>
#include <cstdio>
#include <new>

namespace vorel {

Status StatusOfCurrentException() noexcept {
    try {
        throw;
    } catch (const EVorelError& error) {
        return Failed(error.GetStatus()) ? error.GetStatus() : StatusError;
    } catch (const std::bad_alloc&) {
        return StatusOutOfMemory;
    } catch (const std::length_error&) {
        return StatusOutOfMemory;
    } catch (const std::out_of_range&) {
        return StatusIndexOutOfRange;
    } catch (...) {
        return StatusError;
    }
}

void Check(Status status, const char* what) {
    if (Succeeded(status)) {
        return;
    }
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "0x%08X", static_cast<unsigned>(status));
    throw EVorelError(status, std::string(what) + " failed with status " + code.data());
}

} // namespace vorel
