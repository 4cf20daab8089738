#pragma once

#include <QStringList>
#include <QtTest>

/// Fails with all of the faults; a failure of QtTest alone shows the first thousand letters.
inline void expectNone(QStringList faults)
{
    faults.removeDuplicates();
    for (const QString& fault : faults)
        qWarning("fault: %s", qPrintable(fault));
    QCOMPARE(faults.size(), 0);
}
