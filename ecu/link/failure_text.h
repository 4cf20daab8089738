#pragma once

#include <QString>

#include <string>

/// The reason of a failed exchange, as the link library keeps it, in the words of the user. The
/// library knows no Qt and no translators: its texts become translatable here, and come back letter
/// for letter without a translator, or when it does not know them.
QString failureText(const std::string& reason);
