-- Wireshark dissector for what travels between Tarvio and the ECU: control requests and replies,
-- measurement results, freespace packages. docs/protocol.md defines the bytes,
-- docs/user-guide/wireshark.md tells how to install and use it.
--
-- Wireshark also loads the modules in tarvio/ by themselves, in any order: they return a value and
-- do nothing, and what they need of each other is handed to them here.

-- Wireshark 4.0 names the folder to the plugins of one user, and not to those of all.
local folder = __DIR__ or debug.getinfo(1, "S").source:match("^@(.*)/")
package.path = folder .. "/?.lua;" .. package.path

local tables = require("tarvio.tables")
local crc8 = require("tarvio.crc8")
local Reader = require("tarvio.reader")
local Exchanges = require("tarvio.exchanges")
local link = require("tarvio.link")(tables)
local records = require("tarvio.records")(tables, link)
local requests = require("tarvio.requests")(tables, link, records)
local replies = require("tarvio.replies")(tables, link, records)

set_plugin_info({
    version = "1.0",
    author = "Tarvio",
    description = "Control protocol and live streams of the park-assist ECU",
})

local LONGEST_DATAGRAM = 1440 -- what the sockets of both sides read of one

local flows = {
    control = require("tarvio.control")(tables, link, records, requests, replies, crc8,
        Exchanges),
    measurement = require("tarvio.measurement")(tables, link),
    freespace = require("tarvio.freespace")(tables, link),
}

local preferences = link.proto.prefs
preferences.control_port = Pref.uint("Control port", 50002,
    "UDP port of the ECU that takes requests, 0 = none")
preferences.receiving_port = Pref.uint("Receiving port", 50001,
    "UDP port that measurement results are sent to, 0 = none")
preferences.freespace_port = Pref.uint("Freespace port", 50003,
    "UDP port that freespace packages are sent to, 0 = none")

-- The ECU may send its streams from its control port: where a datagram goes counts first. What
-- none of the ports tells was chosen by hand, with "Decode As".
local function flow_of(pinfo, chosen)
    if pinfo.dst_port == preferences.receiving_port then return flows.measurement end
    if pinfo.dst_port == preferences.freespace_port then return flows.freespace end
    if pinfo.dst_port == preferences.control_port then return flows.control end
    if pinfo.src_port == preferences.control_port then return flows.control end
    return chosen
end

-- What goes to the port that makes it control traffic is a request.
local function is_reply(pinfo)
    local port = preferences.control_port
    if pinfo.dst_port == port then return false end
    return pinfo.src_port == port or pinfo.dst_port ~= pinfo.match_uint
end

local function dissect_whole(chosen, tvb, pinfo, tree)
    local flow = flow_of(pinfo, chosen)
    local size = math.min(tvb:len(), LONGEST_DATAGRAM)
    local top = tree:add(link.proto, tvb())
    local item = top:add(flow.proto, tvb(0, size))
    if tvb:len() > size then
        link.mark(top, "ignored", tvb:len() - size .. " bytes behind the first 1440 are not read")
    end
    local summary, fault = flow.dissect(Reader.new(tvb, size), pinfo, item, is_reply(pinfo))
    if fault then
        item:add(link.fields.error, fault):set_generated()
        summary = summary .. " [" .. fault .. "]"
    end
    top:append_text(", " .. summary)
    pinfo.cols.info = summary
end

local function dissect(chosen, tvb, pinfo, tree)
    pinfo.cols.protocol = "TARVIO"
    if tvb:len() == tvb:reported_len() then
        dissect_whole(chosen, tvb, pinfo, tree)
    else
        local top = tree:add(link.proto, tvb())
        link.mark(top, "capture_cut", "the capture holds only a part of this datagram")
        pinfo.cols.info = "Only a part of the datagram was captured"
    end
    return tvb:len()
end

local udp_ports = DissectorTable.get("udp.port")
local registered = {}

local function register_ports()
    for port, proto in pairs(registered) do udp_ports:remove(port, proto) end
    registered = {}
    local wanted = {
        { preferences.control_port, flows.control },
        { preferences.receiving_port, flows.measurement },
        { preferences.freespace_port, flows.freespace },
    }
    for _, entry in ipairs(wanted) do
        local port, flow = entry[1], entry[2]
        if port > 0 and port < 65536 and not registered[port] then
            udp_ports:add(port, flow.proto)
            registered[port] = flow.proto
        end
    end
end

for _, flow in pairs(flows) do
    flow.proto.dissector = function(tvb, pinfo, tree) return dissect(flow, tvb, pinfo, tree) end
    udp_ports:add_for_decode_as(flow.proto)
end
link.proto.prefs_changed = register_ports
link.proto.init = flows.control.forget
register_ports()
