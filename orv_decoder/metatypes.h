#pragma once

#include "orv_decoder/FirmwareVersion.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/OrvSensorPosition.h"

#include <QMetaType>

Q_DECLARE_METATYPE(orv::OrvMeasurementResult)
Q_DECLARE_METATYPE(orv::OrvFreespacePackage)
Q_DECLARE_METATYPE(orv::OrvSensorPosition)
Q_DECLARE_METATYPE(orv::OrvSensorRole)
Q_DECLARE_METATYPE(orv::OrvSensorEcho)
Q_DECLARE_METATYPE(orv::FirmwareVersion)

namespace orv {

/// Makes the records that signals carry known to Qt by name. Once a program.
void registerMetaTypes();

} // namespace orv
