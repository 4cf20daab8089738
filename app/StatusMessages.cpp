#include "app/StatusMessages.h"

#include <QStatusBar>

#include <utility>

StatusMessages::StatusMessages(QStatusBar* bar) : QObject(bar), mBar(bar)
{
    connect(mBar, &QStatusBar::messageChanged, this, &StatusMessages::onMessageChanged);
}

void StatusMessages::tell(const QString& news, int timeoutMs)
{
    mBar->showMessage(news, timeoutMs);
}

void StatusMessages::setTrouble(const QString& trouble)
{
    const QString ended = std::exchange(mTrouble, trouble);
    if (!mTrouble.isEmpty())
        mBar->showMessage(mTrouble);
    else if (mBar->currentMessage() == ended)
        mBar->clearMessage();
}

void StatusMessages::onMessageChanged(const QString& message)
{
    if (message.isEmpty() && !mTrouble.isEmpty())
        mBar->showMessage(mTrouble);
}
