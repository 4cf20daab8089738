-- What the numbers on the wire stand for, as docs/protocol.md lists it.

-- A Lua list with the wire's own indexes, which begin with 0.
local function from_zero(list)
    local values = {}
    for index, value in ipairs(list) do values[index - 1] = value end
    return values
end

return {
    SENSOR_COUNT = 12,
    MAX_STEP_COUNT = 12,
    SEGMENT_COUNT = 12,
    SCALE_LIMIT = 5,
    NO_SENSOR = 255,
    REPLY_TIMEOUT_S = 0.5,

    READ = 1,
    TEMPORARY_WRITE = 2,

    commands = {
        [0] = "measurement sequence",
        [1] = "thresholds",
        [2] = "firmware version",
        [3] = "network settings",
        [4] = "sensor positions",
        [5] = "auto calibration",
    },

    accesses = { [0] = "write", [1] = "read", [2] = "write until the ECU restarts" },

    roles = { [0] = "not involved", [1] = "sending", [2] = "receiving only" },

    calibration_states = { [0] = "finished", [-1] = "aborted by the ECU", [2] = "end of polling" },

    segment_durations_us = from_zero({ 204.8, 409.6, 819.2, 1228.8, 1638.4, 2662.4, 4096, 6144 }),

    levels_db = from_zero({
        -35.71, -34.76, -33.81, -32.86, -31.9, -30.95, -30, -29.05,
        -28.1, -27.14, -26.19, -25.24, -24.29, -23.33, -22.38, -21.43,
        -20.48, -19.52, -18.57, -17.62, -16.67, -15.71, -14.76, -13.81,
        -12.86, -11.9, -10.95, -10, -9.05, -8.1, -7.14, -6.19,
    }),

    levels = from_zero({
        0.016387, 0.018281, 0.0203939, 0.022751, 0.0254097, 0.0283465, 0.0316228, 0.0352777,
        0.039355, 0.0439542, 0.0490343, 0.0547016, 0.0610239, 0.0681554, 0.0760326, 0.0848203,
        0.0946237, 0.105682, 0.117896, 0.131522, 0.146724, 0.16387, 0.18281, 0.203939,
        0.22751, 0.254097, 0.283465, 0.316228, 0.352777, 0.39355, 0.439542, 0.490343,
    }),

    MAX_MAGNITUDE = 15,

    magnitudes_db = from_zero({
        -29.12, -27.74, -25.85, -24.01, -22.05, -20.18, -18.27, -16.42,
        -14.52, -12.58, -10.69, -8.8, -6.9, -4.99, -3.09, -1.19,
    }),

    magnitudes = from_zero({
        0.0349945, 0.0410204, 0.0509918, 0.0630231, 0.0789769, 0.097949, 0.122039, 0.151008,
        0.187932, 0.234963, 0.292079, 0.363078, 0.451856, 0.562989, 0.700648, 0.871967,
    }),
}
