#pragma once

#include "tools/tarvioctl/Console.h"

#include <QString>
#include <QStringList>

namespace tarvioctl {

/// Says what the doctor found, one finding after the other. The console is borrowed.
class Findings
{
public:
    explicit Findings(Console& console) : mConsole(console) {}

    void fine(const QString& finding) { tell({QStringLiteral("ok       ") + finding}); }

    void problem(const QString& finding, const QString& advice)
    {
        tell({QStringLiteral("PROBLEM  ") + finding, QStringLiteral("         → ") + advice});
        mHasProblem = true;
    }

    bool hasProblem() const { return mHasProblem; }

private:
    // At once, also through a pipe: the next finding may take seconds.
    void tell(const QStringList& lines)
    {
        for (const QString& line : lines)
            mConsole.print(line);
        mConsole.flush();
    }

    Console& mConsole;
    bool mHasProblem = false;
};

} // namespace tarvioctl
