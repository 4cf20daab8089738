#include "tools/tarvioctl/StreamTally.h"

namespace tarvioctl {

void StreamTally::addRecord(Time arrival)
{
    if (mRecords == 0)
        mFirst = arrival;
    mLast = arrival;
    ++mRecords;
}

QString StreamTally::summary() const
{
    QString text = QStringLiteral("%1 records").arg(mRecords);
    if (const double rate = ratePerSecond(); rate > 0)
        text += QStringLiteral(", %1 a second").arg(rate, 0, 'f', 1);
    return text + QStringLiteral(", %1 datagrams that cannot be decoded").arg(mUndecodable);
}

// Between the first and the last one: what went before and after says nothing about the ECU.
double StreamTally::ratePerSecond() const
{
    const double seconds = std::chrono::duration<double>(mLast - mFirst).count();
    return mRecords < 2 || seconds <= 0 ? 0 : static_cast<double>(mRecords - 1) / seconds;
}

} // namespace tarvioctl
