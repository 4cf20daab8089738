#pragma once

#include <QString>

namespace tarvioctl {

/// The two streams that a person or a script reads.
class Console
{
public:
    /// One line of the result. Throws Refusal once nobody reads standard output any more.
    void print(const QString& line);

    /// Hands out what has been printed; throws as print() does.
    void flush();

    /// One line beside the result, on standard error.
    void tell(const QString& line);

    /// A line that the next one replaces; shown on a terminal only.
    void progress(const QString& line);

private:
    void endProgress();

    bool mHasProgress = false;
};

} // namespace tarvioctl
