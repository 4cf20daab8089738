#include "ecu/configuration/sequence_section.h"

#include "ecu/configuration/xml_sections.h"
#include "orv_decoder/constants.h"

namespace {

const QString kStepElement = QStringLiteral("Step");

std::optional<orv::MseqStep> decodedStep(std::span<const std::uint8_t> bytes, int)
{
    return orv::decodeStep(bytes);
}

} // namespace

void writeSequenceSection(QXmlStreamWriter& writer, std::span<const orv::MseqStep> steps)
{
    writeIndexedElements(writer, kStepElement, steps, orv::encodeStep);
}

SectionResult<std::vector<orv::MseqStep>> readSequenceSection(QXmlStreamReader& reader)
{
    return readIndexedElements<orv::MseqStep>(reader, kStepElement, orv::kMaxStepCount,
                                              "wrong data format", decodedStep);
}
