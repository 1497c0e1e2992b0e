// A driver module that needs a function that nobody has.
#include "vorel/Driver.h"

extern "C" {

int VorelFunctionThatNobodyHas();

__attribute__((visibility("default"))) vorel::Status GetVorelDriverCount(std::int32_t* count) {
    *count = VorelFunctionThatNobodyHas();
    return vorel::StatusOk;
}

__attribute__((visibility("default"))) vorel::Status GetVorelDriver(std::int32_t,
                                                                    vorel::IVorelDriver** driver) {
    *driver = nullptr;
    return vorel::StatusOk;
}

} // extern "C"
