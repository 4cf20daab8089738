#include "tools/tarvioctl/Console.h"

#include "tools/tarvioctl/Command.h"

#include <cstdio>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace tarvioctl {

namespace {

bool isTerminal(std::FILE* stream)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return ::isatty(::fileno(stream)) != 0;
#endif
}

void write(std::FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

} // namespace

void Console::print(const QString& line)
{
    endProgress();
    write(stdout, line + QLatin1Char('\n'));
    if (isTerminal(stdout) || std::ferror(stdout) != 0)
        flush();
}

void Console::flush()
{
    endProgress();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw Refusal(QStringLiteral("Standard output takes no more; see what reads it."));
}

void Console::tell(const QString& line)
{
    endProgress();
    std::fflush(stdout); // what was printed before stands above it, where both go to one place
    write(stderr, line + QLatin1Char('\n'));
    std::fflush(stderr);
}

void Console::progress(const QString& line)
{
    if (!isTerminal(stderr))
        return;
    // Clears what the former line leaves behind the new one.
    write(stderr, QStringLiteral("\r%1\x1b[K").arg(line));
    std::fflush(stderr);
    mHasProgress = true;
}

void Console::endProgress()
{
    if (mHasProgress)
        write(stderr, QStringLiteral("\n"));
    mHasProgress = false;
}

} // namespace tarvioctl
