// A driver module that needs a function that nobody has.
#include "drivers/ModuleExport.h"
#include "vorel/Driver.h"

extern "C" int VorelFunctionThatNobodyHas();

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    *count = VorelFunctionThatNobodyHas();
    return vorel::StatusOk;
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t, vorel::IVorelDriver** driver) {
    *driver = nullptr;
    return vorel::StatusOk;
}
