#pragma once

#include <QApplication>
#include <QString>

#include <functional>

/// The application object. All windows, also those without a parent, carry the program's icon, and
/// an error that nothing caught ends the program with a message instead of a crash.
class TarvioApplication : public QApplication
{
    Q_OBJECT

public:
    TarvioApplication(int& argc, char** argv);

    /// Runs the program and returns its exit status. After an unexpected error that is 1, and the
    /// error has been told on standard error and in a box.
    int run(const std::function<int()>& program);

    bool notify(QObject* receiver, QEvent* event) override;

private:
    void end(const QString& error);

    QString mError;
};
