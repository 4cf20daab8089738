-- Control requests and replies: what frames them, which belong together, and what Tarvio makes of
-- a reply.

return function(tables, link, records, requests, replies, crc8, Exchanges)
    local control = { proto = Proto("tarvio.control", "Tarvio control") }

    local function field(kind, name, text, ...)
        return ProtoField[kind]("tarvio.control." .. name, text, ...)
    end
    local f = {
        is_reply = field("bool", "reply", "Reply"),
        command = field("uint8", "command", "Command", base.DEC, tables.commands),
        status = field("uint8", "status", "Status"),
        checksum = field("uint8", "checksum", "Checksum", base.HEX),
        is_good = field("bool", "checksum_good", "Checksum good"),
        response_in = field("framenum", "response_in", "Reply in", base.NONE, frametype.RESPONSE),
        response_to = field("framenum", "response_to", "Request in", base.NONE, frametype.REQUEST),
        time = field("relative_time", "time", "Time from request to reply"),
    }
    local all_fields = {}
    for _, group in ipairs({ f, records.fields, requests.fields, replies.fields }) do
        for _, one in pairs(group) do all_fields[#all_fields + 1] = one end
    end
    control.proto.fields = all_fields

    local exchanges = Exchanges.new()

    -- With each new capture.
    function control.forget()
        exchanges = Exchanges.new()
    end

    -- The checksum ends the datagram. This is the one that belongs there, and whether it does.
    local function checked(reader)
        local last = reader.size - 1
        local expected = crc8(reader.tvb, last)
        return expected, reader.tvb(last, 1):uint() == expected
    end

    local function show_checksum(reader, tree)
        local expected, is_good = checked(reader)
        local range = reader.tvb(reader.size - 1, 1)
        local item = tree:add(f.checksum, range)
        tree:add(f.is_good, range, is_good):set_generated()
        if not is_good then
            link.mark(item, "bad_checksum",
                string.format("wrong checksum, 0x%02x would be right", expected))
        end
    end

    -- Nil when not even a code is there.
    local function command(body, tree)
        if body:left() == 0 then
            link.mark(tree, "malformed", "there is no command code")
            return nil
        end
        local code, item = body:u8(tree, f.command)
        if not tables.commands[code] then
            link.mark(item, "unknown_command", "there is no command " .. code)
        end
        return code
    end

    local function request_in(reader, tree)
        local _, is_good = checked(reader)
        local body = reader:without_last(1)
        local code = command(body, tree)
        if code and is_good then return requests.read(code, body, tree) end
        requests.show_bytes(body, tree)
        local name = code and (tables.commands[code] or "command " .. code) or "no command"
        return { code = code, summary = name }
    end

    local function dissect_request(reader, pinfo, tree)
        local request = exchanges:request(pinfo, request_in(reader, tree))
        show_checksum(reader, tree)
        if request.reply_frame then
            link.add_generated(tree, f.response_in, request.reply_frame)
        elseif pinfo.visited then
            link.mark(tree, "unanswered", "the capture holds no reply to this request")
        end
        return "Request: " .. request.summary
    end

    -- The checks in the order in which Tarvio makes them: error text, and whether the datagram is
    -- passed over.
    local function fault_of_frame(is_good, code, status, request)
        if not is_good then return "checksum error" end
        if not code or request and code ~= request.code then return "wrong reply type", true end
        if not status then return "wrong data size" end
        if status ~= 0 then return "ECU error (" .. status .. ")" end
    end

    local function status_of(body, tree)
        if body:left() == 0 then return nil end
        local range = body.tvb(body.size - 1, 1)
        tree:add(f.status, range):append_text(range:uint() == 0 and " (success)" or "")
        return range:uint()
    end

    local function reply_in(reader, tree, request)
        local _, is_good = checked(reader)
        local body = reader:without_last(1)
        local code = command(body, tree)
        local status = status_of(body, tree)
        local payload = status and body:without_last(1) or body
        local fault, is_stray = fault_of_frame(is_good, code, status, request)
        if fault then
            requests.show_bytes(payload, tree)
        elseif request then
            fault, is_stray = replies.read(payload, tree, request)
        else
            replies.read_unasked(code, payload, tree)
        end
        return code, fault, is_stray
    end

    local function mark_fault(tree, fault, is_stray)
        if is_stray then
            link.mark(tree, "stray", "passed over: " .. fault)
        elseif fault:find("^wrong") then
            link.mark(tree, "malformed", fault)
        elseif fault:find("^ECU error") then
            link.mark(tree, "refused", fault)
        end
    end

    local function link_to_request(pinfo, tree, request)
        local seconds = exchanges:answer(pinfo, request)
        local whole, fraction = math.modf(seconds)
        link.add_generated(tree, f.response_to, request.frame)
        link.add_generated(tree, f.time,
            NSTime.new(whole, math.floor(fraction * 1e9 + 0.5)))
        if seconds > tables.REPLY_TIMEOUT_S then
            link.mark(tree, "late", "Tarvio waits no longer than 500 ms")
        end
    end

    local function dissect_reply(reader, pinfo, tree)
        local request = exchanges:waiting(pinfo)
        local code, fault, is_stray = reply_in(reader, tree, request)
        show_checksum(reader, tree)
        if fault then mark_fault(tree, fault, is_stray) end
        if request and not is_stray then
            link_to_request(pinfo, tree, request)
            return "Reply: " .. request.summary, fault
        end
        if not request then link.mark(tree, "unasked", "no request waits for this reply") end
        return "Reply: " .. (tables.commands[code] or "unknown command"), fault
    end

    -- A one-line summary, and the error text when Tarvio does not accept the datagram.
    function control.dissect(reader, pinfo, tree, is_reply)
        link.add_generated(tree, f.is_reply, is_reply)
        if is_reply then return dissect_reply(reader, pinfo, tree) end
        return dissect_request(reader, pinfo, tree)
    end

    return control
end
