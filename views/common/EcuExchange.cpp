#include "views/common/EcuExchange.h"

#include "ecu/link/failure_text.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "views/common/WaitCursor.h"
#include "views/common/messages.h"

#include <QStringList>

void EcuExchange::setClient(orv::OrvCtrlClient* client)
{
    if (client)
        mClient = client;
}

bool EcuExchange::mayOverwrite(bool silent, const QString& title) const
{
    return mClient && (silent || confirmOverwrite(mView, title));
}

bool EcuExchange::run(bool silent, const std::function<bool(orv::OrvCtrlClient&)>& exchange) const
{
    return runAll(silent, [&exchange](orv::OrvCtrlClient& client) {
        return exchange(client) ? QStringList() : QStringList(failureText(client.lastError()));
    });
}

bool EcuExchange::runAll(bool silent,
                         const std::function<QStringList(orv::OrvCtrlClient&)>& exchanges) const
{
    if (!mClient)
        return false;
    const QStringList failures = underWaitCursor([&] { return exchanges(*mClient); });
    if (!failures.isEmpty() && !silent)
        showCommunicationError(mView, failures.join(QLatin1Char('\n')));
    return failures.isEmpty();
}
