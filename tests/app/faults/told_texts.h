#pragma once

#include "tests/app/faults/EcuOperation.h"

/// What the user is told of the exchanges of an operation.
namespace told {

using Tell = std::function<Told(const std::vector<CarriedOut>&)>;

/// The same after the question whether something may be overwritten.
Tell afterQuestion(const char* title, Tell tell);

/// A box with the reason of the first failure.
Told failures(const std::vector<CarriedOut>& exchanges);
/// One box with a line for each sensor that failed.
Told failuresBySensor(const std::vector<CarriedOut>& exchanges);

/// The parts that failed, or how well it went.
Told readParts(const std::vector<CarriedOut>& exchanges);
Told transmittedParts(const std::vector<CarriedOut>& exchanges);

Told transmittedConnection(const std::vector<CarriedOut>& exchanges);
Told lostConnection(const std::vector<CarriedOut>& exchanges);
Told foundConnection(const std::vector<CarriedOut>& exchanges);

/// A recording tells of no window that could not be moved.
Told recorded(const std::vector<CarriedOut>& exchanges);

} // namespace told
