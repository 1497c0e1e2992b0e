#include "drivers/ModuleExports.h"

#include "support/Errors.h"

#if defined(_WIN32)
#define VOREL_EXPORT __declspec(dllexport)
#else
#define VOREL_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

VOREL_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count);
VOREL_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver);

vorel::Status GetVorelDriverCount(std::int32_t* count) {
    return vorel::Guard([&] { *count = vorel::ModuleDriverCount(); });
}

vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    *driver = nullptr;
    return vorel::Guard([&] {
        if (index < 0 || index >= vorel::ModuleDriverCount()) {
            throw vorel::EVorelError(vorel::StatusIndexOutOfRange, "no such driver");
        }
        *driver = vorel::MakeModuleDriver(static_cast<std::size_t>(index));
    });
}

} // extern "C"
