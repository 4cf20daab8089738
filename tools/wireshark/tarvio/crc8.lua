-- The checksum of the control protocol: CRC-8, reflected, constant 0x64, first and last XOR 0xFF.

local register_after = {}

local function shifted_eight_times(register)
    for _ = 1, 8 do
        local fell_out = bit.band(register, 1)
        register = bit.rshift(register, 1)
        if fell_out == 1 then register = bit.bxor(register, 0x64) end
    end
    return register
end

for value = 0, 255 do
    register_after[value] = shifted_eight_times(value)
end

-- Of the first `size` bytes of a buffer; no bytes at all give 0.
return function(tvb, size)
    if size == 0 then return 0 end
    local register = 0xFF
    for offset = 0, size - 1 do
        register = register_after[bit.bxor(register, tvb(offset, 1):uint())]
    end
    return bit.bxor(register, 0xFF)
end
