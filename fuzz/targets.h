#pragma once

#include "fuzz/decoder_properties.h"
#include "fuzz/ecu_properties.h"
#include "fuzz/view_properties.h"
#include "fuzz/window_properties.h"

#include <array>

/// What is fuzzed, under the name of its folders in corpus/ and findings/.
struct FuzzTarget
{
    const char* name;
    bool (*holds)(std::span<const std::uint8_t>);
};

inline constexpr std::array kFuzzTargets{
    FuzzTarget{"measurement", measurementDecoderHolds},
    FuzzTarget{"freespace", freespaceDecoderHolds},
    FuzzTarget{"control_reply", controlReplyDecoderHolds},
    FuzzTarget{"control_request", controlRequestDecoderHolds},
    FuzzTarget{"settings_file", settingsFileHolds},
    FuzzTarget{"settings_sections", settingsSectionsHold},
    FuzzTarget{"settings_store", settingsStoreHolds},
    FuzzTarget{"control_client", controlClientHolds},
    FuzzTarget{"link_supervisor", linkSupervisorHolds},
    FuzzTarget{"live_view", liveViewHolds},
    FuzzTarget{"plot", plotHolds},
    FuzzTarget{"freespace_view", freespaceViewHolds},
    FuzzTarget{"saved_states", savedStatesHold},
};
