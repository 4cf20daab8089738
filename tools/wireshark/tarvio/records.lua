-- The configuration records, as they stand in requests and replies.

return function(tables, link)
    local records = {}

    local function millimetres(kind, name, text)
        return ProtoField[kind]("tarvio.control." .. name, text, base.UNIT_STRING, { " mm" })
    end
    local function field(kind, name, text, ...)
        return ProtoField[kind]("tarvio.control." .. name, text, ...)
    end

    local f = {
        step_count = field("uint8", "step_count", "Number of steps"),
        active_mask = field("uint16", "step.active_mask", "Active", base.HEX),
        passive_mask = field("uint16", "step.passive_mask", "Passive", base.HEX),
        modulation = field("uint16", "step.modulation", "Modulation"),
        code = field("uint16", "step.code", "Code"),
        fifth_value = field("uint16", "step.fifth_value", "Fifth value"),

        thresholds_sensor = field("uint8", "thresholds.sensor_id", "Sensor number"),
        time_index = field("uint8", "segment.time_index", "Time index", base.DEC, nil, 0xE0),
        level_index = field("uint8", "segment.level_index", "Level index", base.DEC, nil, 0x1F),
        duration = field("double", "segment.duration_us", "Duration in µs"),
        level = field("double", "segment.level", "Level, fraction of full scale"),
        level_db = field("double", "segment.level_db", "Level in dB"),
        scale = field("uint8", "thresholds.scale", "Scale"),

        firmware = field("string", "firmware_version", "Firmware version"),

        ecu_address = field("ipv4", "network.ecu_address", "ECU address"),
        subnet_mask = field("ipv4", "network.ecu_subnet_mask", "ECU subnet mask"),
        gateway = field("ipv4", "network.ecu_gateway", "ECU default gateway"),
        host_address = field("ipv4", "network.host_address", "Host address"),
        receiving_port = field("uint16", "network.receiving_port", "Receiving port"),
        control_port = field("uint16", "network.control_port", "Control port"),
        freespace_port = field("uint16", "network.freespace_port", "Freespace port"),

        x = millimetres("int16", "position.x_mm", "x"),
        y = millimetres("int16", "position.y_mm", "y"),
        height = millimetres("uint16", "position.height_mm", "Height"),
        yaw = field("uint16", "position.yaw", "Yaw as binary angle"),
        yaw_deg = field("double", "position.yaw_deg", "Yaw in degrees"),
        pitch = field("uint16", "position.pitch", "Pitch as binary angle"),
        pitch_deg = field("double", "position.pitch_deg", "Pitch in degrees"),
        roll = field("uint16", "position.roll", "Roll as binary angle"),
        roll_deg = field("double", "position.roll_deg", "Roll in degrees"),
    }
    records.fields = f

    records.STEP_SIZE = 10
    records.THRESHOLDS_SIZE = 14
    records.FIRMWARE_SIZE = 3
    records.NETWORK_SIZE = 22
    records.POSITION_SIZE = 12
    records.POSITIONS_SIZE = tables.SENSOR_COUNT * records.POSITION_SIZE

    local function step(reader, tree, index)
        local item = tree:add(reader:ahead(records.STEP_SIZE), "Step " .. index)
        link.mask(reader, item, f.active_mask)
        link.mask(reader, item, f.passive_mask)
        local modulation, modulation_item = reader:u16(item, f.modulation)
        modulation_item:append_text(modulation == 0 and " (AM)" or " (coded)")
        local code, code_item = reader:u16(item, f.code)
        code_item:append_text(code == 0 and " (BPSK0)" or " (BPSK1)")
        reader:u16(item, f.fifth_value)
    end

    -- As many steps as are there, at most `count`; true when all of them are.
    function records.steps(reader, tree, count)
        for index = 1, count do
            if reader:left() < records.STEP_SIZE then return false end
            step(reader, tree, index)
        end
        return true
    end

    local function segment(reader, tree, index)
        local range = reader:take(1)
        local packed = range:uint()
        local time, level = bit.rshift(packed, 5), bit.band(packed, 0x1F)
        local item = tree:add(range, string.format("Segment %d: %g µs at %g dB", index,
            tables.segment_durations_us[time], tables.levels_db[level]))
        item:add(f.time_index, range)
        item:add(f.level_index, range)
        link.add_physical(item, range, f.duration, tables.segment_durations_us[time])
        link.add_physical(item, range, f.level, tables.levels[level])
        link.add_physical(item, range, f.level_db, tables.levels_db[level])
    end

    -- Sensor number and scale.
    function records.thresholds(reader, tree)
        local item = tree:add(reader:ahead(records.THRESHOLDS_SIZE), "Thresholds")
        local id = link.sensor_id(reader, item, f.thresholds_sensor)
        for index = 1, tables.SEGMENT_COUNT do segment(reader, item, index) end
        local scale, scale_item = reader:u8(item, f.scale)
        if scale >= tables.SCALE_LIMIT then
            link.mark(scale_item, "out_of_range", "a scale is 0 to 4")
        end
        return id, scale
    end

    function records.firmware(reader, tree)
        local range = reader:take(records.FIRMWARE_SIZE)
        local text = string.format("%d.%d.%d", range(0, 1):uint(), range(1, 1):uint(),
            range(2, 1):uint())
        tree:add(f.firmware, range, text)
    end

    function records.network(reader, tree)
        local item = tree:add(reader:ahead(records.NETWORK_SIZE), "Network settings")
        reader:address(item, f.ecu_address)
        reader:address(item, f.subnet_mask)
        reader:address(item, f.gateway)
        reader:address(item, f.host_address)
        reader:u16(item, f.receiving_port)
        reader:u16(item, f.control_port)
        local port, port_item = reader:u16(item, f.freespace_port)
        if port == 0 then port_item:append_text(" (no freespace stream)") end
    end

    local function position(reader, tree, sensor)
        local item = tree:add(reader:ahead(records.POSITION_SIZE), "Sensor " .. sensor)
        link.add_generated(item, link.fields.sensor, sensor)
        reader:i16(item, f.x)
        reader:i16(item, f.y)
        reader:u16(item, f.height)
        link.angle(reader, item, f.yaw, f.yaw_deg)
        link.angle(reader, item, f.pitch, f.pitch_deg)
        link.angle(reader, item, f.roll, f.roll_deg)
    end

    function records.positions(reader, tree)
        for sensor = 1, tables.SENSOR_COUNT do position(reader, tree, sensor) end
    end

    return records
end
