// Statuses outside, exceptions inside: the one way from one to the other and back.
#pragma once

#include "vorel/Status.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace vorel {

// A failure with the status that it has at a boundary. The text is for logs and tests; it does not
// cross.
class EVorelError : public std::runtime_error {
public:
    EVorelError(Status status, const std::string& text) : std::runtime_error(text), Code(status) {}
    explicit EVorelError(const std::string& text) : EVorelError(StatusError, text) {}

    Status GetStatus() const noexcept { return Code; }

private:
    Status Code;
};

// The status of the exception being handled. Call it in a catch block only.
Status StatusOfCurrentException() noexcept;

// Runs the body of an interface operation: a body that returns normally succeeds, one that throws
// gives the failing status of its exception. A body may itself return a Status.
template<class Body>
Status Guard(Body&& body) noexcept {
    try {
        if constexpr (std::is_same_v<decltype(body()), Status>) {
            return std::forward<Body>(body)();
        } else {
            std::forward<Body>(body)();
            return StatusOk;
        }
    } catch (...) {
        return StatusOfCurrentException();
    }
}

// For callers inside the library: turns a failing status back into an exception. `what` names the
// action.
void Check(Status status, const char* what);

} // namespace vorel
