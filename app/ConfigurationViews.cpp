#include "app/ConfigurationViews.h"

#include "views/positions/OrvgSensorPositionView.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/OrvgThresholdView.h"

namespace {

template<typename View>
SettingsSection section(const QString& element, const QString& errorName, View* view)
{
    return {.element = element,
            .errorName = errorName,
            .write = [view](QXmlStreamWriter& writer) { view->writeXml(writer); },
            .read = [view](QXmlStreamReader& reader,
                           std::string& error) { return view->readFromXml(reader, error); }};
}

} // namespace

QVector<EcuItem> ecuItems(const ConfigurationViews& views)
{
    return {
        {.name = EcuSynchronisation::tr("thresholds"),
         .read = [view = views.thresholds] { return view->onReceiveAll(true); },
         .write = [view = views.thresholds] { return view->onTransmitAll(true); }},
        {.name = EcuSynchronisation::tr("measurement sequence"),
         .read = [view = views.sequence] { return view->readSteps(true); },
         .write = [view = views.sequence] { return view->writeSteps(true); }},
        {.name = EcuSynchronisation::tr("sensor positions"),
         .read = [view = views.positions] { return view->onReadSensorPositionTbClicked(true); },
         .write = [view = views.positions] { return view->onWriteSensorPositionTbClicked(true); }}};
}

QVector<SettingsSection> settingsSections(const ConfigurationViews& views)
{
    return {section(QStringLiteral("MSEQ"), QStringLiteral("Measurement sequence"), views.sequence),
            section(QStringLiteral("Thresholds"), QStringLiteral("Thresholds"), views.thresholds),
            section(QStringLiteral("MountPositions"), QStringLiteral("MountPositions"),
                    views.positions)};
}
