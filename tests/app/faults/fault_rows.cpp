#include "tests/app/faults/fault_rows.h"

#include <QtTest>

namespace {

// Another one gives other sensors, exchanges, bits and so on.
std::uint64_t baseSeed()
{
    return qEnvironmentVariableIsSet("TARVIO_FAULT_SEED")
               ? qEnvironmentVariable("TARVIO_FAULT_SEED").toULongLong()
               : 1;
}

} // namespace

void addFaultRows(const FaultCase::Operations& operations)
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("fault");
    const std::vector<EcuOperation> names = operations(0);
    for (std::size_t operation = 0; operation < names.size(); ++operation) {
        for (std::size_t fault = 0; fault < faultKinds().size(); ++fault)
            QTest::addRow("%s / %s", qPrintable(names[operation].name), faultKinds()[fault].name)
                << static_cast<int>(operation) << static_cast<int>(fault);
    }
}

QString deviationOfRow(const FaultCase::Operations& operations, int operation, int fault)
{
    const auto row = static_cast<std::uint64_t>(operation) * faultKinds().size() +
                     static_cast<std::uint64_t>(fault);
    const std::uint64_t seed = 1000 * baseSeed() + row;
    FaultCase faultCase(operations, operation, faultKinds()[static_cast<std::size_t>(fault)], seed);
    return faultCase.deviation();
}
