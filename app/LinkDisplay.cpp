#include "app/LinkDisplay.h"

#include "app/OrvgStatusWidget.h"
#include "app/StatusMessages.h"
#include "ecu/link/LinkSupervisor.h"
#include "ecu/link/failure_text.h"

#include <QStatusBar>

namespace {

constexpr int kConnectionMessageMs = 5000;

} // namespace

LinkDisplay::LinkDisplay(const LinkSupervisor& supervisor, QStatusBar* bar)
    : QObject(bar)
    , mSupervisor(supervisor)
    , mStatusWidget(new OrvgStatusWidget(bar))
    , mMessages(new StatusMessages(bar))
{
    bar->addPermanentWidget(mStatusWidget);
    connect(&supervisor, &LinkSupervisor::stateChanged, this, &LinkDisplay::showState);
    connect(&supervisor, &LinkSupervisor::found, this, &LinkDisplay::announceEcu);
    connect(&supervisor, &LinkSupervisor::lost, this, &LinkDisplay::announceLoss);
    connect(&supervisor, &LinkSupervisor::portsMissed, this, &LinkDisplay::showPortProblems);
    connect(&supervisor, &LinkSupervisor::portProblemsChanged, this,
            &LinkDisplay::showPortProblems);
}

void LinkDisplay::announceEcu(const orv::FirmwareVersion& version)
{
    mStatusWidget->setFirmwareVersion(version);
    mMessages->tell(
        tr("ECU (re)connected. Firmware version: %1").arg(mStatusWidget->firmwareVersion()),
        kConnectionMessageMs);
}

void LinkDisplay::announceLoss()
{
    mMessages->tell(tr("Connection to ECU lost"));
}

void LinkDisplay::showState()
{
    using State = LinkSupervisor::State;
    mStatusWidget->setConnected(mSupervisor.state() != State::Disconnected);
    mStatusWidget->setNoLiveData(mSupervisor.state() != State::Connected);
}

void LinkDisplay::showPortProblems()
{
    QStringList texts;
    for (const PortProblem& problem : mSupervisor.portProblems())
        texts.append(
            tr("Can't receive on port %1: %2").arg(problem.port).arg(failureText(problem.reason)));
    mStatusWidget->setTroubles(texts);
    mMessages->setTrouble(texts.join(QStringLiteral(" ")));
}
