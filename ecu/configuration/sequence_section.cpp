#include "ecu/configuration/sequence_section.h"

#include "ecu/configuration/xml_sections.h"
#include "orv_decoder/constants.h"

#include <QString>
#include <QXmlStreamReader>

#include <stdexcept>

namespace {

const QString kStepElement = QStringLiteral("Step");

orv::MseqStep readStep(QXmlStreamReader& reader)
{
    const auto step = orv::decodeStep(readBase64(reader));
    if (!step)
        throw std::invalid_argument("wrong data format");
    return *step;
}

} // namespace

void writeSequenceSection(QXmlStreamWriter& writer, std::span<const orv::MseqStep> steps)
{
    int id = 0;
    for (const orv::MseqStep& step : steps)
        writeIndexedElement(writer, kStepElement, id++, orv::encodeStep(step));
}

bool readSequenceSection(QXmlStreamReader& reader, std::vector<orv::MseqStep>& steps,
                         std::string& error)
{
    try {
        while (steps.size() < orv::kMaxStepCount &&
               readIndexedElement(reader, kStepElement, static_cast<int>(steps.size())))
            steps.push_back(readStep(reader));
        return true;
    } catch (const std::invalid_argument& wrong) {
        error = wrong.what();
        return false;
    }
}
