-- Which reply belongs to which request. Nothing is numbered on the wire: a sender asks one thing at
-- a time, so a reply belongs to the request that this sender sent last, once. Whether a datagram
-- can be the answer at all is for others to say.

local Exchanges = {}
Exchanges.__index = Exchanges

function Exchanges.new()
    return setmetatable({ pending = {}, of_frame = {} }, Exchanges)
end

-- The request and reply of one sender have the same key.
local function sender_key(pinfo, is_reply)
    local client, ecu = pinfo.src, pinfo.dst
    local client_port, ecu_port = pinfo.src_port, pinfo.dst_port
    if is_reply then
        client, ecu, client_port, ecu_port = ecu, client, ecu_port, client_port
    end
    return string.format("%s %d %s %d", tostring(client), client_port, tostring(ecu), ecu_port)
end

-- Remembers a request on the first pass over the capture; its record, which learns of its reply.
function Exchanges:request(pinfo, description)
    if not pinfo.visited then
        description.frame, description.time = pinfo.number, pinfo.rel_ts
        self.pending[sender_key(pinfo, false)] = description
        self.of_frame[pinfo.number] = description
    end
    return self.of_frame[pinfo.number]
end

-- The record of the request that waits when this reply comes; nil when none does.
function Exchanges:waiting(pinfo)
    if pinfo.visited then return self.of_frame[pinfo.number] end
    local request = self.pending[sender_key(pinfo, true)]
    self.of_frame[pinfo.number] = request
    return request
end

-- The reply ends the wait; the seconds it took.
function Exchanges:answer(pinfo, request)
    if not pinfo.visited then
        request.reply_frame = pinfo.number
        self.pending[sender_key(pinfo, true)] = nil
    end
    return pinfo.rel_ts - request.time
end

return Exchanges
