#pragma once

namespace orv {

/// Whether a record was read completely. Any two flags compare equal: the flag says where a record
/// comes from, and records are equal when they hold the same.
class ValidFlag
{
public:
    constexpr ValidFlag(bool isSet = false) : mIsSet(isSet) {} ///< from a bool, as one writes it
    constexpr operator bool() const { return mIsSet; }         ///< and back

    friend constexpr bool operator==(ValidFlag, ValidFlag) { return true; }

private:
    bool mIsSet;
};

} // namespace orv
