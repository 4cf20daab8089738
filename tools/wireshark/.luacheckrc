-- What Wireshark gives its scripts beside Lua itself.
std = "lua52"
read_globals = {
    "DissectorTable", "NSTime", "Pref", "Proto", "ProtoExpert", "ProtoField", "__DIR__", "base",
    "bit", "expert", "frametype", "set_plugin_info",
}
