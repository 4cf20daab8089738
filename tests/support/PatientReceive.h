#pragma once

/// While an object of this class lives, its maker's thread does not give up on an ECU that is
/// merely slow, on a busy machine for instance: a receive whose time-out is that of a reply (100 ms
/// or more) goes on waiting for half a minute. Not for exchanges that shall time out.
class PatientReceive
{
public:
    PatientReceive();
    ~PatientReceive();
    PatientReceive(const PatientReceive&) = delete;
    PatientReceive& operator=(const PatientReceive&) = delete;
};
