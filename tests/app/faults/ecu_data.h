#pragma once

#include "ecu/configuration/EcuConfiguration.h"
#include "orv_decoder/EcuNetworkSettings.h"
#include "tools/ecu_simulator/EcuState.h"

#include <QString>

#include <functional>

class QXmlStreamWriter;

/// The sections of a settings file.
QString textOf(const std::function<void(QXmlStreamWriter&)>& writeSections);

/// A configuration as WindowUnderFault::configuration() has it.
QString textOf(const EcuConfiguration& configuration);

/// Network settings as the fields of the connection dialog show them.
QString fieldsOf(const orv::EcuNetworkSettings& network);

/// What the ECU brings back after a restart.
EcuConfiguration keptBy(const ecusim::EcuState& ecu);

/// Network settings that differ in every item from those of another seed.
orv::EcuNetworkSettings networkOfSeed(int seed);
