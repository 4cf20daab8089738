#pragma once

#include <QObject>
#include <QString>

class QStatusBar;

/// What the status bar says: news that come and go, and a trouble that comes back when they have
/// gone, for as long as it lasts.
class StatusMessages : public QObject
{
    Q_OBJECT

public:
    /// Belongs to the bar.
    explicit StatusMessages(QStatusBar* bar);

    /// Shows news for a time, or until they are replaced when `timeoutMs` is 0.
    void tell(const QString& news, int timeoutMs = 0);

    /// Shows a trouble; an empty text ends it.
    void setTrouble(const QString& trouble);

private:
    void onMessageChanged(const QString& message);

    QStatusBar* mBar; // the parent
    QString mTrouble;
};
