#include "ecu/link/failure_text.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

// For who collects the texts to be translated: all that a control client or a socket can say.
[[maybe_unused]] constexpr const char* kReasons[] = {
    QT_TRANSLATE_NOOP("LinkFailure", "Can't bind socket"),
    QT_TRANSLATE_NOOP("LinkFailure", "Can't create socket"),
    QT_TRANSLATE_NOOP("LinkFailure", "Can't set receive timeout"),
    QT_TRANSLATE_NOOP("LinkFailure", "Can't set receive timeout option"),
    QT_TRANSLATE_NOOP("LinkFailure", "Can't start win sock"),
    QT_TRANSLATE_NOOP("LinkFailure", "Can't start win sock API"),
    QT_TRANSLATE_NOOP("LinkFailure", "Only 1...12 steps can be set."),
    QT_TRANSLATE_NOOP("LinkFailure", "checksum error"),
    QT_TRANSLATE_NOOP("LinkFailure", "receive error"),
    QT_TRANSLATE_NOOP("LinkFailure", "receive timeout"),
    QT_TRANSLATE_NOOP("LinkFailure", "send error"),
    QT_TRANSLATE_NOOP("LinkFailure", "timeout"),
    QT_TRANSLATE_NOOP("LinkFailure", "wrong data size"),
    QT_TRANSLATE_NOOP("LinkFailure", "wrong datagram format"),
    QT_TRANSLATE_NOOP("LinkFailure", "wrong format"),
    QT_TRANSLATE_NOOP("LinkFailure", "wrong reply type")};

struct LinkFailure
{
    Q_DECLARE_TR_FUNCTIONS(LinkFailure)
};

} // namespace

QString failureText(const std::string& reason)
{
    static const std::string ofSocket = "socket: ";
    if (reason.compare(0, ofSocket.size(), ofSocket) == 0)
        return LinkFailure::tr("socket: %1").arg(failureText(reason.substr(ofSocket.size())));
    static const QRegularExpression refusal(QStringLiteral("^ECU error \\((\\d+)\\)$"));
    const auto refused = refusal.match(QString::fromStdString(reason));
    if (refused.hasMatch())
        return LinkFailure::tr("ECU error (%1)").arg(refused.captured(1));
    return LinkFailure::tr(reason.c_str());
}
