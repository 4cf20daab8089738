#include "app/configuration_parts.h"

#include "app/EcuSynchronisation.h"
#include "ecu/configuration/network_section.h"
#include "views/positions/OrvgSensorPositionView.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/OrvgThresholdView.h"

namespace {

template<typename View>
ConfigurationPart part(const QString& element, const QString& errorName, View* view,
                       const EcuTransfer& ecu)
{
    return {.element = element,
            .errorName = errorName,
            .writeXml = [view](QXmlStreamWriter& writer) { view->writeXml(writer); },
            .readFromXml = [view](QXmlStreamReader& reader,
                                  std::string& error) { return view->readFromXml(reader, error); },
            .ecu = ecu};
}

} // namespace

QVector<ConfigurationPart> configurationParts(const ConfigurationViews& views, QSettings& store)
{
    const auto [thresholds, sequence, positions] = views;
    return {
        settings::networkPart(store),
        part(QStringLiteral("MSEQ"), QStringLiteral("Measurement sequence"), sequence,
             {.name = EcuSynchronisation::tr("measurement sequence"),
              .turn = 2,
              .read = [view = sequence] { return view->readSteps(true); },
              .write = [view = sequence] { return view->writeSteps(true); }}),
        part(QStringLiteral("Thresholds"), QStringLiteral("Thresholds"), thresholds,
             {.name = EcuSynchronisation::tr("thresholds"),
              .turn = 1,
              .read = [view = thresholds] { return view->onReceiveAll(true); },
              .write = [view = thresholds] { return view->onTransmitAll(true); }}),
        part(QStringLiteral("MountPositions"), QStringLiteral("MountPositions"), positions,
             {.name = EcuSynchronisation::tr("sensor positions"),
              .turn = 3,
              .read = [view = positions] { return view->onReadSensorPositionTbClicked(true); },
              .write = [view = positions] { return view->onWriteSensorPositionTbClicked(true); }})};
}
