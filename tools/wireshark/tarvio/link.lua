-- What all three flows share: the parent protocol, its fields, its marks, and how masks, sensors
-- and points are written.

return function(tables)
    local link = { proto = Proto("tarvio", "Tarvio ECU link") }

    link.fields = {
        sensor = ProtoField.uint8("tarvio.sensor", "Sensor as shown, 1 to 12"),
        error = ProtoField.string("tarvio.error", "What Tarvio says"),
    }
    link.proto.fields = link.fields

    local group, severity = expert.group, expert.severity
    local function mark(name, text, of_group, of_severity)
        return ProtoExpert.new("tarvio." .. name, text, of_group, of_severity)
    end
    local marks = {
        malformed = mark("malformed", "Malformed", group.MALFORMED, severity.ERROR),
        bad_checksum = mark("bad_checksum", "Wrong checksum", group.CHECKSUM, severity.ERROR),
        unknown_command = mark("unknown_command", "Unknown command", group.PROTOCOL, severity.ERROR),
        out_of_range = mark("out_of_range", "Value out of range", group.PROTOCOL, severity.WARN),
        block_cut = mark("block_cut", "Block cut short", group.MALFORMED, severity.WARN),
        refused = mark("refused", "Refused by the ECU", group.RESPONSE_CODE, severity.WARN),
        stray = mark("stray", "Cannot be the answer", group.SEQUENCE, severity.WARN),
        unasked = mark("unasked", "Nobody waits for it", group.SEQUENCE, severity.WARN),
        late = mark("late", "Too late", group.SEQUENCE, severity.WARN),
        unanswered = mark("unanswered", "No reply", group.SEQUENCE, severity.WARN),
        ignored = mark("ignored", "Bytes ignored", group.UNDECODED, severity.NOTE),
        replaced = mark("replaced", "Block replaced", group.SEQUENCE, severity.NOTE),
        capture_cut = mark("capture_cut", "Not wholly captured", group.UNDECODED, severity.NOTE),
    }
    link.proto.experts = marks

    function link.mark(item, name, text)
        item:add_proto_expert_info(marks[name], text)
    end

    function link.add_generated(tree, field, value)
        return tree:add(field, value):set_generated()
    end

    -- Tells of bytes that stand behind everything that is read.
    function link.mark_rest(reader, item)
        if reader:left() > 0 then
            link.mark(item, "ignored", reader:left() .. " bytes behind the end are ignored")
        end
    end

    -- A sensor number; the number shown stands beside it, so that one filter finds a sensor
    -- wherever it appears.
    function link.sensor_id(reader, tree, field)
        local id, item = reader:u8(tree, field)
        if id < tables.SENSOR_COUNT then
            item:append_text(" (sensor " .. id + 1 .. ")")
            link.add_generated(tree, link.fields.sensor, id + 1)
        else
            link.mark(item, "out_of_range", "there is no sensor with the number " .. id)
        end
        return id
    end

    -- A mask of sensors, which bit n stands for sensor n of.
    function link.mask(reader, tree, field)
        local mask, item = reader:u16(tree, field)
        local sensors = {}
        for id = 0, tables.SENSOR_COUNT - 1 do
            if bit.band(bit.rshift(mask, id), 1) == 1 then sensors[#sensors + 1] = id + 1 end
        end
        item:append_text(#sensors > 0 and " (sensors " .. table.concat(sensors, ", ") .. ")"
            or " (no sensor)")
        return mask
    end

    function link.count(number, one, many)
        return number .. " " .. (number == 1 and one or many)
    end

    -- A value of a table beside its index.
    function link.add_physical(tree, range, field, value)
        tree:add(field, range, value):set_generated()
    end

    -- An angle of a full turn in 16 bits; in degrees beside it.
    function link.angle(reader, tree, field, degrees_field)
        local range = reader:ahead(2)
        local angle = reader:u16(tree, field)
        link.add_physical(tree, range, degrees_field, angle * 360 / 65536)
    end

    return link
end
