#include "views/live/echo_texts.h"

#include "orv_decoder/tables.h"

#include <QCoreApplication>

namespace {

QString magnitudeText(std::uint8_t code)
{
    const double level = orv::kMagnitudeLevels[orv::magnitudeIndex(code)];
    return QCoreApplication::translate("OrvgLiveView", "%1 (%2)").arg(code).arg(level, 3, 'f', 2);
}

} // namespace

EchoTexts echoTexts(const orv::OrvSensorEcho& echo)
{
    if (echo.timeOfFlight == 0)
        return {};
    return {QString::number(echo.timeOfFlight / 1000.0, 'g', 6), magnitudeText(echo.magnitude)};
}
