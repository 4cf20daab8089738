-- Reads a datagram from front to back, a field of the tree at a time. Whoever reads asks left()
-- first: reading past the end is a fault of the dissector.

local Reader = {}
Reader.__index = Reader

function Reader.new(tvb, size)
    return setmetatable({ tvb = tvb, offset = 0, size = size }, Reader)
end

function Reader:left()
    return self.size - self.offset
end

-- The next bytes; they stay unread.
function Reader:ahead(size)
    return self.tvb(self.offset, size)
end

function Reader:take(size)
    local range = self:ahead(size)
    self.offset = self.offset + size
    return range
end

-- A reader of the bytes up to `count` before the end, from here on.
function Reader:without_last(count)
    local front = Reader.new(self.tvb, self.size - count)
    front.offset = self.offset
    return front
end

-- Each adds a field to the tree and returns its value and its item.
function Reader:unsigned(tree, field, size)
    local range = self:take(size)
    return range:le_uint(), tree:add_le(field, range)
end

function Reader:u8(tree, field)
    return self:unsigned(tree, field, 1)
end

function Reader:u16(tree, field)
    return self:unsigned(tree, field, 2)
end

function Reader:i16(tree, field)
    local range = self:take(2)
    return range:le_int(), tree:add_le(field, range)
end

function Reader:address(tree, field)
    tree:add(field, self:take(4))
end

return Reader
