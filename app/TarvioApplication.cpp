#include "app/TarvioApplication.h"

#include <QIcon>
#include <QMessageBox>

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

/// Calls the function and returns its result; what it throws goes to the handler, as a text.
template<typename Function, typename Handler>
auto guarded(Function function, Handler handle) -> decltype(function())
{
    try {
        return function();
    } catch (const std::exception& error) {
        handle(QString::fromLocal8Bit(error.what()));
    } catch (...) {
        handle(TarvioApplication::tr("no reason given"));
    }
    return {};
}

} // namespace

TarvioApplication::TarvioApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    setWindowIcon(QIcon(QStringLiteral(":/icons/icons/wave.png")));
}

int TarvioApplication::run(const std::function<int()>& program)
{
    mError.clear();
    const int status = guarded(program, [this](const QString& error) { end(error); });
    if (mError.isEmpty())
        return status;
    // The end that an error has asked for: the box must not take it for its own.
    removePostedEvents(this, QEvent::MetaCall);
    std::cerr << "tarvio: " << mError.toLocal8Bit().constData() << std::endl;
    QMessageBox::critical(nullptr, tr("Tarvio"),
                          tr("An unexpected error has ended the program:\n%1").arg(mError));
    return EXIT_FAILURE;
}

// Qt is not made for exceptions that pass through its event loop.
bool TarvioApplication::notify(QObject* receiver, QEvent* event)
{
    return guarded([&] { return QApplication::notify(receiver, event); },
                   [this](const QString& error) { end(error); });
}

// By an event: the event loop may not have begun yet. The first error counts, others follow from
// it.
void TarvioApplication::end(const QString& error)
{
    if (!mError.isEmpty())
        return;
    mError = error;
    QMetaObject::invokeMethod(
        this, [] { exit(EXIT_FAILURE); }, Qt::QueuedConnection);
}
