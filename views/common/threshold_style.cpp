#include "views/common/threshold_style.h"

#include "orv_decoder/tables.h"

#include <QCoreApplication>

QString segmentDurationText(int timeIndex)
{
    const double durationUs = orv::kSegmentDurationsUs.at(static_cast<std::size_t>(timeIndex));
    return QCoreApplication::translate("Threshold", "%1 ms").arg(durationUs / 1000);
}
