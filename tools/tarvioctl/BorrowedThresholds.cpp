#include "tools/tarvioctl/BorrowedThresholds.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "tools/tarvioctl/Command.h"
#include "tools/tarvioctl/texts.h"

namespace tarvioctl {

namespace {

// The moment in which a sweep ends is one in which replies still are on their way.
constexpr int kAttempts = 3;

} // namespace

BorrowedThresholds::BorrowedThresholds(orv::OrvCtrlClient& client, std::uint8_t sensor)
    : mClient(client)
{
    if (!client.readThresholds(sensor, mThreshold) || !write())
        throw Refusal(noAnswer(client));
}

BorrowedThresholds::~BorrowedThresholds()
{
    if (mIsLent)
        write();
}

void BorrowedThresholds::giveBack()
{
    mIsLent = !write();
    if (mIsLent)
        throw Refusal(QStringLiteral("The thresholds of sensor %1 could not be given back (%2): "
                                     "restart the ECU, which has kept them.")
                          .arg(mThreshold.sensorId + 1)
                          .arg(QString::fromStdString(mClient.lastError())));
}

// As a sweep writes: until the ECU's restart only.
bool BorrowedThresholds::write()
{
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (mClient.writeThresholds(mThreshold, false))
            return true;
    }
    return false;
}

} // namespace tarvioctl
