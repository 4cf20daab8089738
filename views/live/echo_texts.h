#pragma once

#include "orv_decoder/OrvMeasurementResult.h"

#include <QString>

/// The two cells of an echo in the echo table.
struct EchoTexts
{
    QString timeOfFlight; ///< milliseconds, six significant digits
    QString magnitude;    ///< the code and, in brackets, its level as a fraction of full scale
};

/// Both texts are empty for a time of flight of 0, which stands for "no echo".
EchoTexts echoTexts(const orv::OrvSensorEcho& echo);
