#include "objectcode/Rt_TAP.h"

#include <algorithm>

namespace vorel {

namespace {

// How the search first came to a state.
struct TReached {
    TTapState From = TTapState::UNDEFINED;
    char Tms = '\0'; // '0' or '1'; nothing for a state that was not reached yet
};

using TReachedTable = std::array<TReached, TapStateCount>;

std::string PathTo(TTapState fromState, TTapState toState, const TReachedTable& reached) {
    std::string path;
    for (TTapState state = toState; path.empty() || state != fromState;) {
        const TReached& step = reached[static_cast<std::size_t>(state)];
        path.push_back(step.Tms);
        state = step.From;
    }
    std::reverse(path.begin(), path.end());
    return path;
}

} // namespace

std::string FindTmsPath(TTapState fromState, TTapState toState) {
    if (fromState == toState) {
        return {};
    }
    // Breadth first with TMS 0 before 1: a state is first reached by the shortest path that sorts
    // first.
    TReachedTable reached{};
    std::array<TTapState, TapStateCount> queue{fromState};
    std::size_t filled = 1;
    for (std::size_t next = 0; next < filled; ++next) {
        for (const int tms : {0, 1}) {
            const TTapState state = TapStateAfter(queue[next], tms);
            TReached& entry = reached[static_cast<std::size_t>(state)];
            if (entry.Tms != '\0' || state == fromState) {
                continue;
            }
            entry = {queue[next], static_cast<char>('0' + tms)};
            if (state == toState) {
                return PathTo(fromState, toState, reached);
            }
            queue[filled++] = state;
        }
    }
    return {};
}

} // namespace vorel
