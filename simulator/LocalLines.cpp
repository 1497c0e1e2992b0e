#include "simulator/LocalLines.h"

namespace vorel::sim {

void TLocalLines::Clock(bool tms, bool tdi) {
    Tms = tms;
    Tdi = tdi;
    Target.Clock(tms, tdi);
}

void TLocalLines::ClockSampled(bool tms, bool tdi) {
    Target.SetLines(false, tms, tdi);
    Sample();
    Clock(tms, tdi);
}

void TLocalLines::SetTms(bool level) {
    Tms = level;
    Target.SetLines(false, Tms, Tdi);
}

void TLocalLines::SetTdi(bool level) {
    Tdi = level;
    Target.SetLines(false, Tms, Tdi);
}

void TLocalLines::Sample() {
    Samples.push_back(IsHigh(Target.Tdo()) ? 1 : 0);
}

bool TLocalLines::Finish(std::vector<std::uint8_t>& samples) {
    samples.insert(samples.end(), Samples.begin(), Samples.end());
    Samples.clear();
    return true;
}

} // namespace vorel::sim
