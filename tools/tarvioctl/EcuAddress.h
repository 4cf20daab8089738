#pragma once

#include "ecu/link/LinkSettings.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tools/common/StreamPorts.h"

#include <QCommandLineOption>
#include <QList>
#include <QSettings>

#include <cstdint>
#include <memory>
#include <optional>

class QCommandLineParser;

namespace tarvioctl {

class Console;

/// The control channel of the ECU that a command talks to.
class EcuChannel
{
public:
    EcuChannel(const LinkSettings& link, std::optional<std::uint32_t> timeoutMs);

    orv::OrvCtrlClient& client() { return mClient; }

private:
    orv::OrvCtrlSocket mSocket;
    orv::OrvCtrlClient mClient;
};

/// Where the ECU is and on which ports its streams arrive: what the command line says, then what
/// the window has stored.
class EcuAddress
{
public:
    /// The options that every command takes.
    static QList<QCommandLineOption> options();

    /// Throws std::invalid_argument for a value that is none. The console is borrowed.
    EcuAddress(const QCommandLineParser& parser, Console& console);

    /// The store of the window, which a settings file's network section comes from.
    QSettings& store() const { return *mStore; }

    /// Says on standard error what the command line does not. Throws std::invalid_argument when
    /// nobody has said where the ECU is.
    LinkSettings link() const;

    /// The local ports of the live streams; says on standard error what the command line does not.
    cli::StreamPorts streamPorts() const;

    /// A channel to the ECU of link().
    std::unique_ptr<EcuChannel> openChannel() const;

    std::optional<std::uint32_t> timeoutMs() const { return mTimeoutMs; }

private:
    /// Who has said what a value is.
    enum class Origin { CommandLine, Store, Default };

    struct NamedValue
    {
        QString text; ///< "control port 50002"
        Origin origin;
    };

    void tellOrigins(const QList<NamedValue>& values) const;

    std::unique_ptr<QSettings> mStore;
    Console& mConsole;
    LinkSettings mLink;
    Origin mAddressOrigin;
    Origin mControlOrigin;
    Origin mReceiveOrigin;
    Origin mFreespaceOrigin;
    std::optional<std::uint32_t> mTimeoutMs;
};

} // namespace tarvioctl
