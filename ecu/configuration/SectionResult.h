#pragma once

#include <optional>
#include <string>

/// What a section of a settings file holds, or why it cannot be taken.
template<typename Value>
struct SectionResult
{
    std::optional<Value> value = {};
    std::string error = {}; ///< empty when there is a value
};

/// Hands the value on. False with the reason in `error` when there is none.
template<typename Value, typename Take>
bool takeSection(const SectionResult<Value>& section, std::string& error, Take take)
{
    if (section.value)
        take(*section.value);
    else
        error = section.error;
    return section.value.has_value();
}
