#include "orv_decoder/MseqStep.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"

namespace orv {

std::vector<std::uint8_t> encodeStep(const MseqStep& step)
{
    ByteWriter writer;
    writer.u16(step.activeMask);
    writer.u16(step.passiveMask);
    writer.u16(step.modulation);
    writer.u16(step.code);
    writer.u16(step.fifthValue);
    return writer.take();
}

std::optional<MseqStep> decodeStep(std::span<const std::uint8_t> bytes)
{
    ByteReader reader(bytes);
    MseqStep step{.valid = true};
    step.activeMask = reader.u16();
    step.passiveMask = reader.u16();
    step.modulation = reader.u16();
    step.code = reader.u16();
    step.fifthValue = reader.u16();
    return reader ? std::optional(step) : std::nullopt;
}

std::optional<MseqStep> decodeStepMasks(std::span<const std::uint8_t> bytes)
{
    ByteReader reader(bytes);
    MseqStep step{.valid = true};
    step.activeMask = reader.u16();
    step.passiveMask = reader.u16();
    return reader ? std::optional(step) : std::nullopt;
}

} // namespace orv
