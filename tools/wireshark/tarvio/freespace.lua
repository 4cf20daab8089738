-- Freespace packages: the free area in front of each sensor.

return function(tables, link)
    local freespace = { proto = Proto("tarvio.freespace", "Tarvio freespace package") }

    local POINT_SIZE = 4
    local FIXED_SIZE = 1 + 8 * POINT_SIZE -- number, corners, arc ends, second pair
    local POSITION_SIZE = 6
    local DISTANCE_SIZE = 2 + 2 * POINT_SIZE
    local PLACES = { "left", "middle", "right" }

    local function field(kind, name, text, ...)
        return ProtoField[kind]("tarvio.freespace." .. name, text, ...)
    end
    local function millimetres(name, text)
        return field("int16", name, text, base.UNIT_STRING, { " mm" })
    end
    local function point_fields(name)
        return { x = millimetres(name .. ".x_mm", "x"), y = millimetres(name .. ".y_mm", "y") }
    end
    local points = {
        corner = point_fields("corner"),
        arc_end = point_fields("arc_end"),
        second_pair = point_fields("second_pair"),
        first_point = point_fields("distance.first_point"),
        second_point = point_fields("distance.second_point"),
    }
    local f = {
        entry_count = field("uint8", "entry_count", "Number of entries"),
        sensor_id = field("uint8", "sensor_id", "Sensor number"),
        position_x = millimetres("position.x_mm", "Sensor position x"),
        position_y = millimetres("position.y_mm", "Sensor position y"),
        direction = field("uint16", "position.direction", "Sensor direction as binary angle"),
        direction_deg = field("double", "position.direction_deg", "Sensor direction in degrees"),
        absence_flags = field("uint8", "absence_flags", "Absent distances", base.HEX),
        place = field("uint8", "distance.place", "Place", base.DEC,
            { [0] = PLACES[1], PLACES[2], PLACES[3] }),
        distance = field("uint16", "distance.mm", "Distance", base.UNIT_STRING, { " mm" }),
    }
    local all_fields = {}
    for _, one in pairs(f) do all_fields[#all_fields + 1] = one end
    for _, pair in pairs(points) do
        all_fields[#all_fields + 1] = pair.x
        all_fields[#all_fields + 1] = pair.y
    end
    freespace.proto.fields = all_fields

    local function point(reader, tree, name, fields)
        local item = tree:add(reader:ahead(POINT_SIZE), name)
        local x = reader:i16(item, fields.x)
        local y = reader:i16(item, fields.y)
        item:append_text(string.format(": (%d, %d) mm", x, y))
    end

    local function fixed_points(reader, tree)
        for index = 0, 3 do point(reader, tree, "Corner C" .. index, points.corner) end
        for index = 0, 1 do point(reader, tree, "Arc end E" .. index, points.arc_end) end
        for index = 1, 2 do point(reader, tree, "Second pair " .. index, points.second_pair) end
    end

    -- The ECU may leave the position out; the flags then follow the points directly.
    local function position(reader, tree)
        if reader:left() < POSITION_SIZE then return end
        reader:i16(tree, f.position_x)
        reader:i16(tree, f.position_y)
        link.angle(reader, tree, f.direction, f.direction_deg)
    end

    local function distance(reader, tree, index)
        local item = tree:add(reader:ahead(DISTANCE_SIZE), "Distance " .. PLACES[index + 1])
        link.add_generated(item, f.place, index)
        local value = reader:u16(item, f.distance)
        item:append_text(": " .. value .. " mm")
        point(reader, item, "First point", points.first_point)
        point(reader, item, "Second point", points.second_point)
    end

    -- True when all those are there that the flags do not call absent.
    local function distances(reader, tree)
        if reader:left() == 0 then return false end
        local flags = reader:u8(tree, f.absence_flags)
        for index = 0, 2 do
            local is_absent = bit.band(bit.rshift(flags, index), 1) == 1
            if not is_absent then
                if reader:left() < DISTANCE_SIZE then return false end
                distance(reader, tree, index)
            end
        end
        return true
    end

    local function entry(reader, tree, index)
        local item = tree:add(reader:ahead(reader:left()), "Entry " .. index)
        if reader:left() < FIXED_SIZE then return false end
        local begin = reader.offset
        local id = link.sensor_id(reader, item, f.sensor_id)
        item:append_text(id < tables.SENSOR_COUNT and ", sensor " .. id + 1 or "")
        fixed_points(reader, item)
        position(reader, item)
        local is_complete = distances(reader, item)
        item:set_len(reader.offset - begin)
        return is_complete
    end

    local function dropped(tree, why)
        link.mark(tree, "malformed", why)
        return "Freespace", "wrong datagram format"
    end

    -- A one-line summary, and the error text when Tarvio does not accept the datagram.
    function freespace.dissect(reader, _, tree)
        local count = reader:u8(tree, f.entry_count)
        for index = 1, count do
            if not entry(reader, tree, index) then
                return dropped(tree, string.format("entry %d of %d is cut short", index, count))
            end
        end
        link.mark_rest(reader, tree)
        return "Freespace: " .. link.count(count, "entry", "entries")
    end

    return freespace
end
