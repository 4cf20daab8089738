-- The payloads of control requests, as the ECU reads them.

return function(tables, link, records)
    local requests = {}
    local f = {
        access = ProtoField.uint8("tarvio.control.access", "Access", base.DEC, tables.accesses),
        sensor_id = ProtoField.uint8("tarvio.control.sensor_id", "Sensor number"),
        payload = ProtoField.bytes("tarvio.control.payload", "Payload"),
    }
    requests.fields = f

    local function has_exactly(reader, tree, size, what)
        if reader:left() == size then return true end
        link.mark(tree, "malformed",
            string.format("%s: %d bytes are expected, %d are here", what, size, reader:left()))
        return false
    end

    local function of_sensor(id)
        return id < tables.SENSOR_COUNT and " of sensor " .. id + 1 or " of sensor number " .. id
    end

    local function read_all(reader, tree)
        has_exactly(reader, tree, 0, "the rest of a read")
        return {}
    end

    local function read_thresholds(reader, tree)
        if not has_exactly(reader, tree, 1, "a sensor number") then return {} end
        local id = link.sensor_id(reader, tree, f.sensor_id)
        return { sensor = id, suffix = of_sensor(id) }
    end

    local function write_thresholds(reader, tree)
        if not has_exactly(reader, tree, records.THRESHOLDS_SIZE, "thresholds") then return {} end
        local id = records.thresholds(reader, tree)
        return { sensor = id, suffix = of_sensor(id) }
    end

    local function write_temporarily(reader, tree)
        local request = write_thresholds(reader, tree)
        request.suffix = (request.suffix or "") .. " until the ECU restarts"
        return request
    end

    local function write_sequence(reader, tree)
        if reader:left() == 0 then
            has_exactly(reader, tree, 1, "a number of steps")
            return {}
        end
        local count, item = reader:u8(tree, records.fields.step_count)
        if count == 0 or count > tables.MAX_STEP_COUNT then
            link.mark(item, "out_of_range", "a sequence has 1 to 12 steps")
        end
        has_exactly(reader, item, count * records.STEP_SIZE, link.count(count, "step", "steps"))
        records.steps(reader, tree, math.min(count, tables.MAX_STEP_COUNT))
        return { suffix = " of " .. link.count(count, "step", "steps") }
    end

    local function write_network(reader, tree)
        if has_exactly(reader, tree, records.NETWORK_SIZE, "network settings") then
            records.network(reader, tree)
        end
        return {}
    end

    local function write_positions(reader, tree)
        if has_exactly(reader, tree, records.POSITIONS_SIZE, "twelve positions") then
            records.positions(reader, tree)
        end
        return {}
    end

    local function start_calibration(reader, tree)
        if not has_exactly(reader, tree, 1, "a sensor number") then return {} end
        if reader:ahead(1):uint() ~= tables.NO_SENSOR then
            return { suffix = of_sensor(link.sensor_id(reader, tree, f.sensor_id)) }
        end
        local _, item = reader:u8(tree, f.sensor_id)
        item:append_text(" (none selected)")
        return {}
    end

    -- By command and access.
    local readers = {
        [0] = { [0] = write_sequence, [1] = read_all },
        [1] = { [0] = write_thresholds, [1] = read_thresholds, [2] = write_temporarily },
        [3] = { [0] = write_network, [1] = read_all },
        [4] = { [0] = write_positions, [1] = read_all },
        [5] = { [0] = start_calibration, [1] = read_all },
    }

    local function verb(code, access)
        if access == tables.READ then return "read " end
        return tables.commands[code] == "auto calibration" and "start " or "write "
    end

    local function read_with_access(code, reader, tree)
        if reader:left() == 0 then
            link.mark(tree, "malformed", "the access is missing")
            return {}
        end
        local access, item = reader:u8(tree, f.access)
        local read = readers[code][access]
        if not read then
            link.mark(item, "out_of_range", "this command has no such access")
            return {}
        end
        local request = read(reader, tree)
        request.access, request.verb = access, verb(code, access)
        return request
    end

    local function read_firmware(reader, tree)
        has_exactly(reader, tree, 0, "the rest of a firmware request")
        return { access = tables.READ, verb = "read " }
    end

    -- What a request asks: command, access, sensor and a summary, each as far as it is readable.
    function requests.read(code, reader, tree)
        local request = {}
        if readers[code] then
            request = read_with_access(code, reader, tree)
        elseif tables.commands[code] then
            request = read_firmware(reader, tree)
        end
        request.code = code
        request.summary = (request.verb or "") .. (tables.commands[code] or "command " .. code)
            .. (request.suffix or "")
        return request
    end

    -- A payload that is not to be read, because the checksum is wrong or the ECU refused.
    function requests.show_bytes(reader, tree)
        if reader:left() > 0 then tree:add(f.payload, reader:take(reader:left())) end
    end

    return requests
end
