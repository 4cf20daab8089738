-- The payloads of control replies, as Tarvio reads them. Each reader returns the error text that
-- Tarvio shows, nothing where all is well, and whether the datagram is passed over because it
-- cannot be the answer.

return function(tables, link, records)
    local replies = {}
    local f = { state = ProtoField.int8("tarvio.control.calibration_state", "Calibration state") }
    replies.fields = f

    local function sequence(reader, tree)
        if reader:left() == 0 then return "wrong data size" end
        local count, item = reader:u8(tree, records.fields.step_count)
        if count > tables.MAX_STEP_COUNT then
            link.mark(item, "out_of_range", "a sequence has at most 12 steps")
            return "wrong format"
        end
        if not records.steps(reader, tree, count) then return "wrong format" end
        link.mark_rest(reader, tree)
    end

    local function thresholds(reader, tree, request)
        if reader:left() ~= records.THRESHOLDS_SIZE then return "wrong data size" end
        local id, scale = records.thresholds(reader, tree)
        if request and request.sensor ~= id then return "wrong sensor id", true end
        if scale >= tables.SCALE_LIMIT then return "wrong scale value read from sensor" end
    end

    -- A reader of a record that has always the same size.
    local function of_size(size, read, fault)
        return function(reader, tree)
            if reader:left() ~= size then return fault end
            read(reader, tree)
        end
    end

    local function calibration_state(reader, tree)
        local range = reader:take(1)
        local state = range:int()
        tree:add(f.state, range)
            :append_text(" (" .. (tables.calibration_states[state] or "still running") .. ")")
    end

    local readers = {
        [0] = sequence,
        [1] = thresholds,
        [2] = of_size(records.FIRMWARE_SIZE, records.firmware, "wrong data size"),
        [3] = of_size(records.NETWORK_SIZE, records.network, "wrong data format"),
        [4] = of_size(records.POSITIONS_SIZE, records.positions, "wrong data size"),
        [5] = of_size(1, calibration_state, "wrong data size"),
    }

    -- The reply to a write ends with the status: what else it holds is not looked at, but for
    -- another sensor's thresholds.
    local function of_write(reader, tree, request)
        local is_thresholds = request.sensor and reader:left() == records.THRESHOLDS_SIZE
        if is_thresholds and reader:ahead(1):uint() ~= request.sensor then
            return "wrong sensor id", true
        end
        link.mark_rest(reader, tree)
    end

    function replies.read(reader, tree, request)
        if request.access ~= tables.READ then return of_write(reader, tree, request) end
        return readers[request.code](reader, tree, request)
    end

    -- A reply to nobody: that of a read when it holds something of the right size.
    function replies.read_unasked(code, reader, tree)
        if readers[code] and reader:left() > 0 then readers[code](reader, tree, nil) end
    end

    return replies
end
