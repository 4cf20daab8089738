#pragma once

#include <cstdint>
#include <span>

/// What holds of everything below the window, whatever it is given. Each returns false where that
/// breaks. They need a QCoreApplication.

/// The bytes are a settings file: what it brings can be written, and the written file is read
/// completely and brings the same.
bool settingsFileHolds(std::span<const std::uint8_t> bytes);

/// The same of a well-formed file, whose sections and records are told by the bytes.
bool settingsSectionsHold(std::span<const std::uint8_t> bytes);

/// The bytes are the file of the settings store: the network values in it are usable, and they stay
/// what they are when they are accepted and the store is opened again.
bool settingsStoreHolds(std::span<const std::uint8_t> bytes);

/// The bytes tell operations of the control client and what comes back for each: only the answer
/// to a request succeeds and brings its data; a failure leaves the records and says why; what came
/// before does not show in a clean exchange.
bool controlClientHolds(std::span<const std::uint8_t> bytes);

/// The bytes tell what arrives on the streams and the control channel of a supervised link, what
/// time passes and what is done meanwhile: records are handed on in their turn, each change of the
/// state is told once, the first contact comes once, and afterwards an ECU that answers is found,
/// heard and brings its own data.
bool linkSupervisorHolds(std::span<const std::uint8_t> bytes);
