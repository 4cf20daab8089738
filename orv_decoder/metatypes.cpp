#include "orv_decoder/metatypes.h"

namespace orv {

void registerMetaTypes()
{
    qRegisterMetaType<OrvMeasurementResult>("orv::OrvMeasurementResult");
    qRegisterMetaType<OrvFreespacePackage>("orv::OrvFreespacePackage");
    qRegisterMetaType<OrvSensorPosition>("orv::OrvSensorPosition");
    qRegisterMetaType<OrvSensorRole>("orv::OrvSensorRole");
    qRegisterMetaType<std::vector<OrvSensorEcho>>("std::vector<orv::OrvSensorEcho>");
    qRegisterMetaType<FirmwareVersion>("orv::FirmwareVersion");
}

} // namespace orv
