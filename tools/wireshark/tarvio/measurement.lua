-- Measurement results: who sent, who listened, what was heard.

return function(tables, link)
    local measurement = { proto = Proto("tarvio.measurement", "Tarvio measurement result") }

    local HEADER_SIZE = 8
    local BLOCK_HEADER_SIZE = 2
    local ECHO_SIZE = 4

    local function field(kind, name, text, ...)
        return ProtoField[kind]("tarvio.measurement." .. name, text, ...)
    end
    local f = {
        word = field("uint32", "word", "Measurement word", base.HEX),
        send_mask = field("uint16", "send_mask", "Sending", base.HEX),
        receive_mask = field("uint16", "receive_mask", "Receiving", base.HEX),
        block_count = field("uint8", "block_count", "Number of sensor blocks"),
        sensor_id = field("uint8", "sensor_id", "Sensor number"),
        role = field("uint8", "role", "Role", base.DEC, tables.roles),
        echo_count = field("uint8", "echo_count", "Number of echoes"),
        raw_time = field("uint16", "echo.raw_time", "Raw time of flight"),
        time = field("uint16", "echo.time_us", "Time of flight", base.UNIT_STRING, { " µs" }),
        magnitude = field("uint8", "echo.magnitude", "Magnitude code"),
        magnitude_db = field("double", "echo.magnitude_db", "Magnitude in dB"),
        level = field("double", "echo.level", "Magnitude, fraction of full scale"),
        second_value = field("uint8", "echo.second_value", "Second value"),
    }
    measurement.proto.fields = f

    local function is_in(mask, id)
        return bit.band(bit.rshift(mask, id), 1) == 1
    end

    local function role_of(id, send_mask, receive_mask)
        if is_in(send_mask, id) then return 1 end
        return is_in(receive_mask, id) and 2 or 0
    end

    -- One raw unit is 51.2 µs; the product is kept in 16 bits.
    local function microseconds(raw)
        return math.floor(raw * 512 / 10) % 65536
    end

    local function echo(reader, tree, index)
        local item = tree:add(reader:ahead(ECHO_SIZE), "Echo " .. index)
        local time_range = reader:ahead(2)
        local raw, raw_item = reader:u16(item, f.raw_time)
        if raw >= 1280 then
            link.mark(raw_item, "out_of_range", "1280 and more wrap in the 16 bits of the time")
        end
        link.add_physical(item, time_range, f.time, microseconds(raw))
        local code_range = reader:ahead(1)
        local code, code_item = reader:u8(item, f.magnitude)
        if code > tables.MAX_MAGNITUDE then
            link.mark(code_item, "out_of_range", "codes above 15 count as 15")
        end
        local index_of_code = math.min(code, tables.MAX_MAGNITUDE)
        link.add_physical(item, code_range, f.magnitude_db, tables.magnitudes_db[index_of_code])
        link.add_physical(item, code_range, f.level, tables.magnitudes[index_of_code])
        reader:u8(item, f.second_value)
        item:append_text(string.format(": %d µs, %g dB", microseconds(raw),
            tables.magnitudes_db[index_of_code]))
    end

    -- The size of the block that comes next; nil when it runs past the end.
    local function size_of_block(reader)
        if reader:left() < BLOCK_HEADER_SIZE then return nil end
        local size = BLOCK_HEADER_SIZE + reader:ahead(2)(1, 1):uint() * ECHO_SIZE
        return size <= reader:left() and size or nil
    end

    local function block(reader, size, tree, masks)
        local item = tree:add(reader:ahead(size), "Sensor block")
        local id = link.sensor_id(reader, item, f.sensor_id)
        if id < tables.SENSOR_COUNT then
            local role = role_of(id, masks.send, masks.receive)
            link.add_generated(item, f.role, role)
            item:set_text(string.format("Sensor %d, %s", id + 1, tables.roles[role]))
        end
        local count = reader:u8(item, f.echo_count)
        item:append_text(", " .. link.count(count, "echo", "echoes"))
        for index = 1, count do echo(reader, item, index) end
        return id, count, item
    end

    -- Of two blocks for one sensor the later one counts, unless it is empty. The echoes that count.
    local function blocks(reader, tree, count, masks)
        local echoes_of = {}
        for index = 1, count do
            local size = size_of_block(reader)
            if not size then
                link.mark(tree, "block_cut", string.format(
                    "block %d of %d runs past the end: those before it count", index, count))
                reader:take(reader:left())
                break
            end
            local id, echo_count, item = block(reader, size, tree, masks)
            if echoes_of[id] and echo_count > 0 then
                link.mark(item, "replaced", "counts in place of this sensor's block before")
            end
            if echo_count > 0 then echoes_of[id] = echo_count end
        end
        return echoes_of
    end

    local function summary(echoes_of)
        local sensors, echoes = 0, 0
        for _, count in pairs(echoes_of) do
            sensors, echoes = sensors + 1, echoes + count
        end
        return "Measurement: " .. link.count(echoes, "echo", "echoes") .. " of "
            .. link.count(sensors, "sensor", "sensors")
    end

    local function dropped(tree, why)
        link.mark(tree, "malformed", why)
        return "Measurement", "wrong datagram format"
    end

    -- A one-line summary, and the error text when Tarvio does not accept the datagram.
    function measurement.dissect(reader, _, tree)
        if reader:left() < HEADER_SIZE then
            return dropped(tree, "a measurement result has at least 8 bytes")
        end
        reader:unsigned(tree, f.word, 4)
        local masks = { send = link.mask(reader, tree, f.send_mask),
            receive = link.mask(reader, tree, f.receive_mask) }
        if reader:left() == 0 then return "Measurement: masks alone" end
        local count = reader:u8(tree, f.block_count)
        if count > tables.SENSOR_COUNT then
            return dropped(tree, "there are at most 12 sensor blocks")
        end
        local echoes_of = blocks(reader, tree, count, masks)
        link.mark_rest(reader, tree)
        return summary(echoes_of)
    end

    return measurement
end
