#include "orv_decoder/OrvFreespacePackage.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"

#include <algorithm>

namespace orv {

namespace {

constexpr std::size_t kPositionSize = 6;
constexpr std::size_t kMaxEntryCount = 255;

OrvPoint decodePoint(ByteReader& reader)
{
    const std::int16_t x = reader.i16();
    return {.x = x, .y = reader.i16()};
}

template<std::size_t N>
void decodePoints(ByteReader& reader, std::array<OrvPoint, N>& points)
{
    for (OrvPoint& point : points)
        point = decodePoint(reader);
}

// The ECU may leave the position out; its flag byte then follows the points directly.
void decodePosition(ByteReader& reader, OrvSensorPosition& position)
{
    if (reader.left() < kPositionSize)
        return;
    position.x = reader.i16();
    position.y = reader.i16();
    position.direction = reader.u16();
}

// A set bit of the absence flags means that the item is not in the datagram.
void decodeDistances(ByteReader& reader, std::array<OrvDistanceItem, 3>& items)
{
    const std::uint8_t absenceFlags = reader.u8();
    for (std::size_t i = 0; i < items.size(); ++i) {
        if ((absenceFlags >> i) & 1)
            continue;
        items[i].mode = 1;
        items[i].distanceMm = reader.u16();
        items[i].firstPoint = decodePoint(reader);
        items[i].secondPoint = decodePoint(reader);
    }
}

OrvFreespaceEntry decodeEntry(ByteReader& reader)
{
    OrvFreespaceEntry entry;
    entry.sensorId = reader.u8();
    decodePoints(reader, entry.corners);
    decodePoints(reader, entry.arcEnds);
    decodePoints(reader, entry.secondPair);
    decodePosition(reader, entry.position);
    decodeDistances(reader, entry.distances);
    entry.valid = static_cast<bool>(reader);
    return entry;
}

void encodePoint(ByteWriter& writer, OrvPoint point)
{
    writer.i16(point.x);
    writer.i16(point.y);
}

std::uint8_t absenceFlags(const OrvFreespaceEntry& entry)
{
    unsigned flags = 0;
    for (std::size_t i = 0; i < entry.distances.size(); ++i)
        flags |= entry.distances[i].isPresent() ? 0U : 1U << i;
    return static_cast<std::uint8_t>(flags);
}

void encodeDistance(ByteWriter& writer, const OrvDistanceItem& item)
{
    if (!item.isPresent())
        return;
    writer.u16(item.distanceMm);
    encodePoint(writer, item.firstPoint);
    encodePoint(writer, item.secondPoint);
}

void encodeEntry(ByteWriter& writer, const OrvFreespaceEntry& entry)
{
    writer.u8(entry.sensorId);
    for (OrvPoint point : entry.corners)
        encodePoint(writer, point);
    for (OrvPoint point : entry.arcEnds)
        encodePoint(writer, point);
    for (OrvPoint point : entry.secondPair)
        encodePoint(writer, point);
    writer.i16(entry.position.x);
    writer.i16(entry.position.y);
    writer.u16(entry.position.direction);
    writer.u8(absenceFlags(entry));
    for (const OrvDistanceItem& item : entry.distances)
        encodeDistance(writer, item);
}

} // namespace

bool decodeInto(std::span<const std::uint8_t> datagram, OrvFreespacePackage& package)
{
    ByteReader reader(datagram);
    const std::uint8_t entryCount = reader.u8();
    package.valid = false;
    package.entries.clear();
    for (int i = 0; i < entryCount; ++i) {
        const OrvFreespaceEntry entry = decodeEntry(reader);
        if (!entry.valid)
            return false;
        package.entries.push_back(entry);
    }
    package.valid = static_cast<bool>(reader);
    return package.valid;
}

std::vector<std::uint8_t> encodeFreespacePackage(const OrvFreespacePackage& package)
{
    const std::size_t entryCount = std::min(package.entries.size(), kMaxEntryCount);
    ByteWriter writer;
    writer.u8(static_cast<std::uint8_t>(entryCount));
    for (std::size_t i = 0; i < entryCount; ++i)
        encodeEntry(writer, package.entries[i]);
    return writer.take();
}

} // namespace orv
