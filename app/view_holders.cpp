#include "app/view_holders.h"

#include "views/positions/OrvgSensorPositionView.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/OrvgThresholdView.h"

namespace {

template<typename View>
PartHolder holder(View* view, bool (View::*read)(bool silent), bool (View::*write)(bool silent))
{
    return {.writeXml = [view](QXmlStreamWriter& writer) { view->writeXml(writer); },
            .readFromXml = [view](QXmlStreamReader& reader,
                                  std::string& error) { return view->readFromXml(reader, error); },
            .readFromEcu = [view, read] { return (view->*read)(true); },
            .writeToEcu = [view, write] { return (view->*write)(true); }};
}

} // namespace

ConfigurationHolders holdersOf(const ConfigurationViews& views)
{
    return {.sequence = holder(views.sequence, &OrvgMseqView::readSteps, &OrvgMseqView::writeSteps),
            .thresholds = holder(views.thresholds, &OrvgThresholdView::onReceiveAll,
                                 &OrvgThresholdView::onTransmitAll),
            .positions =
                holder(views.positions, &OrvgSensorPositionView::onReadSensorPositionTbClicked,
                       &OrvgSensorPositionView::onWriteSensorPositionTbClicked)};
}
