#pragma once

#include <QObject>

class LinkSupervisor;
class OrvgStatusWidget;
class QStatusBar;
class StatusMessages;

namespace orv {
struct FirmwareVersion;
}

/// Shows in the status bar what the supervisor finds out about the link: the LED at its right end,
/// news of the ECU coming and going, and the ports that could not be bound.
class LinkDisplay : public QObject
{
    Q_OBJECT

public:
    /// Belongs to the bar; the supervisor is borrowed.
    LinkDisplay(const LinkSupervisor& supervisor, QStatusBar* bar);

private:
    void announceEcu(const orv::FirmwareVersion& version);
    void announceLoss();
    void showState();
    void showPortProblems();

    const LinkSupervisor& mSupervisor;
    OrvgStatusWidget* mStatusWidget; // child of the bar
    StatusMessages* mMessages;       // child of the bar
};
