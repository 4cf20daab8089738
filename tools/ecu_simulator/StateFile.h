#pragma once

#include "tools/ecu_simulator/EcuState.h"

#include <QByteArray>
#include <QString>

namespace ecusim {

/// The state as a JSON text; the records stand in it as the hexadecimal digits of their wire form.
/// Holds what outlives a run: sequence, kept thresholds, positions and kept network settings.
QByteArray encodeState(const EcuState& state);

/// Replaces what outlives a run. False, with `state` untouched and the reason in `error`, for a
/// text that is not such a state.
bool decodeState(const QByteArray& text, EcuState& state, QString& error);

/// Keeps the state of the ECU between two runs.
class StateFile
{
public:
    explicit StateFile(QString path) : mPath(std::move(path)) {}

    /// A file that does not exist leaves the state as it is and is no failure.
    bool load(EcuState& state);

    /// Replaces the file as a whole or not at all.
    bool save(const EcuState& state);

    /// Why the last operation failed, with the file's name.
    QString errorString() const { return mError; }

private:
    bool fail(const QString& reason);

    QString mPath;
    QString mError;
};

} // namespace ecusim
