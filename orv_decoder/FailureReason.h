#pragma once

#include <string>
#include <utility>

namespace orv {

/// What has operations that throw nothing: they return false and leave the reason here.
class FailureReason
{
public:
    /// Reason of the last failure; successes leave it in place.
    std::string lastError() const { return mLastError; }

protected:
    FailureReason() = default;
    ~FailureReason() = default;

    /// Keeps the reason and returns false.
    bool fail(std::string reason)
    {
        mLastError = std::move(reason);
        return false;
    }

private:
    std::string mLastError;
};

} // namespace orv
