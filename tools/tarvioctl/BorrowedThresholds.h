#pragma once

#include "orv_decoder/SensorThreshold.h"

namespace orv {
class OrvCtrlClient;
}

namespace tarvioctl {

/// The thresholds of a sensor, given back to the ECU when somebody has used them: at the latest
/// when the object ends, whatever ends it.
class BorrowedThresholds
{
public:
    /// Throws Refusal when the ECU does not tell them or would not take them back.
    /// @param client borrowed
    BorrowedThresholds(orv::OrvCtrlClient& client, std::uint8_t sensor);
    ~BorrowedThresholds();
    BorrowedThresholds(const BorrowedThresholds&) = delete;
    BorrowedThresholds& operator=(const BorrowedThresholds&) = delete;

    /// Throws Refusal when the ECU does not take them.
    void giveBack();

private:
    bool write();

    orv::OrvCtrlClient& mClient;
    orv::SensorThreshold mThreshold;
    bool mIsLent = true;
};

} // namespace tarvioctl
